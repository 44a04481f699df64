#include "lineEndStream.h"

namespace tool {

std::size_t LineEndStream::Write(const void* buffer, std::size_t count) {
    if (isWide_) {
        pass(std::u16string_view(static_cast<const char16_t*>(buffer), count / sizeof(char16_t)));
    } else {
        pass(std::string_view(static_cast<const char*>(buffer), count));
    }
    return count;
}

void LineEndStream::finish() {
    if (isReturnPending_) {
        isReturnPending_ = false;
        isWide_ ? put(std::u16string_view(u"\r")) : put(std::string_view("\r"));
    }
}

template <class Unit> void LineEndStream::pass(std::basic_string_view<Unit> text) {
    while (!text.empty()) {
        // 1. Up to the end of the line, without the "\r" that belongs to it.
        const std::size_t end = text.find(Unit{'\n'});
        std::basic_string_view<Unit> line = text.substr(0, end);
        if (!line.empty()) {
            finish();
            isReturnPending_ = line.back() == Unit{'\r'};
            line.remove_suffix(isReturnPending_ ? 1 : 0);
            put(line);
        }
        if (end == text.npos) {
            return;
        }
        // 2. The line end that is wanted.
        isReturnPending_ = false;
        putLineEnd<Unit>();
        text.remove_prefix(end + 1);
    }
}

template <class Unit> void LineEndStream::put(std::basic_string_view<Unit> text) {
    target_.WriteBuffer(text.data(), text.size() * sizeof(Unit));
}

template <class Unit> void LineEndStream::putLineEnd() {
    for (const char16_t unit : lineEnd_) {
        const Unit written = static_cast<Unit>(unit);
        put(std::basic_string_view<Unit>(&written, 1));
    }
}

} // namespace tool
