#include "host/runtime/fileReplacement.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>
#include <string>
#include <system_error>

#include "host/runtime/descriptor.h"
#include "host/runtime/digits.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileAttributes.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/format.h"
#include "host/runtime/unfinishedFile.h"
#include "host/runtime/unicode.h"

namespace host {

namespace {

constexpr int mostLinks = 40;
constexpr int mostAttempts = 100;

std::u16string reasonOf(int error) { return utf8ToUtf16(std::generic_category().message(error)); }

std::filesystem::path folderOf(const std::filesystem::path& place) {
    return place.has_parent_path() ? place.parent_path() : std::filesystem::path(".");
}

/// The system's name of an open file, a link to it.
std::string descriptorName(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

/// Whether the name stands in the folder of this process's open files, whatever it is called.
bool isAmongDescriptors(const std::filesystem::path& place) {
    struct stat folder = {};
    struct stat descriptors = {};
    return ::stat(folderOf(place).c_str(), &folder) == 0 &&
           ::stat("/proc/self/fd", &descriptors) == 0 && folder.st_dev == descriptors.st_dev &&
           folder.st_ino == descriptors.st_ino;
}

/// Why something that is no regular file is not written.
std::u16string refusalOf(mode_t mode) {
    if (S_ISDIR(mode)) {
        return reasonOf(EISDIR);
    }
    return S_ISFIFO(mode)   ? u"It is a pipe"
           : S_ISSOCK(mode) ? u"It is a socket"
                            : u"It is a device";
}

/// While it lives no signal ends the program, unless by a fault of its own or by force.
class SignalsHeld {
public:
    SignalsHeld() noexcept {
        sigset_t held;
        sigfillset(&held);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP}) {
            sigdelset(&held, fault);
        }
        isHolding_ = pthread_sigmask(SIG_BLOCK, &held, &former_) == 0;
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() {
        if (isHolding_) {
            pthread_sigmask(SIG_SETMASK, &former_, nullptr);
        }
    }

private:
    sigset_t former_;
    bool isHolding_;
};

/// Waits until what is open is on the disk.
int synchronise(int descriptor) noexcept {
    while (::fsync(descriptor) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

/// Waits until the names in a folder are on the disk.
int synchroniseFolder(int folder) noexcept {
    const int error = synchronise(folder);
    // One that may be written but not read cannot be waited for, nor can those of some file
    // systems.
    return error == EBADF || error == EINVAL ? 0 : error;
}

} // namespace

/// What is done for a file that takes the place of another.
class FileReplacement::Work {
public:
    explicit Work(const std::filesystem::path& name);

    [[nodiscard]] TStream& stream() noexcept { return *stream_; }
    void commit();

private:
    bool takeOpenOutput(const std::filesystem::path& link);
    void openFormer(const std::filesystem::path& place);
    void makeNew();
    int makeUnnamed() const;
    void giveName();
    void takePlace();
    [[noreturn]] void raiseNotCreated(std::u16string_view reason) const;
    [[noreturn]] void raiseNotCreated(int error) const;
    [[noreturn]] void raiseNotReplaced(std::u16string_view reason) const;

    std::filesystem::path name_; ///< as the caller knows it, for messages
    Descriptor folder_;          ///< where the file is, behind all links
    std::string leaf_;           ///< its name there
    Descriptor former_;          ///< the old file, if there is one
    UnfinishedFile unfinished_;
    int written_ = -1; ///< the new file, which the stream owns; -1 for an output open already
    std::optional<TFileStream> stream_;
};

FileReplacement::FileReplacement(const std::filesystem::path& name)
    : work_(std::make_unique<Work>(name)), stream_(&work_->stream()) {}

FileReplacement::~FileReplacement() = default;

void FileReplacement::commit() { work_->commit(); }

void FileReplacement::removeUnfinished() noexcept { removeUnfinishedFiles(); }

FileReplacement::Work::Work(const std::filesystem::path& name) : name_(name) {
    // 1. The place of the file, behind all links.
    std::filesystem::path place = name;
    struct stat status = {};
    for (int links = 0;; ++links) {
        const bool isThere = ::lstat(place.c_str(), &status) == 0;
        if (!isThere && errno != ENOENT) {
            raiseNotCreated(errno);
        }
        if (!isThere || !S_ISLNK(status.st_mode)) {
            break;
        }
        if (links == mostLinks) {
            raiseNotCreated(ELOOP);
        }
        // Before it is read: what an open file was called need not be its name.
        if (takeOpenOutput(place)) {
            return;
        }
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(place, error);
        if (error) {
            raiseNotCreated(error.value());
        }
        place = place.parent_path() / target;
    }

    // 2. What is there. From here on everything goes by way of the open folder and the open files,
    // so that nobody can put something else in between.
    openFormer(place);

    // 3. The file that takes its place.
    makeNew();
}

/// True when the link is an open output of this program, which is then the stream.
bool FileReplacement::Work::takeOpenOutput(const std::filesystem::path& link) {
    const std::optional<int> descriptor = parseDigits<int>(link.filename().string());
    if (!descriptor || !isAmongDescriptors(link)) {
        return false;
    }
    // What is open may be a folder, or open to be read only; writing then says so.
    const int own = ::fcntl(*descriptor, F_DUPFD_CLOEXEC, 0);
    if (own < 0) {
        raiseNotCreated(errno);
    }
    stream_.emplace(own, true);
    return true;
}

void FileReplacement::Work::openFormer(const std::filesystem::path& place) {
    leaf_ = place.filename().string();
    struct stat status = {};
    const bool isThere = ::stat(place.c_str(), &status) == 0;
    if (!isThere && errno != ENOENT) {
        raiseNotCreated(errno);
    }
    if (isThere && !S_ISREG(status.st_mode)) {
        raiseNotCreated(refusalOf(status.st_mode));
    }
    const std::filesystem::path folder = folderOf(place);
    folder_ = Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder_.isOpen() && errno == EACCES) {
        folder_ = Descriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    if (!folder_.isOpen() || leaf_.empty()) {
        raiseNotCreated(folder_.isOpen() ? ENOENT : errno);
    }
    if (!isThere) {
        return;
    }
    // To be written, although nothing is: nobody may replace what he must not write, even if the
    // system would let him. And without waiting, should it have become a pipe.
    former_ = Descriptor(
        ::openat(folder_.number(), leaf_.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!former_.isOpen() || ::fstat(former_.number(), &status) != 0) {
        raiseNotCreated(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        raiseNotCreated(refusalOf(status.st_mode));
    }
}

/// Makes the new file, and writes it through the descriptor that it was made with.
void FileReplacement::Work::makeNew() {
    written_ = makeUnnamed();
    for (int attempt = 0; written_ < 0; ++attempt) {
        if (attempt > 0 && (errno != EEXIST || attempt == mostAttempts)) {
            const int error = errno;
            unfinished_.forget();
            raiseNotCreated(error);
        }
        unfinished_.chooseName(folder_.number());
        // Nobody else reads it before it has the rights of the old file.
        written_ = ::openat(folder_.number(), unfinished_.name(),
                            O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                            former_.isOpen() ? 0600 : 0666);
    }
    stream_.emplace(written_, false);
}

/// A file without a name that can be given one later, or -1.
int FileReplacement::Work::makeUnnamed() const {
    Descriptor made(::openat(folder_.number(), ".", O_RDWR | O_TMPFILE | O_CLOEXEC,
                             former_.isOpen() ? 0600 : 0666));
    return made.isOpen() && ::access(descriptorName(made.number()).c_str(), F_OK) == 0
               ? made.release()
               : -1;
}

void FileReplacement::Work::commit() {
    stream_->Flush();
    if (written_ < 0) {
        stream_->Close();
        return;
    }
    // 1. Everything that takes time or may be refused, before anybody sees the file.
    if (former_.isOpen()) {
        const AttributeLoss loss = keepAttributes(former_.number(), written_);
        if (!loss.what.empty()) {
            raiseNotReplaced(std::u16string(loss.what) + u": " + reasonOf(loss.error));
        }
    }
    if (const int error = synchronise(written_)) {
        raiseNotReplaced(reasonOf(error));
    }

    // 2. Into its place.
    takePlace();

    // 3. After a crash of the system there must be the file with its name.
    if (const int error = synchroniseFolder(folder_.number())) {
        throw EWriteError(
            formatMessage(u"File \"%s\" is written, but would not outlast a failure of the "
                          u"system. %s",
                          {utf8ToUtf16(name_.string()), reasonOf(error)}));
    }
}

/// A name of its own for a file that has none, because a name can be replaced only by another one.
void FileReplacement::Work::giveName() {
    const std::string source = descriptorName(written_);
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        unfinished_.chooseName(folder_.number());
        if (::linkat(AT_FDCWD, source.c_str(), folder_.number(), unfinished_.name(),
                     AT_SYMLINK_FOLLOW) == 0) {
            return;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    const int error = errno;
    unfinished_.forget();
    raiseNotReplaced(reasonOf(error));
}

void FileReplacement::Work::takePlace() {
    const SignalsHeld held;
    if (unfinished_.name() == nullptr) {
        giveName();
    }
    try {
        stream_->Close();
    } catch (...) {
        unfinished_.remove();
        throw;
    }
    if (::renameat(folder_.number(), unfinished_.name(), folder_.number(), leaf_.c_str()) != 0) {
        const int error = errno;
        unfinished_.remove();
        raiseNotReplaced(reasonOf(error));
    }
    unfinished_.forget();
}

void FileReplacement::Work::raiseNotCreated(std::u16string_view reason) const {
    throw EFileOpenError(
        formatMessage(u"Cannot create file \"%s\". %s", {utf8ToUtf16(name_.string()), reason}));
}

void FileReplacement::Work::raiseNotCreated(int error) const { raiseNotCreated(reasonOf(error)); }

void FileReplacement::Work::raiseNotReplaced(std::u16string_view reason) const {
    throw EWriteError(formatMessage(former_.isOpen() ? u"Cannot replace file \"%s\". %s"
                                                     : u"Cannot create file \"%s\". %s",
                                    {utf8ToUtf16(name_.string()), reason}));
}

} // namespace host
