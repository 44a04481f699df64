#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/memoryStream.h"

/// The width of a string stream's characters in bytes: 1 (8-bit text) or 2 (UTF-16).
using TNuStringType = std::uint8_t;

/// A growable string in a stream. Appending always happens at the end of the content; the stream's
/// position then stands behind what was appended.
///
/// Text of the other width is converted through the system code page.
class NUXML_API TNuStringStream : public TNuMemoryStream {
public:
    /// An empty stream. Throws host::Exception for a width other than 1 and 2.
    /// \param stringType the width of a character in bytes
    /// \param capacity   the characters to make room for
    explicit TNuStringStream(TNuStringType stringType, std::size_t capacity = 16);
    /// A UTF-16 stream that holds a copy of `text`, positioned at its start.
    explicit TNuStringStream(std::u16string_view text);
    ~TNuStringStream() override;

    /// The width of a character in bytes.
    [[nodiscard]] TNuStringType StringType() const noexcept { return stringType_; }
    /// The content's length in whole characters.
    [[nodiscard]] std::size_t Length() const noexcept { return size_ / stringType_; }

    /// Appends UTF-16; into a stream of width 1 it goes in the code page of the system.
    void AddString(std::u16string_view text);
    /// Appends 8-bit text; into a stream of width 2 it goes from the code page of the system.
    void AddString(std::string_view text);
    /// Appends one unit. Surrogates that are appended one by one become no pair in a stream of
    /// width 1.
    void AddChar(char16_t unit) { AddString(std::u16string_view(&unit, 1)); }

    /// The whole content as UTF-16.
    [[nodiscard]] std::u16string GetAsWideString() const;
    /// The whole content as 8-bit text.
    [[nodiscard]] std::string GetAsAnsiString() const;

    /// The content of a UTF-16 stream in place; valid until the stream changes. Empty for width 1.
    [[nodiscard]] std::u16string_view WideView() const noexcept;

private:
    NUXML_LOCAL void append(const void* bytes, std::size_t count);

    TNuStringType stringType_;
};
