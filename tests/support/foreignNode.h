#pragma once

#include <string>
#include <string_view>

#include "host/com/implements.h"
#include "host/dom/node.h"

namespace support {

/// A node of some other library.
class ForeignNode final : public host::Implements<host::IDOMNode> {
    using Node = host::Ref<host::IDOMNode>;
    using Text = std::u16string;
    using View = std::u16string_view;

public:
    host::ResultCode get_nodeName(Text&) noexcept override { return 0; }
    host::ResultCode get_nodeValue(Text&) noexcept override { return 0; }
    host::ResultCode set_nodeValue(View) noexcept override { return 0; }
    host::ResultCode get_nodeType(host::DOMNodeType&) noexcept override { return 0; }
    host::ResultCode get_parentNode(Node&) noexcept override { return 0; }
    host::ResultCode get_childNodes(host::Ref<host::IDOMNodeList>&) noexcept override { return 0; }
    host::ResultCode get_firstChild(Node&) noexcept override { return 0; }
    host::ResultCode get_lastChild(Node&) noexcept override { return 0; }
    host::ResultCode get_previousSibling(Node&) noexcept override { return 0; }
    host::ResultCode get_nextSibling(Node&) noexcept override { return 0; }
    host::ResultCode get_attributes(host::Ref<host::IDOMNamedNodeMap>&) noexcept override {
        return 0;
    }
    host::ResultCode get_ownerDocument(host::Ref<host::IDOMDocument>&) noexcept override {
        return 0;
    }
    host::ResultCode get_namespaceURI(Text&) noexcept override { return 0; }
    host::ResultCode get_prefix(Text&) noexcept override { return 0; }
    host::ResultCode set_prefix(View) noexcept override { return 0; }
    host::ResultCode get_localName(Text&) noexcept override { return 0; }
    host::ResultCode insertBefore(host::IDOMNode*, host::IDOMNode*, Node&) noexcept override {
        return 0;
    }
    host::ResultCode replaceChild(host::IDOMNode*, host::IDOMNode*, Node&) noexcept override {
        return 0;
    }
    host::ResultCode removeChild(host::IDOMNode*, Node&) noexcept override { return 0; }
    host::ResultCode appendChild(host::IDOMNode*, Node&) noexcept override { return 0; }
    host::ResultCode hasChildNodes(bool&) noexcept override { return 0; }
    host::ResultCode cloneNode(bool, Node&) noexcept override { return 0; }
    host::ResultCode normalize() noexcept override { return 0; }
    host::ResultCode supports(View, View, bool&) noexcept override { return 0; }
};

} // namespace support
