#include "nuXmlDOM/core/domString.h"

#include <cstring>

#include "common/text.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"

namespace {

constexpr TNuCharSet notInNames = u": ";
constexpr TNuCharSet notInAttributeValues = u"\"";

/// Throws when one of the characters is refused. The characters need not be aligned.
void checkCharacters(const void* buffer, std::size_t count, const TNuCharSet& refused,
                     std::u16string_view message) {
    const auto* bytes = static_cast<const std::byte*>(buffer);
    for (std::size_t left = count / cNuXmlCharSize; left > 0; --left, bytes += cNuXmlCharSize) {
        NuXmlChar unit = 0;
        std::memcpy(&unit, bytes, cNuXmlCharSize);
        if (NuCharInSet(unit, refused)) {
            throw ENuDomInvalidCharacter(message);
        }
    }
}

} // namespace

TNuDOMString::~TNuDOMString() = default;
TNuDOMName::~TNuDOMName() = default;
TNuDOMAttribValue::~TNuDOMAttribValue() = default;
TNuDOMValue::~TNuDOMValue() = default;

NuXmlString TNuDOMString::GetAsDomString() const {
    NuXmlString text(size_ / cNuXmlCharSize, u'\0');
    std::memcpy(text.data(), Memory(), text.size() * cNuXmlCharSize);
    return text;
}

void TNuDOMString::SetAsDOMString(std::u16string_view text) {
    Clear();
    WriteBuffer(text.data(), text.size() * cNuXmlCharSize);
}

void TNuDOMString::WriteSaxBuffer(const NuXmlChar* characters, std::size_t count) {
    WriteBuffer(characters, count);
}

void TNuDOMString::Trim() {
    const NuXmlString text = GetAsDomString();
    const std::size_t first = text.find_first_not_of(cNuSpace);
    if (first == NuXmlString::npos) {
        Clear();
        return;
    }
    const std::size_t last = text.find_last_not_of(cNuSpace);
    SetAsDOMString(std::u16string_view(text).substr(first, last + 1 - first));
}

std::size_t TNuDOMName::Write(const void* buffer, std::size_t count) {
    checkCharacters(buffer, count, notInNames, nu::messages::invalidName);
    return TNuDOMString::Write(buffer, count);
}

std::size_t TNuDOMAttribValue::Write(const void* buffer, std::size_t count) {
    checkCharacters(buffer, count, notInAttributeValues, nu::messages::invalidAttributeValue);
    return TNuDOMString::Write(buffer, count);
}
