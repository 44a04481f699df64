// What loading a document tells about it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "common/memoryStream.h"
#include "common/utf8.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlDOM.h"

namespace {

namespace fs = std::filesystem;

class LoadReport : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "nuxmlReportXXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    [[nodiscard]] fs::path file(std::string_view content) const {
        std::ofstream(folder / "f.xml", std::ios::binary) << content;
        return folder / "f.xml";
    }
    /// The report with the name of the folder left out.
    [[nodiscard]] std::string textOf(const TNuLoadReport& report) const {
        std::string text = NuToUtf8(report.Text());
        const std::string start = folder.string() + '/';
        for (std::size_t at = 0; (at = text.find(start)) != text.npos;) {
            text.erase(at, start.size());
        }
        return text;
    }

    fs::path folder;
};

TEST_F(LoadReport, HoldsWhatTheReaderForgaveAndWhatItDidNot) {
    struct Row {
        std::string_view content;
        std::string_view expected;
    };
    const Row rows[] = {
        {"<a/>", ""},
        {"<a>\n<b /></a>", "f.xml:2:5: warning: "},
        {"<a>\n<b />\n<p:c/></a>", "f.xml:2:5: warning: \nf.xml:3:6: warning: "},
        {"<!FOO    > <a/>", "f.xml:1:9: error: <!DOCTYPE expected"},
        {"<a>\n<!--x", "f.xml:2:6: warning: \nf.xml:2:6: error: Unexptected End Of Document! The "},
        {"<a/>\n<b/>", "f.xml:2:4: error: A document can only have 1 rootnode"},
        {"\xEF\xBB\xBF<a>\xFF</a>", "f.xml: error: The sourcestream contains invalid UTF-8 data!"},
    };
    for (const auto& row : rows) {
        const std::string_view content = row.content;
        SCOPED_TRACE(content);
        // Every way to load tells the same, but for the name.
        const fs::path path = file(content);
        const auto reported = [&](const std::function<void(TNuLoadReport&)>& load) {
            TNuLoadReport report;
            report.Add({fsFatal, u"of another loading", {}});
            bool isThrown = false;
            try {
                load(report);
            } catch (const ENuSaxFatalError& fault) {
                isThrown = true;
                if (report.Fatal() == nullptr) {
                    throw; // fails the test
                }
                EXPECT_EQ(fault.File(), report.Fatal()->file);
                EXPECT_EQ(fault.Line(), report.Fatal()->line);
                EXPECT_EQ(fault.Column(), report.Fatal()->column);
                EXPECT_EQ(fault.what(), NuToUtf8(fault.Message()));
            } catch (const host::Exception&) {
                isThrown = true;
            }
            EXPECT_TRUE(!isThrown || report.Fatal() != nullptr);
            return textOf(report);
        };
        const auto document = TNuDOMDocument::Create();
        const std::string text =
            reported([&](TNuLoadReport& report) { document->LoadFromFile(path, report); });
        // Messages are cut where the row ends.
        std::string_view rest = text;
        for (std::string_view lines = row.expected; !lines.empty();) {
            const std::string_view line = lines.substr(0, lines.find('\n'));
            EXPECT_EQ(rest.substr(0, line.size()), line) << text;
            rest.remove_prefix(std::min(rest.find('\n') + 1, rest.size()));
            lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        }
        EXPECT_EQ(rest, "");
        const auto isSame = [&](const std::function<void(TNuLoadReport&)>& load, bool isFile) {
            std::string other = reported(load);
            std::string own = text;
            for (std::size_t at = 0; !isFile && (at = own.find("f.xml:")) != own.npos;) {
                own.erase(at, own[at + 6] == ' ' ? 7 : 6);
            }
            EXPECT_EQ(other, own);
        };
        isSame([&](auto& report) { (void)NuGetDOMDocument(path, host::fmOpenRead, report); }, true);
        isSame(
            [&](auto& report) {
                document->Clear();
                document->load(path.u16string(), report);
            },
            true);
        isSame(
            [&](auto& report) {
                host::TMemoryViewStream stream(content);
                (void)NuGetDOMDocument(&stream, false, report);
            },
            false);
        if (NuIsUtf8(content)) {
            isSame([&](auto& report) { (void)NuCreateDOMDocument(NuFromUtf8(content), report); },
                   false);
        }
    }
}

TEST_F(LoadReport, KeepsAsMuchAsItIsTold) {
    std::u16string text = u"<a>";
    for (int count = 0; count < 100; ++count) {
        text += u"<b />";
    }
    TNuLoadReport report(10);
    EXPECT_THROW(static_cast<void>(NuCreateDOMDocument(text + u"<!-", report)), ENuSaxFatalError);
    EXPECT_GE(report.Count(), 100U);
    EXPECT_EQ(report.Faults().size(), 11U);
    ASSERT_NE(report.Fatal(), nullptr);
    EXPECT_EQ(report.Fatal()->line, 1);
    static_cast<void>(NuCreateDOMDocument(u"<a/>", report));
    EXPECT_TRUE(report.IsEmpty());
    EXPECT_EQ(report.Text(), u"");
}

} // namespace
