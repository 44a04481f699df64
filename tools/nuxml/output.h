#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tool {

/// Which characters writeText writes as escapes. An unpaired surrogate always is one: `\uD83D`.
enum class Escapes {
    None,    ///< nothing else
    Visible, ///< controls, what turns lines and directions, and the backslash
    Json,    ///< what a string of JSON cannot hold: controls, quote, backslash
};

/// A descriptor behind a buffer. Whoever reads it may go away: writing then does nothing any more.
class Output {
public:
    explicit Output(int descriptor) noexcept : descriptor_(descriptor) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(std::string_view bytes) noexcept {
        if (bytes.size() > capacity - fill_) {
            flush();
            if (bytes.size() > capacity) {
                send(bytes.data(), bytes.size());
                return;
            }
        }
        bytes.copy(buffer_.data() + fill_, bytes.size());
        fill_ += bytes.size();
    }
    void write(char byte) noexcept { write(std::string_view(&byte, 1)); }
    void writeNumber(std::int64_t number) noexcept;
    void writeSpaces(std::size_t count) noexcept;
    /// UTF-16 as UTF-8.
    void writeText(std::u16string_view text, Escapes escapes) noexcept;
    /// A string of JSON with its quotes.
    void writeJsonString(std::u16string_view text) noexcept;
    void flush() noexcept;

    [[nodiscard]] bool isTerminal() const noexcept;
    /// False once a write has failed.
    [[nodiscard]] bool isOpen() const noexcept { return error_ == 0; }
    /// The error number of the write that failed; 0 where none did or only the reader went away.
    [[nodiscard]] int failure() const noexcept;

private:
    static constexpr std::size_t capacity = std::size_t{64} * 1024;

    void send(const char* bytes, std::size_t count) noexcept;

    int descriptor_;
    int error_ = 0;
    std::size_t fill_ = 0;
    std::array<char, capacity> buffer_;
};

} // namespace tool
