#pragma once

#include <cstdint>

#include "nuXmlParser/parserErrors.h"

/// A fault in a document that the conforming stage found: the document is not well-formed, or its
/// bytes are not what they say. The message says what is wrong; lines and columns count from 1, in
/// the source as it came, columns in UTF-16 units. What was expanded from an entity is faulty at
/// the reference to it.
class NUXML_API ENuXmlFault : public ENuSaxFatalError {
public:
    ENuXmlFault(std::u16string_view message, std::int64_t line, std::int64_t column)
        : ENuSaxFatalError(message, line, column) {}
    ENuXmlFault(const ENuXmlFault&) = default;
    ENuXmlFault& operator=(const ENuXmlFault&) = default;
    ~ENuXmlFault() override;

    /// With its place, as Text() gives it; Message() is without.
    [[nodiscard]] const char* what() const noexcept override { return Text().c_str(); }
};
