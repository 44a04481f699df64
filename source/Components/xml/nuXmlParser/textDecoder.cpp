#include "nuXmlParser/textDecoder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "common/codePage.h"
#include "common/text.h"
#include "common/utf8.h"

namespace nu {

namespace {

constexpr std::uint32_t codePageWindows1252 = 1252;

/// In bytes. The end of a longer text is little of it.
constexpr std::size_t longestShortText = 16 * 1024;

/// The code page in which unmarked text is read; it can never fail to decode.
std::uint32_t pageOfUnmarked(std::string_view bytes, std::string_view header) {
    const std::uint32_t systemPage = NuGetSystemCodePage();
    if ((systemPage == cNuCodePageUtf8 || declaresUtf8(header)) && NuIsUtf8(bytes)) {
        return cNuCodePageUtf8;
    }
    // Deliberate: UTF-8 that was only declared and is none is read as 8-bit text, without a word.
    return systemPage == cNuCodePageUtf8 ? codePageWindows1252 : systemPage;
}

} // namespace

bool declaresUtf8(std::string_view header) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(header.data());
    const std::u16string text(bytes, bytes + header.size());
    return NuContainsText(text, u"utf-8");
}

TextDecoder::Opening TextDecoder::open(std::string_view bytes, bool isMarkedUtf8) {
    if (isMarkedUtf8) {
        if (bytes.empty() || !NuIsUtf8(bytes)) {
            return Opening::MalformedUtf8;
        }
        codePage_ = cNuCodePageUtf8;
    } else {
        const std::size_t tagEnd = bytes.find(cNuGtA);
        if (tagEnd == bytes.npos) {
            return Opening::NoMarkup;
        }
        codePage_ = pageOfUnmarked(bytes, bytes.substr(0, tagEnd + 1));
    }
    text_ = bytes;
    rest_ = bytes;
    return Opening::Decodable;
}

TextDecoder::Opening TextDecoder::open(TextMemory bytes, bool isMarkedUtf8) {
    memory_ = std::move(bytes);
    return open(memory_.bytes(), isMarkedUtf8);
}

void TextDecoder::encodeUtf8() {
    if (codePage_ != cNuCodePageUtf8) {
        memory_ = TextMemory::encoded(NuAnsiStringToWideString(text_, codePage_));
        text_ = memory_.bytes();
        rest_ = text_;
        codePage_ = cNuCodePageUtf8;
    }
}

void TextDecoder::padShortText() {
    if (text_.empty() || text_.size() > longestShortText) {
        return;
    }
    TextMemory padded(text_.size() + paddingOfShortText);
    std::memcpy(padded.data(), text_.data(), text_.size());
    std::memset(padded.data() + text_.size(), 0, paddingOfShortText);
    memory_ = std::move(padded);
    text_ = {reinterpret_cast<const char*>(memory_.data()), text_.size()};
    rest_ = text_;
    padding_ = paddingOfShortText;
    last_ = memory_.data()[text_.size() - 1];
}

std::size_t TextDecoder::decode(NuXmlChar* units, std::size_t room) {
    const std::string_view piece = rest_.substr(0, room);
    if (codePage_ != cNuCodePageUtf8) {
        rest_.remove_prefix(piece.size());
        return NuWidenAnsi(piece, units, codePage_);
    }
    // A sequence that the piece cuts off waits for the next one.
    const TNuUtf8Prefix decoded = NuDecodeUtf8Prefix(piece, units);
    rest_.remove_prefix(decoded.Bytes);
    return decoded.Units;
}

} // namespace nu
