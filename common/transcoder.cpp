#include "common/transcoder.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "common/codePage.h"
#include "common/simd/block.h"
#include "host/runtime/utf8Sequence.h"

TNuTranscoder::~TNuTranscoder() = default;

namespace {

constexpr std::size_t longestName = 40;
constexpr std::size_t longestSequence = 4;

char lowerCase(char letter) noexcept {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 0x20) : letter;
}

bool isLetter(char c) noexcept { return lowerCase(c) >= 'a' && lowerCase(c) <= 'z'; }
bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

char* writeUtf8(char* target, char32_t codePoint) noexcept {
    const auto byte = [&](char32_t bits) { *target++ = static_cast<char>(bits); };
    const auto rest = [&](unsigned shift) { byte(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80) {
        byte(codePoint);
    } else if (codePoint < 0x800) {
        byte(0xC0 | codePoint >> 6);
        rest(0);
    } else if (codePoint < 0x10000) {
        byte(0xE0 | codePoint >> 12);
        rest(6);
        rest(0);
    } else {
        byte(0xF0 | codePoint >> 18);
        rest(12);
        rest(6);
        rest(0);
    }
    return target;
}

// What stands at the front of the bytes: the character and its length, or why there is none.
struct Decoded {
    char32_t codePoint = 0;
    std::size_t length = 0;
    TNuTranscoding stop = TNuTranscoding::All;
};

// The loop over characters that every encoding with a fixed unit shares.
template <class Decode>
TNuTranscoded transcodeEach(std::string_view bytes, char* target, std::size_t room,
                            Decode&& decode) {
    const char* const start = target;
    const std::size_t size = bytes.size();
    const auto result = [&](TNuTranscoding stop) {
        return TNuTranscoded{size - bytes.size(), static_cast<std::size_t>(target - start), stop};
    };
    while (!bytes.empty()) {
        if (room - static_cast<std::size_t>(target - start) < longestSequence) {
            return result(TNuTranscoding::NeedsRoom);
        }
        const Decoded next = decode(bytes);
        if (next.stop != TNuTranscoding::All) {
            return result(next.stop);
        }
        target = writeUtf8(target, next.codePoint);
        bytes.remove_prefix(next.length);
    }
    return result(TNuTranscoding::All);
}

std::uint32_t unitAt(std::string_view bytes, std::size_t place, std::size_t width,
                     bool isBigEndian) noexcept {
    std::uint32_t unit = 0;
    for (std::size_t index = 0; index < width; ++index) {
        const std::size_t byte = isBigEndian ? index : width - 1 - index;
        unit = unit << 8 | static_cast<unsigned char>(bytes[place + byte]);
    }
    return unit;
}

class Utf16Transcoder final : public TNuTranscoder {
public:
    explicit Utf16Transcoder(bool isBigEndian) noexcept : isBigEndian_(isBigEndian) {}

    TNuTranscoded Transcode(std::string_view bytes, bool /*isLast*/, char* target,
                            std::size_t room) override {
        return transcodeEach(bytes, target, room, [this](std::string_view rest) -> Decoded {
            if (rest.size() < 2) {
                return {0, 0, TNuTranscoding::CutShort};
            }
            const auto first = static_cast<char16_t>(unitAt(rest, 0, 2, isBigEndian_));
            if (!host::isSurrogate(first)) {
                return {first, 2};
            }
            if (!host::isHighSurrogate(first)) {
                return {0, 0, TNuTranscoding::Malformed};
            }
            if (rest.size() < 4) {
                return {0, 0, TNuTranscoding::CutShort};
            }
            const auto second = static_cast<char16_t>(unitAt(rest, 2, 2, isBigEndian_));
            if (!host::isLowSurrogate(second)) {
                return {0, 0, TNuTranscoding::Malformed};
            }
            return {(char32_t{first} << 10) + second - 0x35FDC00, 4};
        });
    }

private:
    bool isBigEndian_;
};

class Utf32Transcoder final : public TNuTranscoder {
public:
    explicit Utf32Transcoder(bool isBigEndian) noexcept : isBigEndian_(isBigEndian) {}

    TNuTranscoded Transcode(std::string_view bytes, bool /*isLast*/, char* target,
                            std::size_t room) override {
        return transcodeEach(bytes, target, room, [this](std::string_view rest) -> Decoded {
            if (rest.size() < 4) {
                return {0, 0, TNuTranscoding::CutShort};
            }
            const char32_t codePoint = unitAt(rest, 0, 4, isBigEndian_);
            if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint < 0xE000)) {
                return {0, 0, TNuTranscoding::Malformed};
            }
            return {codePoint, 4};
        });
    }

private:
    bool isBigEndian_;
};

class PageTranscoder final : public TNuTranscoder {
public:
    explicit PageTranscoder(std::uint32_t codePage) {
        std::array<char, 256> bytes{};
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            bytes[index] = static_cast<char>(index);
        }
        NuWidenAnsi({bytes.data(), bytes.size()}, units_.data(), codePage);
    }

    TNuTranscoded Transcode(std::string_view bytes, bool /*isLast*/, char* target,
                            std::size_t room) override {
        constexpr std::size_t blockSize = nu::simd::blockSize;
        std::size_t read = 0;
        std::size_t written = 0;
        // ASCII goes over as it is, a block at a time; a block of anything else one by one.
        while (read < bytes.size()) {
            const auto* const block = reinterpret_cast<const unsigned char*>(bytes.data()) + read;
            std::size_t count = std::min(blockSize, bytes.size() - read);
            if (count == blockSize && room - written >= blockSize &&
                nu::simd::isAsciiBlock(block)) {
                std::copy_n(bytes.data() + read, blockSize, target + written);
                read += blockSize;
                written += blockSize;
                continue;
            }
            const TNuTranscoded rest =
                transcodeEach(bytes.substr(read, count), target + written, room - written,
                              [this](std::string_view left) -> Decoded {
                                  const char16_t unit =
                                      units_[static_cast<unsigned char>(left.front())];
                                  if (unit == host::replacementCharacter) {
                                      return {0, 0, TNuTranscoding::Malformed};
                                  }
                                  return {unit, 1};
                              });
            read += rest.Read;
            written += rest.Written;
            if (rest.Stop != TNuTranscoding::All) {
                return {read, written, rest.Stop};
            }
        }
        return {read, written, TNuTranscoding::All};
    }

private:
    std::array<char16_t, 256> units_{};
};

class IconvTranscoder final : public TNuTranscoder {
public:
    explicit IconvTranscoder(iconv_t converter) noexcept : converter_(converter) {}
    IconvTranscoder(const IconvTranscoder&) = delete;
    IconvTranscoder& operator=(const IconvTranscoder&) = delete;
    ~IconvTranscoder() override { ::iconv_close(converter_); }

    TNuTranscoded Transcode(std::string_view bytes, bool isLast, char* target,
                            std::size_t room) override {
        // iconv takes a pointer to what it does not change.
        char* next = const_cast<char*>(bytes.data());
        std::size_t left = bytes.size();
        char* end = target;
        std::size_t roomLeft = room;
        const bool hasStopped =
            ::iconv(converter_, &next, &left, &end, &roomLeft) == failed ||
            (isLast && ::iconv(converter_, nullptr, nullptr, &end, &roomLeft) == failed);
        const TNuTranscoding stop = hasStopped ? stopOf(errno) : TNuTranscoding::All;
        return {bytes.size() - left, static_cast<std::size_t>(end - target), stop};
    }

private:
    static constexpr auto failed = static_cast<std::size_t>(-1);

    static TNuTranscoding stopOf(int error) noexcept {
        switch (error) {
        case E2BIG:
            return TNuTranscoding::NeedsRoom;
        case EINVAL:
            return TNuTranscoding::CutShort;
        default:
            return TNuTranscoding::Malformed;
        }
    }

    iconv_t converter_;
};

// Letters, digits, ".", "_" and "-", beginning with a letter; so no "//", which asks iconv for
// more than an encoding.
bool isEncodingName(const std::string& name) noexcept {
    return !name.empty() && name.size() <= longestName && isLetter(name.front()) &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return isLetter(c) || isDigit(c) || c == '.' || c == '_' || c == '-';
           });
}

std::unique_ptr<TNuTranscoder> createIconv(const std::string& name) {
    iconv_t converter = ::iconv_open("UTF-8", name.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        return nullptr;
    }
    return std::make_unique<IconvTranscoder>(converter);
}

} // namespace

std::unique_ptr<TNuTranscoder> TNuTranscoder::Create(std::string_view encoding) {
    std::string name(encoding);
    std::transform(name.begin(), name.end(), name.begin(), lowerCase);
    if (!isEncodingName(name)) {
        return nullptr;
    }
    const auto isOneOf = [&name](std::initializer_list<std::string_view> names) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    // What these mean depends on the locale, or on the machine.
    if (isOneOf({"char", "wchar_t", "internal", "locale"})) {
        return nullptr;
    }
    if (isOneOf({"utf-16", "utf-16be", "utf-16le", "ucs-2", "iso-10646-ucs-2"})) {
        return std::make_unique<Utf16Transcoder>(name != "utf-16le");
    }
    if (isOneOf({"utf-32", "utf-32be", "utf-32le", "ucs-4", "iso-10646-ucs-4"})) {
        return std::make_unique<Utf32Transcoder>(name != "utf-32le");
    }
    const std::uint32_t codePage = NuFindCodePage(name);
    if (codePage != 0 && codePage != cNuCodePageUtf8) {
        return std::make_unique<PageTranscoder>(codePage);
    }
    return createIconv(codePage == cNuCodePageUtf8 ? "utf-8" : name);
}
