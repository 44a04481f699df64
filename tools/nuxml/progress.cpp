#include "progress.h"

#include <unistd.h>

namespace tool {

namespace {

constexpr std::chrono::milliseconds firstAfter{1000};
constexpr std::chrono::milliseconds nextAfter{200};

/// Back to the start of the line, and nothing on it.
constexpr std::string_view emptyLine = "\r\x1B[K";

void writeToTerminal(std::string_view text) noexcept {
    // A terminal that is gone is no reason to stop.
    static_cast<void>(!::write(STDERR_FILENO, text.data(), text.size()));
}

} // namespace

Progress::Progress() noexcept
    : isOnTerminal_(::isatty(STDERR_FILENO) == 1), isWanted_(isOnTerminal_),
      next_(std::chrono::steady_clock::now() + firstAfter) {}

bool Progress::isDue() noexcept { return isWanted_ && std::chrono::steady_clock::now() >= next_; }

void Progress::show(std::string_view text) noexcept {
    writeToTerminal(isOnTerminal_ ? emptyLine : "");
    writeToTerminal(text);
    writeToTerminal(isOnTerminal_ ? "" : "\n");
    isShown_ = isOnTerminal_;
    next_ = std::chrono::steady_clock::now() + nextAfter;
}

void Progress::clear() noexcept {
    if (isShown_) {
        writeToTerminal(emptyLine);
        isShown_ = false;
    }
}

} // namespace tool
