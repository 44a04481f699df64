#pragma once

#include <cstddef>
#include <string_view>

#include "common/memoryStream.h"
#include "nuXmlParser/chars.h"

/// \file
/// Text as a stream of UTF-16 code units that checks what is written to it. Names and values of
/// nodes are built and changed through these; what a node holds is kept in a denser form.

/// A text as a stream: its content are UTF-16 code units, little-endian, without a terminator.
class NUXML_API TNuDOMString : public TNuMemoryStream {
public:
    TNuDOMString() = default;
    ~TNuDOMString() override;

    /// The whole content, wherever the position is.
    [[nodiscard]] NuXmlString GetAsDomString() const;
    /// Replaces the content. The old content is gone also when the new one is refused.
    void SetAsDOMString(std::u16string_view text);
    /// Writes `count` bytes of characters at the position.
    void WriteSaxBuffer(const NuXmlChar* characters, std::size_t count);
    /// Takes the spaces (U+0020, no other white space) from both ends; the position is the end
    /// then.
    void Trim();
};

/// One part of a qualified name. Throws ENuDomInvalidCharacter ("Invalid XML Name") when a colon or
/// a space is written; nothing of that write is kept then. No other rule of XML names is enforced.
class NUXML_API TNuDOMName : public TNuDOMString {
public:
    ~TNuDOMName() override;
    std::size_t Write(const void* buffer, std::size_t count) override;
};

/// An attribute value in escaped form. Throws ENuDomInvalidCharacter ("Invalid attribute value")
/// when a quotation mark is written; nothing of that write is kept then.
class NUXML_API TNuDOMAttribValue : public TNuDOMString {
public:
    ~TNuDOMAttribValue() override;
    std::size_t Write(const void* buffer, std::size_t count) override;
};

/// A character value; takes any text.
class NUXML_API TNuDOMValue : public TNuDOMString {
public:
    ~TNuDOMValue() override;
};
