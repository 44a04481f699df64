#include "shell.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The folder in which the lines run; gone with the program.
class Folder {
public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "nuxmlToolXXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no folder for the test");
        }
        path_ = name;
        fs::copy(NUXML_EXAMPLES_DATA, path_);
        const std::string search =
            fs::path(NUXML_TOOL).parent_path().string() + ":" + std::getenv("PATH");
        setenv("PATH", search.c_str(), 1);
        setenv("TERM", "xterm", 1);
        unsetenv("NO_COLOR");
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    [[nodiscard]] fs::path file(const char* name) const { return path_ / name; }
    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

} // namespace

ShellResult runShell(const std::string& line) {
    static const Folder folder;
    const fs::path output = folder.file("output");
    const fs::path errors = folder.file("errors");
    std::ofstream(folder.file("line")) << line << '\n';
    const std::string command =
        "cd '" + folder.path().string() + "' && exec sh line >output 2>errors";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(output), contentOf(errors)};
}

void expectShell(std::span<const ShellCase> cases) {
    for (const ShellCase& expected : cases) {
        SCOPED_TRACE(expected.line);
        const ShellResult result = runShell(expected.line);
        EXPECT_EQ(result.exitCode, expected.exitCode);
        EXPECT_EQ(result.output, expected.output);
        EXPECT_EQ(result.errors, expected.errors);
    }
}
