#pragma once

#include <cstddef>
#include <string_view>

namespace bench {

/// Collects one run of text that may arrive in several pieces. Parsers differ in how they cut text
/// and in whether they report blank text, so only the length of runs that are not blank counts.
class TextRun {
public:
    void add(std::string_view utf8) {
        for (const char unit : utf8) {
            const auto byte = static_cast<unsigned char>(unit);
            // A lead byte counts for its character, one of four bytes for two code units.
            units_ += (byte & 0xC0u) != 0x80u ? 1 : 0;
            units_ += byte >= 0xF0u ? 1 : 0;
            blank_ = blank_ && byte <= 0x20u;
        }
    }

    void add(char16_t unit) {
        ++units_;
        blank_ = blank_ && unit <= 0x20;
    }

    /// Ends the run and answers its length, 0 if it was blank.
    std::size_t finish() {
        const std::size_t length = blank_ ? 0 : units_;
        units_ = 0;
        blank_ = true;
        return length;
    }

private:
    std::size_t units_ = 0;
    bool blank_ = true;
};

} // namespace bench
