#pragma once

#include <chrono>
#include <string_view>

namespace tool {

/// A line on standard error that tells how far the work has come. It appears after a second of work
/// and only on a terminal, or when somebody asks for it.
class Progress {
public:
    Progress() noexcept;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { clear(); }

    /// Shows it wherever standard error goes, in lines where that is no terminal.
    void enable() noexcept { isWanted_ = true; }
    /// Whether it is time to show something.
    [[nodiscard]] bool isDue() noexcept;
    /// Puts `text` in place of what was shown before.
    void show(std::string_view text) noexcept;
    /// Takes the line away.
    void clear() noexcept;

private:
    bool isOnTerminal_;
    bool isWanted_;
    bool isShown_ = false;
    std::chrono::steady_clock::time_point next_;
};

} // namespace tool
