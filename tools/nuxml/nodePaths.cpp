#include "nodePaths.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "common/caseFolding.h"

namespace tool {

namespace {

bool isAttribute(const TNuDOMNode& node) { return node.get_nodeType() == host::ATTRIBUTE_NODE; }

/// What a step is compared with: the local name of attributes, without regard to letter case.
std::u16string comparedName(const TNuDOMNode& node) {
    return isAttribute(node) ? u'@' + NuFolded(node.get_localName()) : node.get_nodeName();
}

} // namespace

std::u16string NodePaths::pathOf(TNuDOMNode& node) {
    // 1. The nodes from here up; a document may be deeper than a stack.
    std::vector<TNuDOMNode*> nodes;
    for (TNuDOMNode* step = &node; step->get_nodeType() != host::DOCUMENT_NODE;
         step = step->get_parentNode()) {
        nodes.push_back(step);
    }
    // 2. Their steps from the top down.
    std::u16string path;
    while (!nodes.empty()) {
        path += u'/' + stepOf(*nodes.back());
        nodes.pop_back();
    }
    return path.empty() ? u"/" : path;
}

std::u16string NodePaths::stepOf(TNuDOMNode& node) {
    std::u16string step = isAttribute(node) ? u'@' + node.get_localName() : node.get_nodeName();
    TNuDOMNode& parent = *node.get_parentNode();
    if (parent.get_nodeType() == host::DOCUMENT_NODE) {
        return step; // a path leads to the document element only, however much is beside it
    }
    auto place = places_.find(&node);
    if (place == places_.end()) {
        countChildren(parent);
        place = places_.find(&node);
    }
    if (!place->second.isOnlyOne) {
        const std::string position = std::to_string(place->second.position);
        step.append(u"[").append(position.begin(), position.end()).append(u"]");
    }
    return step;
}

void NodePaths::countChildren(TNuDOMNode& parent) {
    struct Named {
        std::size_t count = 0;
        const TNuDOMNode* first = nullptr;
    };
    std::map<std::u16string, Named> names; // no names can be chosen to slow it down
    const auto count = [&](const TNuDOMNode& child) {
        Named& named = names[comparedName(child)];
        places_[&child] = {++named.count, named.count == 1};
        if (named.count == 1) {
            named.first = &child;
        } else {
            places_[named.first].isOnlyOne = false;
        }
    };
    const auto& element = static_cast<const TNuDOMElement&>(parent);
    for (const TNuDOMNode& child : element.ChildNodes()) {
        count(child);
    }
    for (const TNuDOMNode& attribute : element.Attributes()) {
        count(attribute);
    }
}

} // namespace tool
