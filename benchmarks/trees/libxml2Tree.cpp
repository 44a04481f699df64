#include <libxml/parser.h>
#include <libxml/tree.h>

#include <stdexcept>

#include "trees/tree.h"

namespace bench {

namespace {

class Libxml2Tree final : public Tree {
public:
    explicit Libxml2Tree(std::string_view text)
        : document_(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                  XML_PARSE_HUGE | XML_PARSE_NOBLANKS | XML_PARSE_NONET |
                                      XML_PARSE_NOERROR | XML_PARSE_NOWARNING)) {
        if (document_ == nullptr) {
            throw std::runtime_error("libxml2 cannot read the input");
        }
    }
    ~Libxml2Tree() override { xmlFreeDoc(document_); }

    [[nodiscard]] std::size_t nodeCount() const override {
        std::size_t count = 0;
        auto* const root = reinterpret_cast<xmlNode*>(document_);
        for (xmlNode* node = document_->children; node != nullptr;
             node = nextInTree(
                 node, root, [](xmlNode* parent) { return parent->children; },
                 [](xmlNode* sibling) { return sibling->next; },
                 [](xmlNode* child) { return child->parent; })) {
            ++count;
            const bool isElement = node->type == XML_ELEMENT_NODE;
            for (const xmlAttr* attribute = isElement ? node->properties : nullptr;
                 attribute != nullptr; attribute = attribute->next) {
                ++count;
            }
            for (const xmlNs* declaration = isElement ? node->nsDef : nullptr;
                 declaration != nullptr; declaration = declaration->next) {
                ++count;
            }
        }
        return count;
    }

    [[nodiscard]] std::size_t write(bool formatted) const override {
        xmlChar* text = nullptr;
        int size = 0;
        xmlDocDumpFormatMemoryEnc(document_, &text, &size, "UTF-8", formatted ? 1 : 0);
        xmlFree(text);
        return static_cast<std::size_t>(size);
    }

private:
    xmlDoc* document_;
};

const bool added = addTreeLibrary(
    {"libxml2", [](std::string_view text) { return std::make_unique<Libxml2Tree>(text); }});

} // namespace

} // namespace bench
