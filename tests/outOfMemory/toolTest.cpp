// The commands of the tool without memory: each does its work or says that it could not, and no
// file is left half written.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "command.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "outOfMemory/failingMemory.h"

namespace {

constexpr std::string_view document =
    "<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY e 'an entity'>]>\n<r xmlns:p='u'>\n"
    "<b k='1'>a text that is longer than a few letters</b><b k='2'>&e;</b><p:c/>\n</r>\n";

/// Standard output and standard error in memory, as long as it lives.
class Captured {
public:
    Captured() {
        for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
            former_[descriptor] = ::dup(descriptor);
            texts_[descriptor] = ::memfd_create("captured", 0);
            ::dup2(texts_[descriptor], descriptor);
        }
    }
    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;
    ~Captured() {
        for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
            ::dup2(former_[descriptor], descriptor);
            ::close(former_[descriptor]);
            ::close(texts_[descriptor]);
        }
    }
    [[nodiscard]] std::string text(int descriptor) const {
        std::string text(static_cast<std::size_t>(::lseek(descriptor, 0, SEEK_END)), '\0');
        const ::ssize_t got = ::pread(descriptor, text.data(), text.size(), 0);
        text.resize(static_cast<std::size_t>(std::max<::ssize_t>(got, 0)));
        return text;
    }

private:
    int former_[3]{};
    int texts_[3]{};
};

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What a command line came to.
struct Outcome {
    int exitCode = tool::exitInputOutput;
    std::string output;
    std::string complaint;
    std::string file;
    std::ptrdiff_t fileCount = 0;
};

Outcome run(const std::vector<std::string_view>& words, const std::filesystem::path& file) {
    Outcome outcome;
    std::ofstream(file) << document;
    {
        const Captured captured;
        tool::Console console;
        const std::vector<std::string_view> arguments(words.begin() + 1, words.end());
        failing::onCall(true);
        try {
            outcome.exitCode = tool::findCommand(words.front())->run(console, arguments);
        } catch (const tool::InputError&) {
            failing::onCall(false);
            console.complain("input");
        } catch (const std::bad_alloc&) {
            failing::onCall(false);
            console.complain("memory");
        }
        failing::onCall(false);
        console.output().flush();
        outcome.output = captured.text(STDOUT_FILENO);
        outcome.complaint = captured.text(STDERR_FILENO);
    }
    outcome.file = contentOf(file);
    outcome.fileCount = std::distance(std::filesystem::directory_iterator(file.parent_path()), {});
    return outcome;
}

TEST(OutOfMemory, isSaidByTheTool) {
    const auto folder = std::filesystem::temp_directory_path() / "nuxmlToolOutOfMemory";
    std::filesystem::create_directories(folder);
    const std::filesystem::path file = folder / "file.xml";
    const std::string name = file.string();
    const std::vector<std::string_view> lines[] = {
        {"select", "r/b[@k='2']", name},
        {"select", "--json", "-c", "@k,b", "r", name},
        {"explain", "r/b[@k]", name},
        {"tree", name},
        {"edit", "-i", "--set", "r/b=new", "--delete", "r/p:c", "--create", "r/d/@e=1", name},
        {"format", "-i", "--indent=4", name},
        {"format", "--compact", name},
        {"convert", name},
        {"records", "--json", "b", name},
        {"records", "--columns", "@k,.", "--header", "b", name},
        {"check", name},
        {"events", "--json", "--positions", name},
        {"tame", "-i", name},
        {"escape", "<a & b>"},
        {"unescape", "&lt;&auml;&#65;"},
        {"completion", "bash"},
    };
    for (const auto& line : lines) {
        SCOPED_TRACE(std::string(line.front()) + ' ' + std::string(line[1]));
        Outcome expected;
        const long count = failing::failEverywhere([&] {
            const Outcome outcome = run(line, file);
            if (failing::failingCount < 0) {
                expected = outcome;
                EXPECT_EQ(outcome.exitCode, tool::exitDone) << outcome.complaint;
                return;
            }
            // Done is done, and what is not done is told and has changed nothing.
            if (outcome.exitCode == expected.exitCode) {
                EXPECT_EQ(outcome.output, expected.output);
                EXPECT_EQ(outcome.file, expected.file);
            } else {
                EXPECT_NE(outcome.complaint, expected.complaint);
                EXPECT_TRUE(outcome.file == document || outcome.file == expected.file);
            }
            EXPECT_EQ(outcome.fileCount, 1);
        });
        EXPECT_GT(count, 0);
    }
    std::filesystem::remove_all(folder);
}

} // namespace
