#pragma once

#include "host/dom/node.h"

/// \file
/// Nodes that hold text: character data and processing instructions.

namespace host {

/// A node whose content is text, with operations on parts of it.
class NUXML_API IDOMCharacterData : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50011};

    /// The text as it is meant, without escapes.
    virtual ResultCode get_data(std::u16string& data) noexcept = 0;
    /// Replaces the text; fails where the kind of node refuses what it holds ("--" in a comment).
    virtual ResultCode set_data(std::u16string_view data) noexcept = 0;
    /// How many UTF-16 code units get_data gives.
    virtual ResultCode get_length(DOMLength& length) noexcept = 0;

    /// The `count` characters from `offset` on.
    virtual ResultCode substringData(DOMLength offset, DOMLength count,
                                     std::u16string& part) noexcept = 0;
    /// Adds text at the end.
    virtual ResultCode appendData(std::u16string_view text) noexcept = 0;
    /// Puts text before the character at `offset`.
    virtual ResultCode insertData(DOMLength offset, std::u16string_view text) noexcept = 0;
    /// Takes `count` characters from `offset` on out.
    virtual ResultCode deleteData(DOMLength offset, DOMLength count) noexcept = 0;
    /// Puts text in the place of `count` characters from `offset` on.
    virtual ResultCode replaceData(DOMLength offset, DOMLength count,
                                   std::u16string_view text) noexcept = 0;
};

/// The text between tags.
class NUXML_API IDOMText : public IDOMCharacterData {
public:
    using Base = IDOMCharacterData;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50012};

    /// Cuts the text before the character at `offset`: this node keeps what stands before, and a
    /// new node right behind it gets the rest.
    virtual ResultCode splitText(DOMLength offset, Ref<IDOMText>& rest) noexcept = 0;
};

/// A section of text in which markup has no meaning.
class NUXML_API IDOMCDATASection : public IDOMText {
public:
    using Base = IDOMText;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50013};
};

/// What stands between "<!--" and "-->".
class NUXML_API IDOMComment : public IDOMCharacterData {
public:
    using Base = IDOMCharacterData;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50014};
};

/// A processing instruction: `<?target data?>`.
class NUXML_API IDOMProcessingInstruction : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50015};

    /// What stands behind "<?", which is also the name of the node.
    virtual ResultCode get_target(std::u16string& target) noexcept = 0;
    /// What stands behind the target, from the first character that is no white space.
    virtual ResultCode get_data(std::u16string& data) noexcept = 0;
    /// Replaces the data; the target stays.
    virtual ResultCode set_data(std::u16string_view data) noexcept = 0;
};

} // namespace host
