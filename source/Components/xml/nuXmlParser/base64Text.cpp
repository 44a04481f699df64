#include "nuXmlParser/base64Text.h"

#include <array>
#include <cstddef>
#include <utility>

#include "host/runtime/whiteSpace.h"
#include "nuXmlParser/conversionErrors.h"

namespace {

constexpr std::u16string_view alphabet =
    u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char16_t padding = u'=';

/// What no digit has for a value; above every value in every combination.
constexpr std::uint32_t noDigit = 0x80;

constexpr auto digitValues = [] {
    std::array<std::uint8_t, 128> values{};
    values.fill(noDigit);
    for (std::size_t value = 0; value < alphabet.size(); ++value) {
        values[alphabet[value]] = static_cast<std::uint8_t>(value);
    }
    return values;
}();

std::uint32_t valueOf(char16_t digit) noexcept {
    return digit < digitValues.size() ? digitValues[digit] : noDigit;
}

/// Reads characters one by one, for all that is not four digits in a row.
class Base64Reader {
public:
    explicit Base64Reader(std::u16string_view text) : text_(text) {
        bytes_.resize(text.size() / 4 * 3);
    }

    std::vector<std::uint8_t> read() {
        while (place_ < text_.size()) {
            readFours();
            if (place_ < text_.size()) {
                readOne(text_[place_]);
            }
        }
        // Whole groups only: the padding makes the last one whole.
        if (digits_ != 0 && digits_ + paddings_ != 4) {
            fail();
        }
        bytes_.resize(count_);
        return std::move(bytes_);
    }

private:
    /// Reads groups of four digits as far as nothing stands between them.
    void readFours() {
        for (; digits_ == 0 && text_.size() - place_ >= 4; place_ += 4) {
            const char16_t* const four = text_.data() + place_;
            const std::uint32_t first = valueOf(four[0]);
            const std::uint32_t second = valueOf(four[1]);
            const std::uint32_t third = valueOf(four[2]);
            const std::uint32_t fourth = valueOf(four[3]);
            if (((first | second | third | fourth) & noDigit) != 0) {
                return;
            }
            add(first << 18U | second << 12U | third << 6U | fourth, 3);
        }
    }

    void readOne(char16_t unit) {
        if (unit == padding) {
            readPadding();
        } else if (!host::isWhiteSpace(unit)) {
            readDigit(valueOf(unit));
        }
        ++place_;
    }

    void readDigit(std::uint32_t value) {
        if (value == noDigit || paddings_ != 0) {
            fail();
        }
        gathered_ = gathered_ << 6U | value;
        if (++digits_ == 4) {
            add(gathered_, 3);
            gathered_ = 0;
            digits_ = 0;
        }
    }

    void readPadding() {
        ++paddings_;
        if (digits_ < 2 || digits_ + paddings_ > 4) {
            fail();
        }
        if (digits_ + paddings_ == 4) {
            const std::uint32_t group = gathered_ << 6U * paddings_;
            if ((group & ((1U << 8U * paddings_) - 1)) != 0) {
                fail();
            }
            add(group, 3 - paddings_);
        }
    }

    /// Adds the first `count` of the group's three bytes.
    void add(std::uint32_t group, unsigned count) {
        for (unsigned index = 0; index < count; ++index) {
            bytes_[count_++] = static_cast<std::uint8_t>(group >> (16 - 8 * index));
        }
    }

    [[noreturn]] void fail() const {
        throw host::EConvertError(host::formatMessage(nu::messages::noBase64, {place_}));
    }

    std::u16string_view text_;
    std::size_t place_ = 0;
    std::uint32_t gathered_ = 0; // the bits of the digits of a group that is not whole
    unsigned digits_ = 0;
    unsigned paddings_ = 0;
    std::vector<std::uint8_t> bytes_; // as many as the whole text could hold
    std::size_t count_ = 0;
};

} // namespace

NuXmlString NuBytesToXML(std::span<const std::uint8_t> bytes) {
    NuXmlString text((bytes.size() + 2) / 3 * 4, padding);
    auto digit = text.begin();
    const auto write = [&digit](std::uint32_t group, unsigned count) {
        for (unsigned index = 0; index < count; ++index) {
            *digit++ = alphabet[group >> (18 - 6 * index) & 0x3F];
        }
    };
    for (; bytes.size() >= 3; bytes = bytes.subspan(3)) {
        write(std::uint32_t{bytes[0]} << 16U | std::uint32_t{bytes[1]} << 8U | bytes[2], 4);
    }
    if (bytes.size() == 2) {
        write(std::uint32_t{bytes[0]} << 16U | std::uint32_t{bytes[1]} << 8U, 3);
    } else if (bytes.size() == 1) {
        write(std::uint32_t{bytes[0]} << 16U, 2);
    }
    return text;
}

std::vector<std::uint8_t> NuXMLToBytes(std::u16string_view text) {
    return Base64Reader(text).read();
}
