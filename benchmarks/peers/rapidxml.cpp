#include <cstring>
#include <memory>
#include <rapidxml/rapidxml.hpp>

#include "peers/peer.h"

namespace bench {

namespace {

/// The lower limit of touching every byte once: no references, no terminating zeros, no check of
/// end tags. The parser needs a terminated block of its own, so the copy is part of the work.
Tally parse(std::string_view text) {
    const std::unique_ptr<char[]> copy(new char[text.size() + 1]);
    std::memcpy(copy.get(), text.data(), text.size());
    copy[text.size()] = '\0';
    rapidxml::xml_document<> document;
    document.parse<rapidxml::parse_fastest>(copy.get());

    Tally tally;
    const rapidxml::xml_node<>* node = document.first_node();
    while (node != nullptr) {
        tally.elements += node->type() == rapidxml::node_element ? 1 : 0;
        for (auto* attribute = node->first_attribute(); attribute != nullptr;
             attribute = attribute->next_attribute()) {
            ++tally.attributes;
        }
        // Down, else to the next sibling of the nearest ancestor that has one.
        const rapidxml::xml_node<>* next = node->first_node();
        while (next == nullptr && node != nullptr && node != &document) {
            next = node->next_sibling();
            node = node->parent();
        }
        node = next;
    }
    return tally;
}

const bool registered = addReader(
    {"rapidxml", [](std::string_view text) -> Run { return [text] { return parse(text); }; }, {}});

} // namespace

} // namespace bench
