#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/codePage.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/textMemory.h"

namespace nu {

/// Whether the first tag, or whatever ends at the first ">", speaks of UTF-8.
bool declaresUtf8(std::string_view header);

/// Turns the bytes of a document into UTF-16, a stretch at a time.
///
/// What the bytes are is settled when they are opened, so that decoding cannot fail half-way.
class TextDecoder {
public:
    /// How the text of an opened document begins.
    enum class Opening : std::uint8_t {
        Decodable,
        NoMarkup,     ///< unmarked text without any ">"
        MalformedUtf8 ///< bytes behind a UTF-8 mark that are none, or nothing at all
    };

    /// Settles the form of `bytes`, which must stay unchanged until all is decoded. Unmarked text
    /// is UTF-8 if the text up to the first ">" says so and all of it is, and else in the system
    /// code page.
    Opening open(std::string_view bytes, bool isMarkedUtf8);
    /// The same for bytes that the decoder keeps.
    Opening open(TextMemory bytes, bool isMarkedUtf8);

    /// Goes on with other bytes, which are known to be well-formed UTF-8.
    void continueWith(std::string_view utf8) noexcept {
        text_ = rest_ = utf8;
        codePage_ = cNuCodePageUtf8;
    }

    /// Whether the bytes are UTF-8, well-formed throughout.
    [[nodiscard]] bool isUtf8() const noexcept { return codePage_ == cNuCodePageUtf8; }
    /// The bytes that were not decoded yet.
    [[nodiscard]] std::string_view rest() const noexcept { return rest_; }
    /// All bytes.
    [[nodiscard]] std::string_view text() const noexcept { return text_; }

    /// \name For who reads the bytes themselves
    /// Searches that may read beyond what they look for end early, which is most of a short text.
    /// @{
    /// Turns text in a code page into UTF-8.
    void encodeUtf8();
    static constexpr std::size_t paddingOfShortText = 96;
    /// Copies a short text to where so many NULs stand behind it.
    void padShortText();
    /// How many there are.
    [[nodiscard]] std::size_t padding() const noexcept { return padding_; }
    /// Shows a NUL in place of the last byte of a text that was padded, or the byte again: nothing
    /// that ends there is taken, because it would be the end of the input.
    void showLast(bool isShown) noexcept {
        if (padding_ > 0) {
            memory_.data()[text_.size() - 1] = isShown ? last_ : std::byte{};
        }
    }
    /// @}

    /// Goes on at a place of them.
    void continueAt(const char* place) noexcept {
        rest_ = text_.substr(static_cast<std::size_t>(place - text_.data()));
    }
    [[nodiscard]] bool hasMore() const noexcept { return !rest_.empty(); }
    /// No more units than these are to come.
    [[nodiscard]] std::size_t unitsAtMost() const noexcept { return rest_.size(); }
    /// Decodes as much as surely fits into `room` units, at least 4; gives the number of units.
    std::size_t decode(NuXmlChar* units, std::size_t room);

private:
    TextMemory memory_;
    std::string_view text_;
    std::string_view rest_;
    std::size_t padding_ = 0;
    std::byte last_{}; ///< of a text that was padded
    std::uint32_t codePage_ = 0;
};

} // namespace nu
