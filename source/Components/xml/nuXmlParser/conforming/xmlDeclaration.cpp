#include "nuXmlParser/conforming/xmlDeclaration.h"

#include <algorithm>

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

/// Steps through the text of a declaration, which "?>" ends.
class Reader {
public:
    Reader(std::string_view text, XmlDeclaration& declaration) noexcept
        : text_(text), declaration_(declaration) {}

    void readAll() {
        // 1. The version comes first and cannot be missed.
        step(5);
        if (!readPart("version", declaration_.version)) {
            fail(messages::versionFirst);
            return;
        }
        if (!isVersion(declaration_.version)) {
            failAt(messages::versionUnknown, declaration_.version);
            return;
        }
        // 2. The encoding, then whether the document stands alone.
        if (readPart("encoding", declaration_.encoding) && !isEncoding(declaration_.encoding)) {
            failAt(messages::encodingNoName, declaration_.encoding);
        }
        if (readPart("standalone", declaration_.standalone) && declaration_.standalone != "yes" &&
            declaration_.standalone != "no") {
            failAt(messages::standaloneValue, declaration_.standalone);
        }
        // 3. The end.
        skipSpaces();
        if (text_.substr(place_) != "?>") {
            fail(messages::malformedXmlDeclaration);
        }
    }

private:
    /// White space, the name, "=" and a value in quotes; false where another name follows.
    bool readPart(std::string_view name, std::string_view& value) {
        if (declaration_.fault != nullptr) {
            return false;
        }
        const std::size_t start = place_;
        skipSpaces();
        if (!text_.substr(place_).starts_with(name)) {
            place_ = start;
            return false;
        }
        const bool isDivided = place_ != start;
        declaration_.isPlain = declaration_.isPlain && text_.substr(start, place_ - start) == " ";
        step(name.size());
        const std::size_t nameEnd = place_;
        skipSpaces();
        if (!isDivided || at() != '=') {
            fail(messages::malformedXmlDeclaration);
            return false;
        }
        step(1);
        skipSpaces();
        declaration_.isPlain = declaration_.isPlain && place_ == nameEnd + 1 && at() == '"';
        const char quote = at();
        const std::size_t end = text_.find(quote, std::min(place_ + 1, text_.size()));
        if ((quote != '"' && quote != '\'') || end == text_.npos) {
            fail(messages::malformedXmlDeclaration);
            return false;
        }
        value = text_.substr(place_ + 1, end - place_ - 1);
        place_ = end + 1;
        return true;
    }

    void skipSpaces() noexcept {
        while (isSpace(at())) {
            declaration_.isPlain = declaration_.isPlain && at() == ' ';
            ++place_;
        }
    }
    [[nodiscard]] char at() const noexcept { return place_ < text_.size() ? text_[place_] : '\0'; }
    void step(std::size_t count) noexcept { place_ += count; }

    static bool isVersion(std::string_view text) noexcept {
        return text.size() > 2 && text.starts_with("1.") &&
               text.find_first_not_of("0123456789", 2) == text.npos;
    }
    static bool isEncoding(std::string_view text) noexcept {
        const auto isAllowed = [](char c) {
            return isByte(c, bcNameChar) && !isByte(c, bcHigh) && c != ':';
        };
        return !text.empty() && isAllowed(text.front()) && isByte(text.front(), bcNameStart) &&
               text.front() != '_' && std::all_of(text.begin(), text.end(), isAllowed);
    }

    void fail(std::u16string_view message) noexcept { fail(message, place_, {}); }
    void failAt(std::u16string_view message, std::string_view value) noexcept {
        fail(message, static_cast<std::size_t>(value.data() - text_.data()), value);
    }
    void fail(std::u16string_view message, std::size_t place, std::string_view text) noexcept {
        if (declaration_.fault == nullptr) {
            declaration_.fault = message.data();
            declaration_.faultAt = place;
            declaration_.faultText = text;
        }
    }

    std::string_view text_;
    XmlDeclaration& declaration_;
    std::size_t place_ = 0;
};

} // namespace

XmlDeclaration XmlDeclaration::read(std::string_view text) {
    XmlDeclaration declaration;
    Reader(text, declaration).readAll();
    return declaration;
}

std::string XmlDeclaration::write(std::string_view encodingName) const {
    std::string text = "<?xml version=\"";
    text.append(version).append("\"");
    if (!encoding.empty()) {
        text.append(" encoding=\"").append(encodingName).append("\"");
    }
    if (!standalone.empty()) {
        text.append(" standalone=\"").append(standalone).append("\"");
    }
    return text.append("?>");
}

} // namespace nu
