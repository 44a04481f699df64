#include <tinyxml2.h>

#include <stdexcept>

#include "trees/tree.h"

namespace bench {

namespace {

class Counter final : public tinyxml2::XMLVisitor {
public:
    std::size_t count = 0;
    bool VisitEnter(const tinyxml2::XMLElement&, const tinyxml2::XMLAttribute* attribute) override {
        ++count;
        for (; attribute != nullptr; attribute = attribute->Next()) {
            ++count;
        }
        return true;
    }
    bool Visit(const tinyxml2::XMLDeclaration&) override { return ++count != 0; }
    bool Visit(const tinyxml2::XMLText&) override { return ++count != 0; }
    bool Visit(const tinyxml2::XMLComment&) override { return ++count != 0; }
    bool Visit(const tinyxml2::XMLUnknown&) override { return ++count != 0; }
};

class Tinyxml2Tree final : public Tree {
public:
    explicit Tinyxml2Tree(std::string_view text) {
        if (document_.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) {
            throw std::runtime_error(document_.ErrorStr());
        }
    }
    [[nodiscard]] std::size_t nodeCount() const override {
        Counter counter;
        document_.Accept(&counter);
        return counter.count;
    }
    [[nodiscard]] std::size_t write(bool formatted) const override {
        tinyxml2::XMLPrinter printer(nullptr, !formatted);
        document_.Print(&printer);
        return static_cast<std::size_t>(printer.CStrSize()) - 1;
    }

private:
    tinyxml2::XMLDocument document_;
};

// Elements may nest TINYXML2_MAX_ELEMENT_DEPTH deep, which the input "deep" exceeds.
const bool added =
    addTreeLibrary({"tinyxml2",
                    [](std::string_view text) { return std::make_unique<Tinyxml2Tree>(text); },
                    {"deep"}});

} // namespace

} // namespace bench
