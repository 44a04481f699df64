#include "changes.h"

#include "common/utf8.h"
#include "pathText.h"
#include "xmlName.h"

namespace tool {

namespace {

std::size_t setValues(TNuDOMNodeList& nodes, std::u16string_view value) {
    for (TNuDOMNode* node : nodes) {
        if (node != nullptr) { // else it was a text of an element whose text is set already
            node->set_nodeValue(value);
        }
    }
    return nodes.Count();
}

/// Sets an attribute of every element at a path, and makes both where they are missing. Paths find
/// attributes by their local name; one with a prefix is meant as it is written.
std::size_t createAttributes(TNuDOMDocument& document, std::u16string_view elementPath,
                             std::u16string_view name, std::u16string_view value) {
    const auto elements = document.CreateElementList(elementPath, soCreate);
    for (TNuDOMNode* node : *elements) {
        auto& element = static_cast<TNuDOMElement&>(*node);
        const auto found = element.CreateNodeList(u'@' + std::u16string(name));
        if (setValues(*found, value) == 0) {
            element.setAttribute(name, value);
        }
    }
    return elements->Count();
}

std::size_t create(TNuDOMDocument& document, const Change& change) {
    // Paths make no attributes, so a last step that names one is done here.
    const std::u16string_view path = change.path;
    const std::size_t slash = findLastOutside(path, u'/');
    const bool hasElement = slash != path.npos && slash > 0 && path[slash - 1] != u'/' &&
                            path.find(u" | ") == path.npos;
    if (hasElement && path.substr(slash + 1).starts_with(u'@')) {
        const std::u16string_view name = path.substr(slash + 2);
        if (!name.empty() && name.find_first_of(u"*[ ") == name.npos) {
            return createAttributes(document, path.substr(0, slash), name, change.value);
        }
    }
    return setValues(*document.CreateNodeList(path, soCreate), change.value);
}

std::size_t remove(TNuDOMDocument& document, const Change& change) {
    const auto nodes = document.CreateNodeList(change.path);
    for (TNuDOMNode* node : *nodes) {
        if (node == nullptr) {
            continue; // it stood below another one and went with that
        }
        if (node == &document || node == document.get_documentElement()) {
            throw UsageError("a document without its document element is none, so --delete " +
                             std::string(change.given.value) + " is refused");
        }
        node->_delete();
    }
    return nodes->Count();
}

std::size_t rename(TNuDOMDocument& document, const Change& change) {
    const auto nodes = document.CreateNodeList(change.path);
    for (TNuDOMNode* node : *nodes) {
        if (node == nullptr) {
            continue; // the path led to it twice
        }
        const bool isAttribute = node->get_nodeType() == host::ATTRIBUTE_NODE;
        if (isAttribute &&
            static_cast<TNuDOMElement&>(*node->get_parentNode()).HasAttribute(change.value)) {
            throw UsageError("there is an attribute \"" + NuToUtf8(change.value) + "\" already");
        }
        if (!isAttribute && node->get_nodeType() != host::ELEMENT_NODE) {
            throw UsageError("only elements and attributes are renamed");
        }
        node->Rename(change.value);
    }
    return nodes->Count();
}

/// Nodes go behind the children, attributes behind the attributes of the one element at a path.
std::size_t move(TNuDOMDocument& document, const Change& change) {
    const auto nodes = document.CreateNodeList(change.path);
    if (nodes->Count() == 0) {
        return 0;
    }
    TNuDOMElement* target = document.SelectSingleElement(change.value);
    if (target == nullptr) {
        throw UsageError("there is no element at " + NuToUtf8(change.value) + " to move to");
    }
    for (TNuDOMNode* node : *nodes) {
        if (node->get_nodeType() == host::ATTRIBUTE_NODE) {
            target->setAttributeNode(static_cast<TNuDOMAttribute&>(*node));
        } else {
            target->appendChild(*node);
        }
    }
    return nodes->Count();
}

} // namespace

Change changeOf(GivenOption given) {
    for (const auto& [shortName, name] : shortNames) {
        given.name = given.name == shortName ? name : given.name;
    }
    Change change{given, pathFromArgument(given.value), {}};
    std::u16string& path = change.path;
    if (given.name != deleteOption) {
        const std::size_t equals = findOutside(path, u'=');
        if (equals == path.npos) {
            throw UsageError(std::string(given.name) + ' ' + std::string(given.value) +
                             " lacks \"=VALUE\"");
        }
        change.value = path.substr(equals + 1);
        path.resize(equals);
    }
    // The library takes an empty path for all elements, which nobody means here.
    if (path.empty()) {
        throw UsageError("the path of " + std::string(given.name) + " is empty");
    }
    checkPath(path);
    if (given.name == renameOption && !isXmlName(change.value)) {
        throw UsageError('"' + NuToUtf8(change.value) + "\" is no name");
    }
    if (given.name == moveOption) {
        checkPath(change.value);
    }
    return change;
}

std::size_t applyChange(TNuDOMDocument& document, const Change& change) {
    const std::string_view name = change.given.name;
    return name == deleteOption   ? remove(document, change)
           : name == createOption ? create(document, change)
           : name == renameOption ? rename(document, change)
           : name == moveOption   ? move(document, change)
                                  : setValues(*document.CreateNodeList(change.path), change.value);
}

} // namespace tool
