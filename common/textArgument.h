#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/runtime/export.h"

/// \file
/// Text that functions are called with, in UTF-16 or in UTF-8.

/// Parts that the names with the mark Nu are made of, and the reading of records.
namespace nu {

/// What gives a text of that unit for the asking: literals, strings, views.
template <class Text, class Unit>
concept TextOf = std::is_convertible_v<const Text&, std::basic_string_view<Unit>> &&
    !std::is_null_pointer_v<Text>;

/// A text in UTF-16.
template <class Text>
concept Utf16Text = TextOf<Text, char16_t>;

/// A text in UTF-8, whether of char or of char8_t.
template <class Text>
concept Utf8Text = TextOf<Text, char> || TextOf<Text, char8_t>;

} // namespace nu

/// A text as the argument of a call: UTF-16 (literals, NuXmlString, std::u16string_view) or UTF-8
/// (literals, std::string, std::string_view, char8_t as well). Only for parameters,
/// `const TNuText&`: it refers to the text that it was made from.
///
/// UTF-16 goes on as it is. UTF-8 of up to 64 bytes is widened inside of the object, longer text in
/// memory of its own. Malformed UTF-8 throws host::EConvertError with the place of the first byte
/// that is wrong.
class NUXML_API TNuText {
public:
    template <nu::Utf16Text Text>
    TNuText(const Text& text) noexcept : view_(std::u16string_view(text)) {}
    template <nu::Utf8Text Text> TNuText(const Text& text) {
        if constexpr (nu::TextOf<Text, char>) {
            widen(std::string_view(text));
        } else {
            const std::u8string_view bytes(text);
            widen({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        }
    }
    TNuText(const TNuText&) = delete;
    TNuText& operator=(const TNuText&) = delete;

    /// Valid as long as this object and what it was made from.
    [[nodiscard]] std::u16string_view view() const noexcept { return view_; }
    operator std::u16string_view() const noexcept { return view_; }

protected:
    TNuText() noexcept = default;

    /// Makes well-formed UTF-8 the text.
    void widen(std::string_view bytes);

private:
    static constexpr std::size_t insideLimit = 64;

    std::u16string_view view_;
    /// The text in UTF-16 where it came in UTF-8.
    std::array<char16_t, insideLimit> inside_;
    std::unique_ptr<char16_t[]> outside_;
};

/// The same for UTF-8 alone: what overloads beside those for UTF-16 take.
class TNuUtf8Text : public TNuText {
public:
    template <nu::Utf8Text Text> TNuUtf8Text(const Text& text) : TNuText(text) {}
};
