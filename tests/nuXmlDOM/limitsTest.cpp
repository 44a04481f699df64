// What documents and paths may grow to.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "common/memoryStream.h"
#include "common/stringStream.h"
#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace {

constexpr std::u16string_view chain = u"<r><a><a><a n=\"1\"/></a></a></r>";

/// Saves the document and loads the file as one that has the same limits.
void loadSaved(TNuDOMDocument& document) {
    const auto file = std::filesystem::temp_directory_path() / "nuxmlLimits.xml";
    document.SaveToFile(file, false);
    const NuRef<TNuDOMDocument> loaded = NuLoadDocument(file, {}, nullptr, document.Limits());
    EXPECT_EQ(loaded->Limits().Reading.Depth, document.Limits().Reading.Depth);
    std::filesystem::remove(file);
}

void save(TNuDOMDocument& document) {
    TNuMemoryStream stream;
    document.SaveToStream(stream);
}

// Each takes exactly so much: with that limit it goes through, with one less it does not.
TEST(Limits, StopWhatGrowsBeyondThem) {
    const auto depth = [](TNuDOMLimits& limits, int amount) { limits.Reading.Depth = amount; };
    const auto attributes = [](TNuDOMLimits& limits, int amount) {
        limits.Reading.Attributes = static_cast<std::size_t>(amount);
    };
    const auto nodes = [](TNuDOMLimits& limits, int amount) {
        limits.SelectedNodes = static_cast<std::size_t>(amount);
    };
    const auto visits = [](TNuDOMLimits& limits, int amount) {
        limits.VisitedNodes = static_cast<std::uint64_t>(amount);
    };
    const auto bytes = [](TNuDOMLimits& limits, int amount) {
        limits.OutputBytes = static_cast<std::uint64_t>(amount);
    };
    const auto select = [](std::u16string_view path) {
        return [path](TNuDOMDocument& document) { document.CreateNodeList(path); };
    };
    const auto saveAs = [](std::u16string_view encoding) {
        return [encoding](TNuDOMDocument& document) {
            document.GetRootNode()->set_text(std::u16string(200'000, u'x'));
            document.SetEncoding(encoding);
            save(document);
        };
    };
    struct Case {
        void (*limit)(TNuDOMLimits& limits, int amount);
        int amount;
        std::function<void(TNuDOMDocument&)> work;
        std::string_view refusal; ///< in front of the limit
        std::string_view within = "";
    };
    const Case cases[] = {
        {depth, 4, [](auto& document) { document.loadxml(chain); }, "deeper than "},
        {depth, 4, [](auto& document) { document.loadxml(chain, TNuConformingOptions{}); },
         "deeper than "},
        {depth, 4, loadSaved, "deeper than "},
        {depth, 4, [](auto& d) { (void)NuCreateDOMDocument(chain, {}, nullptr, d.Limits()); },
         "deeper than "},
        {depth, 4, [](auto& d) { (void)NuGetDOMDocument(chain, {}, nullptr, d.Limits()); },
         "deeper than "},
        {depth, 4,
         [](auto& d) {
             (void)NuGetDOMDocument(new TNuStringStream(chain), true, {}, nullptr, d.Limits());
         },
         "deeper than "},
        {depth, 3, [](auto& document) { document.GetRootNode()->set_innerxml(u"<a><b/></a><c/>"); },
         "deeper than "},
        {attributes, 3,
         [](auto& document) {
             TNuStringStream stream(u"<r a=\"\" b=\"\" c=\"\"/>");
             document.Clear();
             document.LoadFromStream(stream);
         },
         "more than "},
        {nodes, 3, select(u"//a"), "more than "},
        {nodes, 4, select(u"r | //a"), "more than "},
        {nodes, 3, select(u"r//a//a"), "more than "},
        {nodes, 3, select(u"r[&slash;&slash;a]"), "more than ",
         "More than one instance of \"//a\" was found."},
        {nodes, 3, [](auto& document) { document.SelectSingleNode(u"//a"); }, "more than "},
        {visits, 3, select(u"r/a/a"), "looks at more than "},
        {visits, 4, select(u"//a"), "looks at more than "},
        {visits, 13, select(u"//*"), "looks at more than "}, // 5 contexts, 4 elements twice
        {visits, 3, [](auto& document) { (void)document.Find(u"*[b]"); }, "looks at more than "},
        {visits, 6, [](auto& document) { (void)document.Select(u"r/a/a/a/@n"); },
         "looks at more than "},
        {bytes, 2 * static_cast<int>(chain.size()),
         [](auto& document) { static_cast<void>(document.get_xml()); }, "longer than "},
        {bytes, static_cast<int>(chain.size()), save, "longer than "},
        {bytes, 200'069, saveAs(u"UTF-8"), "longer than "},
        {bytes, 200'074, saveAs(u"ISO-8859-1"), "longer than "},
        {bytes, 400'140, saveAs(u"UTF-16"), "longer than "},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(&item - cases);
        const auto outcome = [&](int amount) -> std::string {
            const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
            document->loadxml(chain);
            TNuDOMLimits limits;
            item.limit(limits, amount);
            document->SetLimits(limits);
            try {
                item.work(*document);
            } catch (const host::Exception& error) {
                return NuToUtf8(error.Message());
            }
            return "";
        };
        EXPECT_EQ(outcome(item.amount), item.within);
        const std::string refusal = outcome(item.amount - 1);
        EXPECT_NE(refusal.find(std::string(item.refusal) + std::to_string(item.amount - 1)),
                  refusal.npos)
            << refusal;
    }
}

} // namespace
