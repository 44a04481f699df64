#include <pugixml.hpp>

#include <stdexcept>

#include "trees/tree.h"

namespace bench {

namespace {

class StringWriter final : public pugi::xml_writer {
public:
    std::string text;
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
};

class Counter final : public pugi::xml_tree_walker {
public:
    std::size_t count = 0;
    bool for_each(pugi::xml_node& node) override {
        ++count;
        for (const pugi::xml_attribute attribute : node.attributes()) {
            count += attribute ? 1 : 0;
        }
        return true;
    }
};

class PugixmlTree final : public Tree {
public:
    explicit PugixmlTree(std::string_view text) {
        const pugi::xml_parse_result result = document_.load_buffer(
            text.data(), text.size(),
            pugi::parse_default | pugi::parse_comments | pugi::parse_pi | pugi::parse_declaration);
        if (!result) {
            throw std::runtime_error(result.description());
        }
    }
    [[nodiscard]] std::size_t nodeCount() const override {
        Counter counter;
        const_cast<pugi::xml_document&>(document_).traverse(counter);
        return counter.count;
    }
    [[nodiscard]] std::size_t write(bool formatted) const override {
        StringWriter writer;
        document_.save(writer, "  ", formatted ? pugi::format_indent : pugi::format_raw,
                       pugi::encoding_utf8);
        return writer.text.size();
    }

private:
    pugi::xml_document document_;
};

const bool added = addTreeLibrary(
    {"pugixml", [](std::string_view text) { return std::make_unique<PugixmlTree>(text); }});

} // namespace

} // namespace bench
