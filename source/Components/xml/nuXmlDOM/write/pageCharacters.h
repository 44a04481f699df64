#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "nuXmlDOM/storage/nodeName.h"
#include "nuXmlDOM/storage/storedText.h"

/// \file
/// How names and texts are written where an encoding may lack characters of them.

namespace nu {

/// For UTF-8 and UTF-16, which lack none: everything is as it is stored.
struct AllCharacters {
    static constexpr bool keepsContent() noexcept { return false; }
    static const NodeName& name(const NodeName& name) noexcept { return name; }
    static std::string_view value(std::string_view text) noexcept { return text; }
    static const StoredText& value(const StoredText& text) noexcept { return text; }
    static const StoredText& text(const StoredText& text) noexcept { return text; }
    static const StoredText& section(const StoredText& text) noexcept { return text; }
    static const StoredText& comment(const StoredText& text) noexcept { return text; }
    static const StoredText& instruction(const StoredText& text) noexcept { return text; }
};

/// The same, but line breaks and tabs in values, which a parser would turn into blanks, become
/// references.
class ExactCharacters : public AllCharacters {
public:
    static constexpr bool keepsContent() noexcept { return true; }
    std::string_view value(std::string_view text);
    /// Of a value that is not narrow.
    std::u16string_view value(const StoredText& text);

private:
    std::string narrow_;
    std::u16string wide_;
    NuXmlString units_;
};

/// For a code page of single bytes, as bytes of it. What it gives is valid until a name or a text,
/// whichever it was, is asked for again.
///
/// A character that the page lacks becomes a reference in texts and values; a CDATA section is
/// ended before the reference and another one begun behind it. Where XML knows no references, a
/// comment gets a "?", because nothing depends on it, but a name or an instruction throws
/// host::EConvertError: it would be another one, or none.
class PageCharacters {
public:
    /// \param codePage     one of single bytes
    /// \param keepsContent whether values are as those of ExactCharacters
    PageCharacters(std::uint32_t codePage, bool keepsContent)
        : codePage_(codePage), keepsContent_(keepsContent) {}

    [[nodiscard]] bool keepsContent() const noexcept { return keepsContent_; }
    std::string_view name(const NodeName& name);
    std::string_view value(std::string_view text) {
        return keepsContent_ ? exact_.value(text) : text;
    }
    std::string_view value(const StoredText& text) {
        return withReferences(keepsContent_ ? exact_.value(text) : units(text), {}, {});
    }
    std::string_view text(const StoredText& text);
    std::string_view section(const StoredText& text);
    std::string_view comment(const StoredText& text);
    std::string_view instruction(const StoredText& text);

private:
    /// What one character of a text is and how many units it takes.
    struct Character {
        std::uint32_t value;
        std::size_t length;
    };

    /// Of a text that is not narrow.
    std::u16string_view units(const StoredText& text);
    static Character firstOf(std::u16string_view text) noexcept;
    template <class WriteLacking>
    std::string_view convert(std::u16string_view text, std::string& bytes, WriteLacking&& lacking);
    std::string_view withReferences(std::u16string_view text, std::string_view before,
                                    std::string_view behind);

    std::uint32_t codePage_;
    bool keepsContent_;
    ExactCharacters exact_;
    std::string name_;
    std::string text_;
    NuXmlString units_;
};

} // namespace nu
