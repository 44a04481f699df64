#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>

#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "systemCalls.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* attribute = "user.nuxml";
constexpr const char* folderAccessList = "system.posix_acl_default";
/// Lets the user 12345 read and write what is made in a folder.
constexpr unsigned char accessList[] = {2,  0, 0, 0,                          //
                                        1,  0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF,  // owner
                                        2,  0, 6, 0, 0x39, 0x30, 0,    0,     // 12345
                                        4,  0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF,  // group
                                        16, 0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF,  // most
                                        32, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}; // others

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string attributeOf(const fs::path& path) {
    char value[64];
    const ssize_t size = getxattr(path.c_str(), attribute, value, sizeof(value));
    return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
}

struct stat statusOf(const fs::path& path) {
    struct stat status = {};
    EXPECT_EQ(fstatat(AT_FDCWD, path.c_str(), &status, AT_SYMLINK_NOFOLLOW), 0) << path;
    return status;
}

std::size_t openFiles() {
    const fs::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

class Replacement : public testing::Test {
protected:
    const std::string text = std::string(150'000, 'x');

    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "nuxmlFilesXXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    /// The old file, with all that a new one would not have by itself.
    void makeOld() {
        removexattr(folder.c_str(), folderAccessList);
        fs::remove(folder / "old");
        std::ofstream(folder / "old") << "former";
        hasAttributes = setxattr((folder / "old").c_str(), attribute, "kept", 4, 0) == 0;
        if (geteuid() == 0) {
            ASSERT_EQ(chown((folder / "old").c_str(), 12345, 23456), 0);
        }
        ASSERT_EQ(chmod((folder / "old").c_str(), 04640), 0);
        setxattr(folder.c_str(), folderAccessList, accessList, sizeof(accessList), 0);
    }
    [[nodiscard]] bool isKept() const {
        const struct stat status = statusOf(folder / "old");
        return (status.st_mode & 07777) == 04640 &&
               (geteuid() != 0 || (status.st_uid == 12345 && status.st_gid == 23456)) &&
               (!hasAttributes || attributeOf(folder / "old") == "kept") &&
               getxattr((folder / "old").c_str(), "system.posix_acl_access", nullptr, 0) < 0;
    }
    void replace(const fs::path& name) const {
        host::FileReplacement file(name);
        file.stream().WriteBuffer(text.data(), text.size());
        file.commit();
    }
    /// The message of the failure, or nothing.
    [[nodiscard]] std::string failureOf(const fs::path& name) const {
        try {
            replace(name);
            return {};
        } catch (const host::EStreamError& error) {
            return error.what();
        }
    }
    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder)) {
            found.insert(entry.path().filename());
        }
        return found;
    }

    fs::path folder;
    bool hasAttributes = false;
};

using Names = std::set<std::string>;

TEST_F(Replacement, TellsOfEverySystemCallThatFails) {
    // What must never be taken for done.
    const Names grave = {"open",          "openat",   "openat new", "lstat",        "fstat",
                         "stat",          "pwrite",   "fsync",      "fchmod",       "fsetxattr",
                         "close written", "fchown",   "linkat",     "fremovexattr", "fsync folder",
                         "renameat",      "readlink", "flistxattr"};
    Names seen;
    for (const bool knowsUnnamed : {true, false}) {
        for (const char* name : {"old", "link", "new"}) {
            bool isDone = false;
            for (int failsAt = 1; !isDone; ++failsAt) {
                makeOld();
                fs::remove(folder / "new");
                fs::remove(folder / "link");
                fs::create_symlink("old", folder / "link");
                const Names before = names();
                const std::size_t opened = openFiles();

                systemCalls::begin({.failsAt = failsAt, .knowsUnnamed = knowsUnnamed});
                const std::string failure = failureOf(folder / name);
                const std::string failed = systemCalls::end();
                SCOPED_TRACE(std::string(name) + " " + failed + std::to_string(failsAt));
                seen.insert(failed);
                isDone = failed.empty();

                // 1. Either all is well or the failure is said, with the reason of the system.
                EXPECT_TRUE(failure.empty() || failure.find("Input/output error") != failure.npos)
                    << failure;
                EXPECT_TRUE(!failure.empty() || !grave.contains(failed));
                // 2. The old file or the new one, with the rights of the old one.
                const bool isInPlace = failure.empty() || failed == "fsync folder";
                if (name == std::string("new")) {
                    EXPECT_EQ(fs::exists(folder / name), isInPlace);
                } else {
                    EXPECT_TRUE(isKept());
                    EXPECT_TRUE(contentOf(folder / "old") == (isInPlace ? text : "former"));
                }
                // 3. And nothing else.
                Names after = names();
                after.erase("new");
                EXPECT_EQ(after, before);
                EXPECT_EQ(openFiles(), opened);
            }
        }
    }
    // The list above means calls that are made.
    for (const std::string& call : grave) {
        const bool isForOthers = call == "fchown" || call == "fsetxattr" || call == "fremovexattr";
        EXPECT_TRUE(seen.contains(call) || isForOthers) << call;
    }
}

TEST_F(Replacement, WritesAllOfItPieceByPiece) {
    systemCalls::begin({.mostAtOnce = 1000});
    EXPECT_EQ(failureOf(folder / "new"), "");
    systemCalls::end();
    EXPECT_TRUE(contentOf(folder / "new") == text);
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(statusOf(folder / "new").st_mode & 07777, 0666U & ~mask);
}

/// What somebody else does while the file is written must not lead the writing elsewhere.
TEST_F(Replacement, FollowsNoLinkThatIsPutInBetween) {
    for (const bool knowsUnnamed : {true, false}) {
        for (const char* call : {"openat", "openat unnamed", "openat new", "pwrite", "fsync",
                                 "linkat", "close written", "renameat"}) {
            SCOPED_TRACE(call);
            makeOld();
            std::ofstream(folder / "victim") << "precious";
            const mode_t rights = statusOf(folder / "victim").st_mode;
            systemCalls::begin({.knowsUnnamed = knowsUnnamed, .watched = call, .action = [&] {
                                    for (const std::string& name : names()) {
                                        if (name != "victim") {
                                            fs::remove(folder / name);
                                            fs::create_symlink("victim", folder / name);
                                        }
                                    }
                                }});
            static_cast<void>(failureOf(folder / "old"));
            systemCalls::end();
            EXPECT_EQ(contentOf(folder / "victim"), "precious");
            EXPECT_EQ(statusOf(folder / "victim").st_mode, rights);
            for (const std::string& name : names()) {
                fs::remove(folder / name);
            }
        }
    }
}

TEST_F(Replacement, LeavesNothingWhenASignalEndsTheProgram) {
    for (const bool knowsUnnamed : {true, false}) {
        bool isDone = false;
        for (int at = 1; !isDone; ++at) {
            makeOld();
            const pid_t child = fork();
            ASSERT_GE(child, 0);
            if (child == 0) {
                if (!knowsUnnamed) {
                    std::signal(SIGTERM, [](int signal) {
                        host::FileReplacement::removeUnfinished();
                        _exit(signal);
                    });
                }
                systemCalls::begin(
                    {.failsAt = at, .knowsUnnamed = knowsUnnamed, .signal = SIGTERM});
                static_cast<void>(failureOf(folder / "old"));
                _exit(systemCalls::end().empty() ? 0 : 1);
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            isDone = WIFEXITED(status) && WEXITSTATUS(status) == 0;
            EXPECT_EQ(names(), Names{"old"}) << at;
            EXPECT_TRUE(isKept());
            const std::string content = contentOf(folder / "old");
            EXPECT_TRUE(content == "former" || content == text) << at;
        }
    }
}

TEST_F(Replacement, KeepsLinksAndParts) {
    makeOld();
    fs::create_symlink("old", folder / "link");
    fs::create_symlink("new", folder / "dangling");
    fs::create_hard_link(folder / "old", folder / "other");
    EXPECT_EQ(failureOf(folder / "link") + failureOf(folder / "dangling"), "");
    EXPECT_TRUE(contentOf(folder / "old") == text && contentOf(folder / "new") == text);
    EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "dangling"));
    // Deliberate: another name keeps the old contents.
    EXPECT_EQ(contentOf(folder / "other"), "former");
    // The longest name that the system takes is no longer than that of the unfinished file.
    EXPECT_EQ(failureOf(folder / std::string(255, 'n')), "");
}

TEST_F(Replacement, RefusesWhatIsNoFile) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("circle", folder / "circle");
    fs::create_symlink("pipe", folder / "linkToPipe");
    const struct {
        fs::path name;
        std::string reason;
    } cases[] = {
        {folder / "pipe", "It is a pipe"},
        {folder / "linkToPipe", "It is a pipe"},
        {"/dev/full", "It is a device"},
        {folder, "Is a directory"},
        {folder / "", "Is a directory"},
        {folder / "circle", "Too many levels of symbolic links"},
        {folder / "none" / "new", "No such file or directory"},
        {"", "No such file or directory"},
        {"/dev/fd/987", "No such file or directory"},
    };
    for (const auto& refused : cases) {
        EXPECT_EQ(failureOf(refused.name),
                  "Cannot create file \"" + refused.name.string() + "\". " + refused.reason);
    }
}

TEST_F(Replacement, WritesToAnOutputThatIsOpenWhereItStands) {
    for (const std::string folderOfOpen : {"/dev/fd/", "/proc/self/fd/"}) {
        const int file = ::open((folder / "output").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ASSERT_EQ(::write(file, "<", 1), 1);
        const ino_t former = statusOf(folder / "output").st_ino;
        EXPECT_EQ(failureOf(folderOfOpen + std::to_string(file)), "");
        ASSERT_EQ(::write(file, ">", 1), 1);
        ::close(file);
        EXPECT_TRUE(contentOf(folder / "output") == "<" + text + ">");
        EXPECT_EQ(statusOf(folder / "output").st_ino, former);
    }
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    {
        host::FileReplacement output("/dev/fd/" + std::to_string(ends[1]));
        output.stream().WriteBuffer("abc", 3);
        EXPECT_EQ(output.stream().GetSize(), 3);
        EXPECT_THROW(output.stream().SetPosition(1), host::EStreamError);
        output.commit();
    }
    char read[4] = {};
    EXPECT_EQ(::read(ends[0], read, 4), 3);
    EXPECT_NE(failureOf("/dev/fd/" + std::to_string(ends[0])), ""); // its end for reading
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(Replacement, FailsAtTheLimitOfTheSystem) {
    makeOld();
    rlimit former = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {text.size() - 1, former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(failureOf(folder / "old"), "Stream write error: File too large");
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_EQ(contentOf(folder / "old"), "former");
    EXPECT_EQ(names(), Names{"old"});
}

} // namespace
