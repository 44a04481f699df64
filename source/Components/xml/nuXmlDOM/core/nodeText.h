#pragma once

#include "nuXmlDOM/core/attribute.h"
#include "nuXmlDOM/core/characterData.h"
#include "nuXmlDOM/core/processingInstruction.h"

namespace nu {

/// The texts of nodes as they are stored.
class NodeText {
public:
    [[nodiscard]] static const StoredText& stored(const TNuDOMAttribute& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static const StoredText& stored(const TNuDOMCharacterData& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static const StoredText&
    stored(const TNuDOMProcessingInstruction& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static StoredText& stored(TNuDOMAttribute& node) noexcept { return node.text_; }
    [[nodiscard]] static StoredText& stored(TNuDOMCharacterData& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static StoredText& stored(TNuDOMProcessingInstruction& node) noexcept {
        return node.text_;
    }
    /// That of a leaf; null for elements and documents.
    [[nodiscard]] static StoredText* storedIfAny(TNuDOMNode& node) noexcept;
    [[nodiscard]] static const StoredText* storedIfAny(const TNuDOMNode& node) noexcept {
        return storedIfAny(const_cast<TNuDOMNode&>(node));
    }

    /// Appends the text as it is meant: unescaped in texts and attributes.
    static void appendValue(const TNuDOMNode& node, NuXmlString& target);
    /// Puts the text of a leaf in place of that of another one of its class.
    static void copy(const TNuDOMNode& source, TNuDOMNode& target, DocumentMemory& memory);
};

} // namespace nu
