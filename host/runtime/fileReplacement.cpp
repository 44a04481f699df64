#include "host/runtime/fileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <string>
#include <system_error>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/unicode.h"

namespace host {

namespace {

constexpr int mostLinks = 40;
constexpr int mostAttempts = 100;
constexpr mode_t permissions = 07777;

std::u16string reasonOf(int error) { return utf8ToUtf16(std::generic_category().message(error)); }

[[noreturn]] void raiseNotCreated(const std::filesystem::path& name, int error) {
    throw EFileOpenError(formatMessage(u"Cannot create file \"%s\". %s",
                                       {utf8ToUtf16(name.string()), reasonOf(error)}));
}

/// The file behind all links, which may not be there yet.
std::filesystem::path behindLinks(const std::filesystem::path& name) {
    std::filesystem::path place = name;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(std::filesystem::symlink_status(place, error));
         ++links) {
        if (links == mostLinks) {
            raiseNotCreated(name, ELOOP);
        }
        const std::filesystem::path target = std::filesystem::read_symlink(place, error);
        if (error) {
            raiseNotCreated(name, error.value());
        }
        place = place.parent_path() / target;
    }
    return place;
}

/// A name that nobody else has, for a file in the same folder. Its length does not depend on the
/// name of the file that it is for, which may be as long as the system allows.
std::filesystem::path temporaryName(const std::filesystem::path& place) {
    static constexpr char digits[] = "0123456789abcdef";
    std::random_device random;
    std::string name = ".nuxml-";
    for (int count = 0; count < 16; ++count) {
        name += digits[random() % 16];
    }
    return place.parent_path() / (name + ".tmp");
}

/// Gives a file the owner and the permissions of another one. Owners may be changed by few; a group
/// that would see more than before is given the rights of everybody instead.
void takeRights(int descriptor, const struct stat& former) noexcept {
    mode_t mode = former.st_mode & permissions;
    const bool hasGroup = ::fchown(descriptor, former.st_uid, former.st_gid) == 0 ||
                          ::fchown(descriptor, static_cast<uid_t>(-1), former.st_gid) == 0;
    if (!hasGroup) {
        mode = (mode & ~mode_t{S_IRWXG}) | ((mode & S_IRWXO) << 3);
    }
    ::fchmod(descriptor, mode);
}

/// Waits until the contents are on the disk.
int synchronise(const std::filesystem::path& path) noexcept {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    return error;
}

} // namespace

FileReplacement::FileReplacement(const std::filesystem::path& name) : name_(name) {
    struct stat former = {};
    const bool isThere = ::stat(name.c_str(), &former) == 0;
    replaces_ = isThere && S_ISREG(former.st_mode);
    if (isThere && !replaces_) {
        // A pipe waits for its reader only when it is opened for nothing but writing.
        stream_.emplace(name, S_ISFIFO(former.st_mode) ? fmOpenWrite : fmCreate);
        return;
    }
    // Not before: what a link such as /dev/stdout leads to need not have a name.
    place_ = behindLinks(name);
    // Nobody may replace what he must not write, although the system would let him.
    if (replaces_ && ::access(place_.c_str(), W_OK) != 0) {
        raiseNotCreated(name, errno);
    }
    makeBeside(replaces_ ? &former : nullptr);
    try {
        stream_.emplace(temporary_, fmOpenReadWrite);
    } catch (...) {
        ::unlink(temporary_.c_str());
        throw;
    }
}

FileReplacement::~FileReplacement() {
    stream_.reset();
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

void FileReplacement::makeBeside(const struct stat* former) {
    int descriptor = -1;
    for (int attempt = 0; descriptor < 0; ++attempt) {
        if (attempt > 0 && (errno != EEXIST || attempt == mostAttempts)) {
            raiseNotCreated(name_, errno);
        }
        temporary_ = temporaryName(place_);
        // Nobody else reads it before it has the rights of the old file.
        descriptor = ::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC,
                            former != nullptr ? 0600 : 0666);
    }
    if (former != nullptr) {
        takeRights(descriptor, *former);
    }
    ::close(descriptor);
}

void FileReplacement::commit() {
    stream_->Flush();
    stream_.reset();
    if (temporary_.empty()) {
        return;
    }
    // After a crash of the system there must be one of the two files as well. It costs time, so it
    // is done only where there is something to lose.
    int error = replaces_ ? synchronise(temporary_) : 0;
    if (error == 0 && std::rename(temporary_.c_str(), place_.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        throw EWriteError(formatMessage(u"Cannot replace file \"%s\". %s",
                                        {utf8ToUtf16(name_.string()), reasonOf(error)}));
    }
    temporary_.clear();
}

} // namespace host
