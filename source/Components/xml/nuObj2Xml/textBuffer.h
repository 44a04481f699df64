#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>

#include "host/runtime/stream.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Text on its way, as UTF-16 (char16_t) or UTF-8 (char): gathered as a whole, or handed on to a
/// stream whenever a block is full.
template <class Unit> class TextBuffer {
public:
    static constexpr std::size_t blockSize = std::size_t{64} * 1024 / sizeof(Unit);

    /// \param target gets the text in blocks; without one all of it is kept
    explicit TextBuffer(host::TStream* target = nullptr) noexcept : target_(target) {}
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    /// A place for `count` more units; accept tells how many of them are there.
    Unit* room(std::size_t count) {
        if (static_cast<std::size_t>(end_ - next_) < count) [[unlikely]] {
            makeRoom(count);
        }
        return next_;
    }
    void accept(std::size_t count) noexcept { next_ += count; }

    /// Text in the form of the buffer.
    void append(std::basic_string_view<Unit> text) {
        std::copy_n(text.data(), text.size(), room(text.size()));
        next_ += text.size();
    }
    /// ASCII characters.
    void appendAscii(std::string_view text) {
        std::copy_n(text.data(), text.size(), room(text.size()));
        next_ += text.size();
    }
    /// UTF-16 text; its last character is whole.
    void appendWide(std::u16string_view text);
    /// UTF-16 text as the content of an element. NUL is dropped, and a carriage return and the
    /// first character of a text of nothing but white space and control characters become
    /// references, because readers would change them.
    void appendContent(std::u16string_view text);
    /// The same for UTF-8; what is malformed becomes U+FFFD.
    void appendUtf8Content(std::string_view text);

    /// What is gathered; valid until more comes.
    [[nodiscard]] std::basic_string_view<Unit> view() const noexcept {
        return {block_.get(), static_cast<std::size_t>(next_ - block_.get())};
    }
    void clear() noexcept { next_ = block_.get(); }
    /// Hands on what is gathered. Throws host::EWriteError.
    void flush();

private:
    static constexpr bool isUtf8 = std::is_same_v<Unit, char>;

    void makeRoom(std::size_t count);
    void appendEncoded(std::u16string_view text);
    template <class Source> void appendEscaped(std::basic_string_view<Source> text);
    template <class Source> bool appendShort(std::basic_string_view<Source> text);

    std::unique_ptr<Unit[]> block_;
    Unit* next_ = nullptr;
    Unit* end_ = nullptr;
    host::TStream* target_;
};

extern template class TextBuffer<char>;
extern template class TextBuffer<char16_t>;

} // namespace nu
