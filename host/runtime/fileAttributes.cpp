#include "host/runtime/fileAttributes.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>

namespace host {

namespace {

constexpr mode_t permissions = 07777;
constexpr const char* accessList = "system.posix_acl_access";

constexpr std::u16string_view lostOwner = u"Its owner cannot be kept";
constexpr std::u16string_view lostPermissions = u"Its permissions cannot be kept";
constexpr std::u16string_view lostExtended = u"Its extended attributes cannot be kept";

/// Calls `read(buffer, size)` with a buffer that is large enough. Nothing when it fails.
template <class Read> std::optional<std::string> readWhole(Read read) {
    std::string bytes;
    for (;;) {
        ssize_t size = read(nullptr, 0);
        if (size > 0) {
            bytes.resize(static_cast<std::size_t>(size));
            size = read(bytes.data(), bytes.size());
        }
        if (size >= 0) {
            bytes.resize(static_cast<std::size_t>(size));
            return bytes;
        }
        if (errno != ERANGE) { // else it has grown in between
            return std::nullopt;
        }
    }
}

std::optional<std::string> attributeOf(int file, const char* name) {
    return readWhole(
        [&](char* buffer, std::size_t size) { return ::fgetxattr(file, name, buffer, size); });
}

/// What vouches for certain contents is wrong for others.
bool isSealOfContents(std::string_view name) noexcept {
    return name == "security.ima" || name == "security.evm";
}

/// The error number, 0 for none.
int keepExtended(int from, int to) {
    const auto names =
        readWhole([&](char* buffer, std::size_t size) { return ::flistxattr(from, buffer, size); });
    if (!names) {
        return errno == ENOTSUP ? 0 : errno;
    }
    bool hasAccessList = false;
    for (std::size_t at = 0; at < names->size(); at = names->find('\0', at) + 1) {
        const char* const name = names->c_str() + at;
        if (isSealOfContents(name)) {
            continue;
        }
        hasAccessList = hasAccessList || name == std::string_view(accessList);
        const auto value = attributeOf(from, name);
        if (!value) {
            return errno;
        }
        // Some may be had, but not set.
        if (attributeOf(to, name) != value &&
            ::fsetxattr(to, name, value->data(), value->size(), 0) != 0) {
            return errno;
        }
    }
    // One that the folder gives to new files would let others in.
    if (!hasAccessList && ::fremovexattr(to, accessList) != 0 && errno != ENODATA &&
        errno != ENOTSUP) {
        return errno;
    }
    return 0;
}

} // namespace

AttributeLoss keepAttributes(int from, int to) {
    struct stat former = {};
    struct stat present = {};
    if (::fstat(from, &former) != 0 || ::fstat(to, &present) != 0) {
        return {lostPermissions, errno};
    }
    if ((former.st_uid != present.st_uid || former.st_gid != present.st_gid) &&
        ::fchown(to, former.st_uid, former.st_gid) != 0) {
        return {lostOwner, errno};
    }
    if (const int error = keepExtended(from, to)) {
        return {lostExtended, error};
    }
    // The last, because a change of the owner takes permissions away. The system may do less than
    // asked without a word.
    const mode_t mode = former.st_mode & permissions;
    if (::fchmod(to, mode) != 0 || ::fstat(to, &present) != 0) {
        return {lostPermissions, errno};
    }
    if ((present.st_mode & permissions) != mode) {
        return {lostPermissions, EPERM};
    }
    return {};
}

} // namespace host
