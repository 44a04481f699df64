#pragma once

#include "common/stringStream.h"
#include "nuXmlParser/chars.h"

/// Collects XML text piece by piece.
class NUXML_API TNuXmlStringBuffer : public TNuStringStream {
public:
    using TNuStringStream::TNuStringStream;
    ~TNuXmlStringBuffer() override;

    /// Appends the whole text. The second argument means nothing.
    void AddXmlString(std::u16string_view text, std::int32_t ignored = 0);
    /// Appends the one unit that `unit` points to.
    virtual void AddXmlChar(PNuXmlChar unit);
    /// Drops the last character; an empty buffer stays empty.
    virtual void RemoveNuXmlChar();

    /// The whole content; the two names serve callers of the two sides.
    [[nodiscard]] NuXmlString GetAsSaxString() const { return GetAsWideString(); }
    /// The same as GetAsSaxString.
    [[nodiscard]] NuXmlString GetAsXmlString() const { return GetAsWideString(); }

    /// `length` characters from the character at index `start`. Nothing checks the bounds: the
    /// caller keeps start + length within the content. Throws host::Exception "Copy not allowed"
    /// for a buffer whose characters are not UTF-16.
    [[nodiscard]] NuXmlString Copy(std::size_t start, std::size_t length) const;
};
