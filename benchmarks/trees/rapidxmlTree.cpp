#include <cstring>
#include <iterator>
#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>

#include "trees/tree.h"

namespace bench {

namespace {

/// The tree points into a block that the parser changes, so the copy is part of the work.
class RapidxmlTree final : public Tree {
public:
    explicit RapidxmlTree(std::string_view text) : copy_(new char[text.size() + 1]) {
        std::memcpy(copy_.get(), text.data(), text.size());
        copy_[text.size()] = '\0';
        document_.parse<rapidxml::parse_comment_nodes | rapidxml::parse_pi_nodes |
                        rapidxml::parse_declaration_node | rapidxml::parse_no_element_values>(
            copy_.get());
    }

    [[nodiscard]] std::size_t nodeCount() const override {
        std::size_t count = 0;
        using Node = const rapidxml::xml_node<>*;
        const Node root = &document_;
        for (Node node = document_.first_node(); node != nullptr;
             node = nextInTree(
                 node, root, [](Node parent) -> Node { return parent->first_node(); },
                 [](Node sibling) -> Node { return sibling->next_sibling(); },
                 [](Node child) -> Node { return child->parent(); })) {
            ++count;
            for (auto* attribute = node->first_attribute(); attribute != nullptr;
                 attribute = attribute->next_attribute()) {
                ++count;
            }
        }
        return count;
    }

    [[nodiscard]] std::size_t write(bool formatted) const override {
        std::string text;
        rapidxml::print(std::back_inserter(text), document_,
                        formatted ? 0 : rapidxml::print_no_indenting);
        return text.size();
    }

private:
    std::unique_ptr<char[]> copy_;
    rapidxml::xml_document<> document_;
};

const bool added = addTreeLibrary(
    {"rapidxml", [](std::string_view text) { return std::make_unique<RapidxmlTree>(text); }});

} // namespace

} // namespace bench
