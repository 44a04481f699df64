// The inline forms of the C library that check sizes stand where these do.
#undef _FORTIFY_SOURCE

#include "systemCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>

namespace systemCalls {

namespace {

Plan plan;
bool isFollowed = false;
int calls = 0;
int writes = 0;
int written = -1; ///< the file that was written to
std::string failed;

/// Whether this call fails, with errno set.
bool fails(const char* name) {
    if (!isFollowed) {
        return false;
    }
    if (plan.action && plan.watched == name) {
        isFollowed = false;
        plan.action();
        isFollowed = true;
    }
    if (++calls != plan.failsAt) {
        return false;
    }
    failed = name;
    if (plan.signal != 0) {
        raise(plan.signal);
        return false;
    }
    errno = plan.error;
    return true;
}

template <class... Arguments> long system(long number, Arguments... arguments) {
    return syscall(number, arguments...);
}

bool isFolder(int file) {
    struct stat status = {};
    return fstatat(file, "", &status, AT_EMPTY_PATH) == 0 && S_ISDIR(status.st_mode);
}

/// Writes with `write(count)`, or as the plan says.
template <class Write>
ssize_t writePlanned(const char* name, int file, std::size_t count, Write write) {
    written = isFollowed ? file : written;
    if (fails(name)) {
        return -1;
    }
    if (isFollowed && plan.mostAtOnce > 0) {
        if (++writes % 2 == 0) {
            errno = EINTR;
            return -1;
        }
        count = std::min(count, plan.mostAtOnce);
    }
    return write(count);
}

} // namespace

void begin(const Plan& planned) {
    plan = planned;
    calls = writes = 0;
    written = -1;
    failed.clear();
    isFollowed = true;
}

std::string end() {
    isFollowed = false;
    return failed;
}

} // namespace systemCalls

using systemCalls::fails;
using systemCalls::isFollowed;
using systemCalls::plan;
using systemCalls::system;

// Where the libraries find them.
#pragma GCC visibility push(default)

extern "C" {

int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int mode = va_arg(rest, int);
    va_end(rest);
    return fails("open") ? -1 : static_cast<int>(system(SYS_openat, AT_FDCWD, path, flags, mode));
}
int openat(int folder, const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int mode = va_arg(rest, int);
    va_end(rest);
    const bool isUnnamed = (flags & O_TMPFILE) == O_TMPFILE;
    if (fails(isUnnamed ? "openat unnamed" : (flags & O_CREAT) != 0 ? "openat new" : "openat")) {
        return -1;
    }
    if (isFollowed && isUnnamed && !plan.knowsUnnamed) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return static_cast<int>(system(SYS_openat, folder, path, flags, mode));
}
int close(int file) {
    const bool isWritten = file == systemCalls::written;
    const int result = static_cast<int>(system(SYS_close, file));
    return fails(isWritten ? "close written" : "close") ? -1 : result;
}
ssize_t write(int file, const void* bytes, size_t count) {
    return systemCalls::writePlanned("write", file, count, [&](std::size_t some) {
        return system(SYS_write, file, bytes, some);
    });
}
ssize_t pwrite(int file, const void* bytes, size_t count, off_t place) {
    return systemCalls::writePlanned("pwrite", file, count, [&](std::size_t some) {
        return system(SYS_pwrite64, file, bytes, some, place);
    });
}
int fsync(int file) {
    return fails(isFollowed && systemCalls::isFolder(file) ? "fsync folder" : "fsync")
               ? -1
               : static_cast<int>(system(SYS_fsync, file));
}
int stat(const char* path, struct stat* status) noexcept {
    return fails("stat") ? -1 : fstatat(AT_FDCWD, path, status, 0);
}
int lstat(const char* path, struct stat* status) noexcept {
    return fails("lstat") ? -1 : fstatat(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
}
int fstat(int file, struct stat* status) noexcept {
    return fails("fstat") ? -1 : fstatat(file, "", status, AT_EMPTY_PATH);
}
ssize_t readlink(const char* path, char* target, size_t size) noexcept {
    return fails("readlink") ? -1 : system(SYS_readlinkat, AT_FDCWD, path, target, size);
}
int access(const char* path, int rights) noexcept {
    return fails("access") ? -1 : static_cast<int>(system(SYS_faccessat, AT_FDCWD, path, rights));
}
int fchown(int file, uid_t owner, gid_t group) noexcept {
    return fails("fchown") ? -1 : static_cast<int>(system(SYS_fchown, file, owner, group));
}
int fchmod(int file, mode_t mode) noexcept {
    return fails("fchmod") ? -1 : static_cast<int>(system(SYS_fchmod, file, mode));
}
ssize_t flistxattr(int file, char* names, size_t size) noexcept {
    return fails("flistxattr") ? -1 : system(SYS_flistxattr, file, names, size);
}
ssize_t fgetxattr(int file, const char* name, void* value, size_t size) noexcept {
    return fails("fgetxattr") ? -1 : system(SYS_fgetxattr, file, name, value, size);
}
int fsetxattr(int file, const char* name, const void* value, size_t size, int flags) noexcept {
    return fails("fsetxattr")
               ? -1
               : static_cast<int>(system(SYS_fsetxattr, file, name, value, size, flags));
}
int fremovexattr(int file, const char* name) noexcept {
    return fails("fremovexattr") ? -1 : static_cast<int>(system(SYS_fremovexattr, file, name));
}
int linkat(int from, const char* source, int to, const char* target, int flags) noexcept {
    return fails("linkat") ? -1
                           : static_cast<int>(system(SYS_linkat, from, source, to, target, flags));
}
int renameat(int from, const char* source, int to, const char* target) noexcept {
    return fails("renameat")
               ? -1
               : static_cast<int>(system(SYS_renameat2, from, source, to, target, 0U));
}
}

#pragma GCC visibility pop
