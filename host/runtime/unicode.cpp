#include "host/runtime/unicode.h"

#include <cstddef>

namespace host {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void appendUtf8(std::string& target, char32_t code) {
    auto trail = [&](unsigned shift) {
        target += static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
    };
    if (code < 0x80) {
        target += static_cast<char>(code);
    } else if (code < 0x800) {
        target += static_cast<char>(0xC0U | (code >> 6U));
        trail(0);
    } else if (code < 0x10000) {
        target += static_cast<char>(0xE0U | (code >> 12U));
        trail(6);
        trail(0);
    } else {
        target += static_cast<char>(0xF0U | (code >> 18U));
        trail(12);
        trail(6);
        trail(0);
    }
}

void appendUtf16(std::u16string& target, char32_t code) {
    if (code < 0x10000) {
        target += static_cast<char16_t>(code);
        return;
    }
    code -= 0x10000;
    target += static_cast<char16_t>(0xD800U + (code >> 10U));
    target += static_cast<char16_t>(0xDC00U + (code & 0x3FFU));
}

/// What a lead byte promises: the number of trail bytes and the range of the first of them.
struct LeadByte {
    unsigned trailCount;
    unsigned char firstTrailLow;
    unsigned char firstTrailHigh;
};

LeadByte classifyLead(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {0, 0, 0};
}

/// Decodes the sequence at `position` and steps over it, or over its longest ill-formed prefix.
char32_t decodeSequence(std::string_view bytes, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(bytes[position++]);
    if (lead < 0x80) {
        return lead;
    }
    const LeadByte promise = classifyLead(lead);
    if (promise.trailCount == 0) {
        return replacementCharacter;
    }
    char32_t code = lead & (0x3FU >> promise.trailCount);
    unsigned char low = promise.firstTrailLow;
    unsigned char high = promise.firstTrailHigh;
    for (unsigned index = 0; index < promise.trailCount; ++index) {
        if (position == bytes.size()) {
            return replacementCharacter;
        }
        const auto trail = static_cast<unsigned char>(bytes[position]);
        if (trail < low || trail > high) {
            return replacementCharacter;
        }
        code = (code << 6U) | (trail & 0x3FU);
        ++position;
        low = 0x80;
        high = 0xBF;
    }
    return code;
}

} // namespace

std::string utf16ToUtf8(std::u16string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        char32_t code = text[index];
        if (isHighSurrogate(code) && index + 1 < text.size() && isLowSurrogate(text[index + 1])) {
            ++index;
            code = 0x10000 + ((code - 0xD800) << 10U) + (text[index] - 0xDC00U);
        } else if (isHighSurrogate(code) || isLowSurrogate(code)) {
            code = replacementCharacter;
        }
        appendUtf8(result, code);
    }
    return result;
}

std::u16string utf8ToUtf16(std::string_view bytes) {
    std::u16string result;
    result.reserve(bytes.size());
    for (std::size_t position = 0; position < bytes.size();) {
        appendUtf16(result, decodeSequence(bytes, position));
    }
    return result;
}

} // namespace host
