#pragma once

#include <functional>
#include <string_view>
#include <variant>

#include "host/com/stream.h"
#include "host/dom/node.h"

/// \file
/// What nodes and documents offer beyond the W3C model: their text, their XML, selection by path,
/// loading and saving. Ask a node for these interfaces; not every kind has all.

namespace host {

/// A node with its text and its XML.
class NUXML_API IDOMNodeEx : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50041};

    /// The text inside the node.
    virtual ResultCode get_text(std::u16string& text) noexcept = 0;
    /// Puts one text in the place of all text inside the node.
    virtual ResultCode set_text(std::u16string_view text) noexcept = 0;
    /// The node with everything below it, written as XML.
    virtual ResultCode get_xml(std::u16string& xml) noexcept = 0;
    /// Transforms the node by a stylesheet into text.
    virtual ResultCode transformNode(IDOMNode* stylesheet, std::u16string& output) noexcept = 0;
    /// Transforms the node by a stylesheet into a document that is there already.
    virtual ResultCode transformNode(IDOMNode* stylesheet, IDOMDocument* output) noexcept = 0;
};

/// A node from which others are selected by a path.
class NUXML_API IDOMNodeSelect : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50042};

    /// The node at the path.
    virtual ResultCode selectNode(std::u16string_view path, Ref<IDOMNode>& node) noexcept = 0;
    /// The nodes at the path as a list of its own, which does not follow the changes of the tree.
    virtual ResultCode selectNodes(std::u16string_view path, Ref<IDOMNodeList>& nodes) noexcept = 0;
};

/// What a document can be loaded from: XML text or the name of a file, or a stream of the caller's,
/// which is read from its position on.
using DOMSource = std::variant<std::u16string_view, TStream*, IStream*>;

/// Told about the progress of a load that goes on in the background: the document, and its state.
using DOMAsyncLoadEvent = std::function<void(IUnknown* document, std::int32_t state)>;

/// A document that can be loaded and saved. What is loaded is false when the document could not be
/// read without that being a failure.
class NUXML_API IDOMPersist : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50043};

    /// The state of a load that goes on in the background; 0 when there is none.
    virtual ResultCode asyncLoadState(std::int32_t& state) noexcept = 0;
    /// Sets who is told about a load in the background; an empty function for nobody.
    virtual ResultCode set_OnAsyncLoad(const DOMAsyncLoadEvent& event) noexcept = 0;

    /// Loads the document from XML text, a file or a stream and comes back when it is done.
    virtual ResultCode load(const DOMSource& source, bool& isLoaded) noexcept = 0;
    /// Loads the document from XML text.
    virtual ResultCode loadxml(std::u16string_view xml, bool& isLoaded) noexcept = 0;
    /// Loads from a stream of the caller's, from its position on.
    virtual ResultCode loadFromStream(TStream& stream, bool& isLoaded) noexcept = 0;
    /// The same from a counted stream; the document keeps no reference to it.
    virtual ResultCode loadFromStream(IStream* stream, bool& isLoaded) noexcept = 0;

    /// Writes the document to the file of that name, in place of what was there.
    virtual ResultCode save(std::u16string_view fileName) noexcept = 0;
    /// Writes the document to a stream of the caller's, from its position on.
    virtual ResultCode saveToStream(TStream& stream) noexcept = 0;
    /// The same to a counted stream.
    virtual ResultCode saveToStream(IStream* stream) noexcept = 0;
};

} // namespace host
