#include "jsonReader.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "common/utf8.h"
#include "host/runtime/unicode.h"
#include "jsonText.h"

namespace tool {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// What XML can hold, by itself or as half of a pair.
constexpr bool isXmlUnit(char16_t unit) noexcept {
    return unit >= 0x20 ? unit < 0xFFFE : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

} // namespace

JsonReader::JsonReader(std::string_view text) : text_(text) {
    if (text_.starts_with(byteOrderMark)) {
        at_ = byteOrderMark.size();
    }
}

void JsonReader::fail(const std::string& message) const {
    const std::string_view before = text_.substr(0, tokenAt_);
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 where there is none
    throw JsonFault(message, {std::count(before.begin(), before.end(), '\n') + 1,
                              static_cast<std::int64_t>(tokenAt_ - lineStart) + 1});
}

void JsonReader::skipBlanks() noexcept {
    const std::size_t end = text_.find_first_not_of(" \t\r\n", at_);
    at_ = end == text_.npos ? text_.size() : end;
}

JsonToken JsonReader::next() {
    // 1. What separates.
    skipBlanks();
    tokenAt_ = at_;
    if (expects_ == Expects::CommaOrEnd && peek() == ',') {
        ++at_;
        skipBlanks();
        tokenAt_ = at_;
        expects_ = open_.back() == '{' ? Expects::Key : Expects::Value;
    }
    // 2. Ends.
    const bool mayEnd = expects_ == Expects::CommaOrEnd || expects_ == Expects::KeyOrEnd ||
                        expects_ == Expects::ValueOrEnd;
    if (mayEnd && peek() == (open_.back() == '{' ? '}' : ']')) {
        return close(open_.back() == '{' ? JsonToken::ObjectEnd : JsonToken::ArrayEnd);
    }
    if (expects_ == Expects::Nothing) {
        if (at_ < text_.size()) {
            fail("something follows the end of the JSON");
        }
        return JsonToken::End;
    }
    if (expects_ == Expects::CommaOrEnd) {
        fail(std::string("a comma or \"") + (open_.back() == '{' ? '}' : ']') + "\" is missing");
    }
    // 3. Keys and values.
    if (expects_ == Expects::Key || expects_ == Expects::KeyOrEnd) {
        if (peek() != '"') {
            fail("the name of a member in quotation marks is missing");
        }
        readString();
        skipBlanks();
        if (peek() != ':') {
            tokenAt_ = at_;
            fail("a colon is missing");
        }
        ++at_;
        expects_ = Expects::Value;
        return JsonToken::Key;
    }
    return readValue();
}

JsonToken JsonReader::readValue() {
    switch (peek()) {
    case '{':
        open_ += text_[at_++];
        expects_ = Expects::KeyOrEnd;
        return JsonToken::ObjectStart;
    case '[':
        open_ += text_[at_++];
        expects_ = Expects::ValueOrEnd;
        return JsonToken::ArrayStart;
    case '"':
        readString();
        return afterValue(JsonToken::Text);
    default:
        return readWord();
    }
}

JsonToken JsonReader::readWord() {
    const std::size_t end = std::min(text_.find_first_of(" \t\r\n,]}:\"[{", at_), text_.size());
    const std::string_view word = text_.substr(at_, end - at_);
    value_ = NuFromUtf8(word);
    if (word != "null" && word != "true" && word != "false" && !isJsonNumber(value_)) {
        fail(word.empty() ? std::string("a value is missing")
                          : '"' + std::string(word) + "\" is no value of JSON");
    }
    at_ = end;
    if (word == "null") {
        value_.clear();
        return afterValue(JsonToken::Null);
    }
    return afterValue(JsonToken::Text);
}

JsonToken JsonReader::afterValue(JsonToken token) noexcept {
    expects_ = open_.empty() ? Expects::Nothing : Expects::CommaOrEnd;
    return token;
}

JsonToken JsonReader::close(JsonToken token) {
    ++at_;
    open_.pop_back();
    return afterValue(token);
}

void JsonReader::readString() {
    std::u16string units;
    ++at_;
    for (;;) {
        // 1. As much as stands there by itself.
        const std::size_t end = text_.find_first_of("\"\\", at_);
        if (end == text_.npos) {
            fail("a string has no end");
        }
        const std::string_view part = text_.substr(at_, end - at_);
        std::optional<std::u16string> decoded = NuUtf8ToWideString(part);
        if (!decoded) {
            fail("a string is not UTF-8");
        }
        if (std::ranges::any_of(part, [](char byte) { return byte >= 0 && byte < ' '; })) {
            fail("a string holds a control character");
        }
        units += *decoded;
        at_ = end + 1;
        if (text_[end] == '"') {
            break;
        }
        // 2. An escape.
        units += readEscape();
    }
    // 3. What XML has no place for.
    for (std::size_t index = 0; index < units.size(); ++index) {
        const bool isPair = host::isHighSurrogate(units[index]) && index + 1 < units.size() &&
                            host::isLowSurrogate(units[index + 1]);
        const bool isHalf = host::isSurrogate(units[index]);
        if (!isXmlUnit(units[index]) || (isHalf && !isPair)) {
            fail("a string holds a character that XML cannot have");
        }
        index += isPair ? 1 : 0;
    }
    value_ = std::move(units);
}

char16_t JsonReader::readEscape() {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::u16string_view meant = u"\"\\/\b\f\n\r\t";
    const char letter = peek();
    ++at_;
    if (letter == 'u') {
        return readFourDigits();
    }
    const std::size_t index = letters.find(letter);
    if (index == letters.npos) {
        fail("a string holds an unknown escape");
    }
    return meant[index];
}

char16_t JsonReader::readFourDigits() {
    unsigned unit = 0;
    const std::string_view digits = text_.substr(std::min(at_, text_.size()), 4);
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    if (result.ec != std::errc() || result.ptr != digits.data() + 4 || digits.size() < 4) {
        fail("a string holds an unknown escape");
    }
    at_ += digits.size();
    return static_cast<char16_t>(unit);
}

} // namespace tool
