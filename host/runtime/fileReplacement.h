#pragma once

#include <filesystem>
#include <optional>

#include "host/runtime/export.h"
#include "host/runtime/fileStream.h"

struct stat;

namespace host {

/// A file that is written beside the one that it is for and takes its place when it is complete.
/// Whoever looks there finds the old file or the new one, never a part; what fails before the end
/// leaves the old file as it was and nothing beside it.
///
/// The new file has the permissions of the old one, and its owner where the system allows that. A
/// name that is a link stays one: the file that it leads to is replaced. What is no plain file,
/// such as a device, is written to directly.
class NUXML_API FileReplacement {
public:
    /// Throws EFileOpenError when the file could not be written to, or no file can be made in
    /// its folder.
    explicit FileReplacement(const std::filesystem::path& name);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement();

    /// The new file, open for reading and writing.
    [[nodiscard]] TStream& stream() noexcept { return *stream_; }
    /// Puts the new file in the place of the old one. Throws EWriteError.
    void commit();

private:
    void makeBeside(const struct stat* former);

    std::filesystem::path name_;      ///< as the caller knows it, for messages
    std::filesystem::path place_;     ///< where the file is, behind all links
    std::filesystem::path temporary_; ///< empty when there is none
    bool replaces_ = false;           ///< whether there is a file that could be lost
    std::optional<TFileStream> stream_;
};

} // namespace host
