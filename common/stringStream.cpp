#include "common/stringStream.h"

#include "common/codePage.h"
#include "host/runtime/exception.h"

namespace {

constexpr TNuStringType narrow = 1;
constexpr TNuStringType wide = 2;

} // namespace

TNuStringStream::TNuStringStream(TNuStringType stringType, std::size_t capacity)
    : stringType_(stringType) {
    if (stringType != narrow && stringType != wide) {
        throw host::Exception(u"A string stream has characters of 1 or 2 bytes");
    }
    Reserve(capacity * stringType);
}

TNuStringStream::TNuStringStream(std::u16string_view text) : TNuStringStream(wide, text.size()) {
    append(text.data(), text.size() * wide);
    position_ = 0;
}

TNuStringStream::~TNuStringStream() = default;

void TNuStringStream::AddString(std::u16string_view text) {
    if (stringType_ == wide) {
        append(text.data(), text.size() * wide);
    } else {
        const std::string converted = NuWideStringToAnsiString(text);
        append(converted.data(), converted.size());
    }
}

void TNuStringStream::AddString(std::string_view text) {
    if (stringType_ == narrow) {
        append(text.data(), text.size());
    } else {
        const std::u16string converted = NuAnsiStringToWideString(text);
        append(converted.data(), converted.size() * wide);
    }
}

std::u16string TNuStringStream::GetAsWideString() const {
    if (stringType_ == wide) {
        return std::u16string(WideView());
    }
    return NuAnsiStringToWideString(GetAsAnsiString());
}

std::string TNuStringStream::GetAsAnsiString() const {
    if (stringType_ == narrow) {
        return {reinterpret_cast<const char*>(memory_), size_};
    }
    return NuWideStringToAnsiString(WideView());
}

std::u16string_view TNuStringStream::WideView() const noexcept {
    if (stringType_ != wide) {
        return {};
    }
    return {reinterpret_cast<const char16_t*>(memory_), Length()};
}

void TNuStringStream::append(const void* bytes, std::size_t count) {
    position_ = size_;
    Write(bytes, count);
}
