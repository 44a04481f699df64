#include <pugixml.hpp>

#include <stdexcept>

#include "peers/peer.h"

namespace bench {

namespace {

/// The walk only counts: what is compared is building the tree with its references replaced.
class Counter final : public pugi::xml_tree_walker {
public:
    Tally tally;

    bool for_each(pugi::xml_node& node) override {
        tally.elements += node.type() == pugi::node_element ? 1 : 0;
        for (const pugi::xml_attribute attribute : node.attributes()) {
            tally.attributes += attribute ? 1 : 0;
        }
        return true;
    }
};

Tally parse(std::string_view text) {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size());
    if (!result) {
        throw std::runtime_error(result.description());
    }
    Counter counter;
    document.traverse(counter);
    return counter.tally;
}

const bool registered = addReader(
    {"pugixml", [](std::string_view text) -> Run { return [text] { return parse(text); }; }, {}});

} // namespace

} // namespace bench
