#pragma once

#include <filesystem>
#include <memory>

#include "host/runtime/export.h"
#include "host/runtime/stream.h"

namespace host {

/// A file that is written beside the one that it is for and takes its place when it is complete.
/// Whoever looks there finds the old file or the new one, never a part, also after a crash of the
/// system; what fails before the end leaves the old file as it was and nothing beside it.
///
/// While it is written the new file has no name where the system knows such files, so nothing is
/// left of it even if the program is killed. Elsewhere removeUnfinished takes it away.
///
/// The new file has the owner, the permissions and the extended attributes of the old one; where
/// they cannot be kept, the old file is not replaced. A name that is a link stays one: the file
/// that it leads to is replaced. Deliberate: other names of the old file (hard links) keep the old
/// contents, because only a file of its own can be complete at once.
///
/// A name of an output that the program has open already, such as /dev/stdout, means that output:
/// it is written to where it stands. What else is no regular file (a folder, a pipe, a device) is
/// refused.
class FileReplacement {
public:
    /// Throws EFileOpenError when the file could not be written to, or no file can be made in
    /// its folder.
    NUXML_API explicit FileReplacement(const std::filesystem::path& name);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    NUXML_API ~FileReplacement();

    /// The new file, open for reading and writing.
    [[nodiscard]] TStream& stream() noexcept { return *stream_; }
    /// Puts the new file in the place of the old one, once. Throws EWriteError.
    NUXML_API void commit();

    /// Takes away what unfinished replacements of this process have left so far, which can be
    /// committed no more. For the handler of a signal that ends the program; safe there.
    NUXML_API static void removeUnfinished() noexcept;

private:
    class Work;

    std::unique_ptr<Work> work_;
    TStream* stream_; ///< of the work
};

} // namespace host
