#pragma once

#include <array>

namespace host {

/// The name of a file that must not stay unless it is finished. The file is removed with this
/// object, or by removeUnfinishedFiles, which a signal that ends the program may call.
class UnfinishedFile {
public:
    UnfinishedFile() noexcept = default;
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    ~UnfinishedFile() { remove(); }

    /// Takes a new name that hardly anybody else has, in the folder with this descriptor, which
    /// must stay open. Before the file is made, so that no signal comes in between.
    void chooseName(int folder);
    /// nullptr while there is none.
    [[nodiscard]] const char* name() const noexcept { return isNamed_ ? name_.data() : nullptr; }
    /// The file has another name now, or none was made.
    void forget() noexcept;
    /// Deletes the file, if one was named and is not forgotten. Errors are not told.
    void remove() noexcept;

private:
    friend void removeUnfinishedFiles() noexcept;

    int folder_ = -1;
    bool isNamed_ = false;
    std::array<char, 32> name_{};
};

/// Removes every unfinished file of the process. Safe in a handler of a signal.
void removeUnfinishedFiles() noexcept;

} // namespace host
