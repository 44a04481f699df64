#include <algorithm>
#include <functional>

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/nodes/nameTest.h"
#include "nuXmlDOM/nodes/namespaces.h"
#include "nuXmlDOM/path/path.h"
#include "nuXmlDOM/path/pathFilter.h"
#include "nuXmlDOM/path/pathMessages.h"
#include "nuXmlDOM/path/pathSelection.h"
#include "nuXmlDOM/path/pathTree.h"
#include "nuXmlDOM/upkeep/documentParts.h"

// Selection from elements

NuRef<TNuDOMNodeList> TNuDOMElement::CreateNodeList(std::u16string_view path,
                                                    TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).CreateNodeList(*this);
}

TNuDOMNode* TNuDOMElement::SelectSingleNode(std::u16string_view path, TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).SelectSingleNode(*this);
}

NuRef<TNuDOMElementList> TNuDOMElement::CreateElementList(std::u16string_view path,
                                                          TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).CreateElementList(*this);
}

TNuDOMElement* TNuDOMElement::SelectSingleElement(std::u16string_view path,
                                                  TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).SelectSingleElement(*this);
}

// Selection from documents

NuRef<TNuDOMNodeList> TNuDOMDocument::CreateNodeList(std::u16string_view path,
                                                     TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).CreateNodeList(*this);
}

TNuDOMNode* TNuDOMDocument::SelectSingleNode(std::u16string_view path,
                                             TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).SelectSingleNode(*this);
}

NuRef<TNuDOMElementList> TNuDOMDocument::CreateElementList(std::u16string_view path,
                                                           TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).CreateElementList(*this);
}

TNuDOMElement* TNuDOMDocument::SelectSingleElement(std::u16string_view path,
                                                   TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).SelectSingleElement(*this);
}

// Elements by name

namespace {

/// Deliberate: the name is part of a path and is read as one.
NuRef<TNuDOMElementList> elementsByName(TNuDOMNode& context, std::u16string_view name) {
    return TNuDOMPath(NuXmlString(u"//").append(name)).CreateElementList(context);
}

NuRef<TNuDOMElementList> elementsByName(TNuDOMNode& context, std::u16string_view namespaceURI,
                                        std::u16string_view localName) {
    nu::PathNodes found;
    nu::PathWork work;
    nu::selectNodes(*nu::readPath(u"//*", {}), context, true, found, work);
    nu::DeclarationSearch declarations;
    const auto hasNamespace = [&](const TNuDOMElement& element) {
        const TNuDOMAttribute* found = declarations.find(nu::NodeContext::name(element), element);
        return found != nullptr ? found->get_nodeValue() == namespaceURI : namespaceURI.empty();
    };
    const auto isOther = [&](TNuDOMNode* node) {
        const bool hasName = localName == u"*" || nu::NodeContext::name(*node).local() == localName;
        return !hasName ||
               (namespaceURI != u"*" && !hasNamespace(static_cast<const TNuDOMElement&>(*node)));
    };
    found.erase(std::remove_if(found.begin(), found.end(), isOther), found.end());
    NuRef<TNuDOMElementList> list =
        TNuDOMElementList::Create(&context, context.OwnerDocument(), false);
    nu::Snapshots::fill(*list, std::move(found));
    return list;
}

} // namespace

NuRef<TNuDOMElementList> TNuDOMElement::getElementsByTagName(std::u16string_view name) {
    return elementsByName(*this, name);
}

NuRef<TNuDOMElementList> TNuDOMElement::getElementsByTagNameNS(std::u16string_view namespaceURI,
                                                               std::u16string_view localName) {
    return elementsByName(*this, namespaceURI, localName);
}

NuRef<TNuDOMElementList> TNuDOMDocument::getElementsByTagName(std::u16string_view name) {
    return elementsByName(*this, name);
}

NuRef<TNuDOMElementList> TNuDOMDocument::getElementsByTagNameNS(std::u16string_view namespaceURI,
                                                                std::u16string_view localName) {
    return elementsByName(*this, namespaceURI, localName);
}

TNuDOMElement* TNuDOMDocument::getElementById(std::u16string_view id) {
    // The first that //*[@ID="…"] selects, for any id: in the text of a path some would mean
    // something else.
    // Deliberate: quotes in the id are dropped as in a path, so an id that has them is never found.
    nu::PathFilter filter;
    filter.comparison = nu::PathOperator::Equal;
    filter.literal.isText = true;
    filter.literal.text = id;
    filter.literal.dropQuotes();

    // 1. The few names that make an attribute an id.
    const std::vector<const nu::NodeName*> names = parts_->names.select(
        [](const nu::NodeName& name) { return NuEqualFolded(name.local(), u"id"); });
    const auto isId = [&names](const TNuDOMAttribute& attribute) {
        return std::binary_search(names.begin(), names.end(), &nu::NodeContext::name(attribute),
                                  std::less<>());
    };
    if (names.empty()) {
        return nullptr;
    }
    // 2. The children of each element, before anything below them. Of an element the first id
    //    counts.
    TNuDOMElement* result = nullptr;
    nu::PathNodes waiting;
    nu::walkByParents(*this, waiting, [&](TNuDOMNode& child) {
        auto* const element = nu::as<TNuDOMElement>(&child);
        if (element != nullptr) {
            const auto attributes = element->Attributes();
            const auto found = std::find_if(attributes.begin(), attributes.end(), isId);
            if (found != attributes.end() && nu::comparePathValue(filter, *found)) {
                result = element;
            }
        }
        return result == nullptr;
    });
    return result;
}
