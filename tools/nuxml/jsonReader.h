#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "event.h"

namespace tool {

/// What is no JSON, or none that can become XML; what() says why.
class JsonFault : public std::runtime_error {
public:
    JsonFault(const std::string& message, EventPlace place)
        : std::runtime_error(message), place_(place) {}
    /// Line and column from 1; columns count bytes.
    [[nodiscard]] EventPlace place() const noexcept { return place_; }

private:
    EventPlace place_;
};

/// What stands in JSON, one after the other.
enum class JsonToken { ObjectStart, ObjectEnd, ArrayStart, ArrayEnd, Key, Text, Null, End };

/// Reads JSON (RFC 8259) piece by piece from UTF-8 that somebody holds. What brackets belong
/// together is for whoever reads; what follows what is checked here.
class JsonReader {
public:
    explicit JsonReader(std::string_view text);

    /// Throws JsonFault.
    JsonToken next();
    /// The text of a key or of a value that is no object and no array; numbers, true and false as
    /// they are written. Until the next call.
    [[nodiscard]] const std::u16string& text() const noexcept { return value_; }
    [[noreturn]] void fail(const std::string& message) const;

private:
    [[nodiscard]] char peek() const noexcept { return at_ < text_.size() ? text_[at_] : '\0'; }
    void skipBlanks() noexcept;
    JsonToken readValue();
    JsonToken readWord();
    void readString();
    char16_t readEscape();
    char16_t readFourDigits();
    JsonToken afterValue(JsonToken token) noexcept;
    JsonToken close(JsonToken token);

    enum class Expects { Value, ValueOrEnd, KeyOrEnd, Key, CommaOrEnd, Nothing };

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t tokenAt_ = 0;
    Expects expects_ = Expects::Value;
    std::string open_; ///< the brackets that are open
    std::u16string value_;
};

} // namespace tool
