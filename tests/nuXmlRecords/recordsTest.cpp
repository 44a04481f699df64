// Records: what is delivered of a document in one pass, and by any number of parts together.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlDOM.h"
#include "nuXmlRecords.h"

namespace {

using nu::RecordReader;
using nu::RecordShare;

std::string shown(RecordReader& records) {
    return std::to_string(records.Position()) + ' ' + std::string(records.Xml()) + '\n';
}

std::string readAll(RecordReader& records) {
    std::string all;
    while (records.Next()) {
        all += shown(records);
    }
    return all;
}

std::string onePass(std::string_view document, std::u16string_view path) {
    host::TMemoryViewStream stream(document);
    RecordReader records(stream, path);
    return readAll(records);
}

/// The message and place of the fault that ends the reading, behind what was delivered.
std::string faultOf(RecordReader& records) {
    std::string all;
    try {
        while (records.Next()) {
            all += std::string(records.Xml()) + '\n';
        }
    } catch (const host::Exception& fault) {
        return all + fault.what();
    }
    return all + "no fault";
}

struct FormCase {
    const char* document;
    const char16_t* path;
    const char* xml;
    const char* json;
    const char* row; ///< of ".,@i,c/d"
};

TEST(Records, AreDeliveredInEveryForm) {
    const FormCase cases[] = {
        {"<a><r>x</r><s><r>no</r></s></a>", u"a/r", "<r>x</r>", R"("x")", "x,,\n"},
        {"<a><s><r>y</r></s></a>", u"//r", "<r>y</r>", R"("y")", "y,,\n"},
        {"<r i='1'>a<r>b</r></r>", u"r", "<r i=\"1\">a<r>b</r></r>",
         R"({"@i":"1","#text":"a","r":"b"})", "a,1,\n"},
        {"<a><r/></a>", u"/a/*", "<r/>", R"("")", ",,\n"},
        {"<a xmlns='u' xmlns:p='v&amp;'><p:r i='\"'/></a>", u"a/r",
         "<p:r xmlns=\"u\" xmlns:p=\"v&amp;\" i=\"&quot;\"/>", R"({"@i":"\""})", ",\"\"\"\",\n"},
        {"<a xmlns='u'><b xmlns=''><r xmlns:q='w'/></b></a>", u"a/b/r", "<r xmlns:q=\"w\"/>",
         R"("")", ",,\n"},
        {"<a xmlns:p='u'><r xmlns:p='w'/></a>", u"a/r", "<r xmlns:p=\"w\"/>", R"("")", ",,\n"},
        {"<!DOCTYPE a [<!ENTITY e '<r>&#38;lt;in</r>'><!ATTLIST r i CDATA 'd'>]><a>&e;</a>", u"a/r",
         "<r i=\"d\">&lt;in</r>", R"({"@i":"d","#text":"<in"})", "<in,d,\n"},
        {"<a><r><c> <d>1,\n</d><!--x--><d><![CDATA[&\\]]></d> </c><e/><c>&#9;</c></r></a>", u"a/r",
         "<r><c> <d>1,\n</d><!--x--><d><![CDATA[&\\]]></d> </c><e/><c>&#9;</c></r>",
         R"({"c":[{"d":["1,\n","&\\"]},"\t"],"e":""})", ",,\"1,\n; &\\\"\n"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><a><r>\xE9&#128512;</r></a>", u"a/r",
         "<r>\xC3\xA9\xF0\x9F\x98\x80</r>", "\"\xC3\xA9\xF0\x9F\x98\x80\"",
         "\xC3\xA9\xF0\x9F\x98\x80,,\n"},
    };
    for (const FormCase& test : cases) {
        SCOPED_TRACE(test.document);
        host::TMemoryViewStream stream{std::string_view(test.document)};
        RecordReader records(stream, test.path);
        ASSERT_TRUE(records.Next());
        EXPECT_EQ(records.Xml(), test.xml);
        std::string json;
        records.AppendJson(json);
        EXPECT_EQ(json, test.json);
        std::string row;
        records.AppendRow(row, nu::RecordColumns(u".,@i,c/d"), nu::RowForm::Csv);
        EXPECT_EQ(row, test.row);
        EXPECT_FALSE(records.Next());
        EXPECT_THROW(static_cast<void>(records.Xml()), host::Exception);
    }
}

// Random records against what their trees say in the simplest way.

std::string escaped(std::string_view text, std::string_view stops, std::string_view letters) {
    std::string result;
    for (const char c : text) {
        const std::size_t index = stops.find(c);
        result += index == stops.npos ? std::string(1, c) : std::string("\\") + letters[index];
    }
    return result;
}

std::string textOf(const TNuDOMElement& element, bool& isSolid) {
    std::u16string text;
    for (const TNuDOMNode& child : element.ChildNodes()) {
        const bool isText = child.get_nodeType() == host::TEXT_NODE ||
                            child.get_nodeType() == host::CDATA_SECTION_NODE;
        text += isText ? child.get_nodeValue() : u"";
        isSolid = isSolid ||
                  (isText && child.get_xml().find_first_not_of(u" \t\r\n") != std::u16string::npos);
    }
    return NuToUtf8(text);
}

std::string jsonOf(const TNuDOMElement& element) {
    const auto quoted = [](std::string_view text) {
        return '"' + escaped(text, "\"\\\n\r\t", "\"\\nrt") + '"';
    };
    std::string members;
    const auto add = [&](const std::string& key, const std::string& value) {
        members += (members.empty() ? "\"" : ",\"") + key + "\":" + value;
    };
    for (const TNuDOMAttribute& attribute : element.Attributes()) {
        add('@' + NuToUtf8(attribute.get_nodeName()), quoted(NuToUtf8(attribute.get_nodeValue())));
    }
    bool isSolid = false;
    const std::string text = textOf(element, isSolid);
    if (members.empty() && element.ChildElements().empty()) {
        return quoted(text);
    }
    if (isSolid || (element.ChildElements().empty() && !text.empty())) {
        add("#text", quoted(text));
    }
    std::vector<std::pair<std::u16string, std::vector<std::string>>> names;
    for (const TNuDOMElement& child : element.ChildElements()) {
        const auto known = std::find_if(names.begin(), names.end(), [&](const auto& entry) {
            return entry.first == child.get_nodeName();
        });
        (known == names.end() ? names.emplace_back(child.get_nodeName(), std::vector<std::string>())
                              : *known)
            .second.push_back(jsonOf(child));
    }
    for (const auto& [name, values] : names) {
        std::string all;
        for (const std::string& value : values) {
            all += (all.empty() ? "" : ",") + value;
        }
        add(NuToUtf8(name), values.size() > 1 ? '[' + all + ']' : all);
    }
    return '{' + members + '}';
}

/// Columns go by local names.
std::string attributeOf(const TNuDOMElement& element, std::u16string_view localName) {
    for (const TNuDOMAttribute& attribute : element.Attributes()) {
        if (attribute.get_localName() == localName) {
            return NuToUtf8(attribute.get_nodeValue());
        }
    }
    return {};
}

std::string rowOf(const TNuDOMElement& record) {
    bool isSolid = false;
    const std::string text = textOf(record, isSolid);
    std::string cells[3] = {record.ChildElements().empty() || isSolid ? text : "",
                            attributeOf(record, u"k"), ""};
    bool isFirst = true;
    for (const TNuDOMElement& child : record.ChildElements(u"n1")) {
        for (const TNuDOMElement& inner : child.ChildElements(u"n2")) {
            bool isInnerSolid = false;
            const std::string value = textOf(inner, isInnerSolid);
            cells[2] += (isFirst ? "" : "; ") +
                        (inner.ChildElements().empty() || isInnerSolid ? value : std::string());
            isFirst = false;
        }
    }
    for (std::string& cell : cells) {
        cell = escaped(cell, "\\\n\r\t", "\\nrt");
    }
    return cells[0] + '\t' + cells[1] + '\t' + cells[2] + '\n';
}

void addRandomElement(std::mt19937& random, std::string& xml, const std::string& name, int depth) {
    constexpr std::string_view pieces[] = {"x",     " ",        "\n",      "\t",     "&amp;",
                                           "&#10;", "&#13;",    "&quot;",  "\\",     "\xC3\xA9",
                                           "&lt;",  "<!--c-->", "<?p q?>", "&#x80;", "a long text"};
    const auto addText = [&](std::size_t kinds) {
        for (std::size_t count = random() % 3; count > 0; --count) {
            xml += pieces[random() % kinds];
        }
    };
    xml += '<' + name;
    for (const char* attribute : {" k=\"", " l=\"", " p:k=\""}) {
        if (random() % 4 == 0) {
            xml += attribute;
            addText(11);
            xml += '"';
        }
    }
    xml += '>';
    // Now and then more names than are compared one by one.
    const unsigned names = random() % 8 == 0 ? 300 : 3;
    for (std::size_t count = depth == 3 ? 0 : random() % (names == 3 ? 5 : 250); count > 0;
         --count) {
        addText(std::size(pieces));
        xml += random() % 9 == 0 ? "<![CDATA[&<\"]]>" : "";
        addRandomElement(random, xml, "n" + std::to_string(random() % names),
                         names == 3 ? depth + 1 : 3);
    }
    addText(std::size(pieces));
    xml += "</" + name + '>';
}

TEST(Records, OfAnyContentAreWhatTheirTreesSay) {
    std::mt19937 random(17);
    std::string document = "<all xmlns:p='u'>";
    for (int number = 0; number < 400; ++number) {
        addRandomElement(random, document, "r", 0);
    }
    document += "</all>";
    host::TMemoryViewStream stream(document);
    RecordReader records(stream, u"all/r");
    while (records.Next()) {
        std::string json;
        records.AppendJson(json);
        TNuDOMElement& tree = *records.Document().GetRootNode();
        tree.removeAttribute(u"xmlns:p");
        ASSERT_EQ(json, jsonOf(tree)) << records.Xml();
        std::string row;
        records.AppendRow(row, nu::RecordColumns(u".,@k,n1/n2"), nu::RowForm::Tsv);
        ASSERT_EQ(row, rowOf(tree)) << records.Xml();
    }
    EXPECT_EQ(records.Number(), 400);
}

TEST(Records, TellTheirPlaceAndServeTreesAndObjects) {
    const std::string document = "\xEF\xBB\xBF<a>\r\n <!--\r<r>--><r>1</r>\n\n<r><t>2</t></r></a>";
    host::TMemoryViewStream stream(document);
    RecordReader records(stream, u"a/r");
    ASSERT_TRUE(records.Next());
    EXPECT_EQ(records.Line(), 3);
    EXPECT_EQ(records.Position(), static_cast<std::int64_t>(document.find("<r>1")));
    EXPECT_EQ(records.Document().get_xml(), u"<r>1</r>");
    ASSERT_TRUE(records.Next());
    EXPECT_EQ(records.Line(), 5);
    EXPECT_EQ(records.Number(), 2);
}

TEST(Records, EndWithTheFaultAndItsPlace) {
    struct Case {
        const char* document;
        const char* outcome;
    };
    const Case cases[] = {
        {"<a><r>1</r><r>2</r>", "<r>1</r>\n<r>2</r>\n1:20: the element \"a\" is not closed"},
        {"<a><r>1</r>\n<r>2", "<r>1</r>\n2:5: the element \"r\" is not closed"},
        {"<a><r>1</r><b></c><r>2</r></a>",
         "<r>1</r>\n1:15: the end tag does not match the start tag \"b\" (line 1)"},
        {"<a>\n<r>12345678901234567890123456789012345</r></a>",
         "2:1: the record is longer than 40 bytes"},
        {"<a/>", "no fault"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.document);
        host::TMemoryViewStream stream{std::string_view(test.document)};
        nu::RecordOptions options;
        options.sizeLimit = 40;
        RecordReader records(stream, u"a/r", options);
        EXPECT_EQ(faultOf(records), test.outcome);
    }
    for (const char16_t* path : {u"", u"a//r", u"a/", u"//a/r", u"a[1]", u"a*"}) {
        host::TMemoryViewStream stream{std::string_view("<a/>")};
        EXPECT_THROW(RecordReader(stream, path), host::Exception);
    }
    for (const char16_t* columns : {u"", u"a,", u"@", u"@a/b", u"a[1]"}) {
        EXPECT_THROW(nu::RecordColumns{columns}, host::Exception);
    }
}

// Parts

/// Documents of records, and of everything that only looks like one.
class DocumentMaker {
public:
    explicit DocumentMaker(unsigned seed) : random_(seed) {}

    /// \param isPlain nothing looks like a record that is none
    std::string make(bool isPlain) {
        isPlain_ = isPlain;
        std::string text = pick({"", "\xEF\xBB\xBF", "<?xml version=\"1.0\"?>\r\n", "\n"});
        text += isPlain ? ""
                        : pick({"", "<!DOCTYPE a [<!ENTITY e '<r>e</r>'>"
                                    "<!ATTLIST r d CDATA '>'><!--]>--> ]>"});
        hasEntity_ = text.find("ENTITY") != text.npos;
        text += pick({"<a>", "<a xmlns='u'>", "<a xmlns:p=\"v\" q='>\"'\n xml:space='preserve'>"});
        hasPrefix_ = text.find("xmlns:p") != text.npos;
        const int count = below(random_() % 16 == 0 ? 2000 : pick({1, 10, 40}));
        for (int number = 0; number < count; ++number) {
            text += below(3) == 0 ? between() : record();
        }
        return text + "</a>\n<!--end-->";
    }

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    template <class T> T pick(std::initializer_list<T> from) {
        return from.begin()[below(static_cast<int>(from.size()))];
    }
    std::string record() {
        const std::string name = hasPrefix_ && below(2) == 0 ? "p:r" : "r";
        std::string text = "<" + name + pick({"", " i='>'", " i = \"'\" ", "\n", " xmlns:z='z'"});
        if (below(5) == 0) {
            return text + "/>";
        }
        text += '>';
        for (int count = below(4); count > 0; --count) {
            text += inside();
        }
        return text + "</" + name + pick({"", " ", "\n"}) + ">";
    }
    std::string inside() {
        const std::string any = pick({"text", "\xC3\xA9\n", "&lt;r>", "<t b='1'>x</t>", "<r2/>",
                                      "<![CDATA[</a>]]>", "<?p ?>", "<t><t/></t>"});
        return isPlain_ ? any : pick({any, std::string("<r>in</r>"), std::string("<!--<r>-->")});
    }
    std::string between() {
        const std::string any =
            pick({"\n", " text ", "<s t=\"'>\"></s>", "<!--x-->", "<rr>1</rr>"});
        return isPlain_ ? any
                        : pick({any, "<s>" + record() + "</s>", std::string("<![CDATA[<r>]]>"),
                                std::string("<!-- <r> -->"), std::string("<?p <r> ?>"),
                                std::string(hasEntity_ ? "&e;" : "")});
    }

    std::mt19937 random_;
    bool isPlain_ = false;
    bool hasEntity_ = false;
    bool hasPrefix_ = false;
};

TEST(RecordParts, OfAnIndexTogetherAreOnePass) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        DocumentMaker maker(seed);
        const std::string document = maker.make(false);
        host::TMemoryViewStream file(document);
        const nu::RecordIndex built = nu::RecordIndex::Build(file, -7, seed % 2 == 0 ? 1 : 900);
        host::TMemoryStream saved;
        built.Save(saved);
        saved.SetPosition(0);
        const nu::RecordIndex index = nu::RecordIndex::Load(saved);
        for (const char16_t* path : {u"a/r", u"//r", u"a/s/r", u"a/*"}) {
            const std::string expected = onePass(document, path);
            for (const int count : {1, 2, 3, 7}) {
                std::string joined;
                std::string atBytes;
                for (int number = 0; number < count; ++number) {
                    RecordReader part(file, path, index, index.Share(number, count));
                    joined += readAll(part);
                    RecordReader share(file, path, index,
                                       nu::shareOf(file.GetSize(), number, count));
                    atBytes += readAll(share);
                }
                ASSERT_EQ(joined, expected) << document;
                ASSERT_EQ(atBytes, expected) << document;
            }
        }
    }
}

/// What all parts deliver together, without an index; empty where one of them meets a fault.
std::string plainParts(std::string_view document, const char16_t* path, int count, bool& isFaulty) {
    std::string joined;
    for (int number = 0; number < count && !isFaulty; ++number) {
        host::TMemoryViewStream file(document);
        try {
            RecordReader part(
                file, path, nu::shareOf(static_cast<std::int64_t>(document.size()), number, count));
            joined += readAll(part);
        } catch (const host::Exception&) {
            isFaulty = true;
        }
    }
    return joined;
}

TEST(RecordParts, OnAPromiseAreOnePassOrOneOfThemFails) {
    int failures = 0;
    for (unsigned seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        const bool isKept = seed % 2 == 0;
        const std::string document = DocumentMaker(seed).make(isKept);
        for (const char16_t* path : {u"a/r", u"//r"}) {
            const std::string expected = onePass(document, path);
            for (const int count : {1, 2, 5, 40}) {
                bool isFaulty = false;
                const std::string joined = plainParts(document, path, count, isFaulty);
                ASSERT_TRUE(isFaulty ? !isKept : joined == expected) << document;
                failures += isFaulty ? 1 : 0;
            }
        }
    }
    EXPECT_GT(failures, 50);
}

TEST(RecordParts, OnGuessesAreOnePassAsFarAsTheyFit) {
    int misfits = 0;
    for (unsigned seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        const bool isPlain = seed % 2 == 0;
        const std::string document = DocumentMaker(seed).make(isPlain);
        for (const char16_t* path : {u"a/r", u"//r", u"a/s/r"}) {
            for (const int spacing : {1, 60, 900}) {
                host::TMemoryViewStream file(document);
                nu::RecordGuess guess(file, path);
                std::string joined;
                bool fits = true;
                nu::RecordBorder stop;
                std::optional<nu::RecordStart> next(std::in_place);
                do {
                    const nu::RecordStart start = *next;
                    next = guess.From(start.position + spacing, file.GetSize());
                    RecordReader part(file, path, start,
                                      {start.position, next ? next->position : file.GetSize()});
                    try {
                        const std::string text = readAll(part);
                        fits = !stop.isThere() || part.First() == stop;
                        joined += fits ? text : "";
                    } catch (const ENuXmlFault&) {
                        fits = false;
                    }
                    stop = part.Stop();
                } while (fits && stop.isThere());
                const std::string expected = onePass(document, path);
                ASSERT_TRUE(fits ? joined == expected : !isPlain && expected.starts_with(joined))
                    << document;
                misfits += fits ? 0 : 1;
            }
        }
    }
    EXPECT_GT(misfits, 50);
}

TEST(RecordParts, MayBeLongerThanWhatIsInMemory) {
    std::string document = "<!DOCTYPE a [\n\n]><a>";
    for (int number = 0; number < 12; ++number) {
        document += "<r>" + std::string(30000, 'x') + "\n</r>";
    }
    document += "</a>";
    bool isFaulty = false;
    EXPECT_EQ(plainParts(document, u"a/r", 2, isFaulty), onePass(document, u"a/r"));
    EXPECT_FALSE(isFaulty);
}

TEST(RecordParts, TellPlacesInTheWholeDocument) {
    std::string document = "<a>\n";
    for (int number = 0; number < 100; ++number) {
        document += "<r>" + std::to_string(number) + "</r>" + (number % 3 == 0 ? "\n" : "");
    }
    const std::string fault = "<r><x></y></r></a>";
    document += fault;
    const auto faultOfParts = [&](bool hasIndex) {
        host::TMemoryViewStream file(document);
        const RecordShare share{static_cast<std::int64_t>(document.find("<r>98")), file.GetSize()};
        const std::string sound = document.substr(0, document.find(fault));
        host::TMemoryViewStream soundFile(sound);
        nu::RecordIndexer indexer(soundFile, 20);
        nu::RecordStart start;
        try {
            while (indexer.Next() && indexer.Start().position <= share.first) {
                start = indexer.Start();
            }
        } catch (const ENuXmlFault&) {
            // the sound part ends inside of the root element
        }
        if (!hasIndex) {
            RecordReader part(file, u"a/r", share);
            return faultOf(part);
        }
        RecordReader part(file, u"a/r", start, share);
        return faultOf(part);
    };
    host::TMemoryViewStream whole(document);
    RecordReader all(whole, u"a/r");
    const std::string expected = faultOf(all);
    EXPECT_EQ(faultOfParts(true), expected.substr(expected.find("<r>98")));
    EXPECT_EQ(faultOfParts(false),
              "<r>98</r>\n<r>99</r>\n2:7: the end tag does not match the start tag \"x\" (line 2) "
              "(line counted from byte " +
                  std::to_string(document.find("<r>98")) + ")");
}

TEST(RecordParts, RefuseWhatTheyCannotReadRight) {
    const std::string document = "<a><r>1</r><r>2</r></a>";
    host::TMemoryViewStream file(document);
    const nu::RecordIndex index = nu::RecordIndex::Build(file, 0, 1);
    EXPECT_EQ(index.PlaceCount(), 2U);

    // 1. Another state of the file.
    for (const char* changed : {"<a><r>1</r><r>3</r></a>", "<a><r>1</r><r>22</r></a>"}) {
        host::TMemoryViewStream other{std::string_view(changed)};
        EXPECT_THROW(RecordReader(other, u"r", index, {}), host::Exception);
    }
    // 2. An index that was damaged, at any byte.
    host::TMemoryStream saved;
    index.Save(saved);
    const std::string bytes(reinterpret_cast<const char*>(saved.Memory()),
                            static_cast<std::size_t>(saved.GetSize()));
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        host::TMemoryViewStream one(damaged);
        EXPECT_THROW(static_cast<void>(nu::RecordIndex::Load(one)), host::Exception) << at;
        host::TMemoryViewStream cut(std::string_view(bytes).substr(0, at));
        EXPECT_THROW(static_cast<void>(nu::RecordIndex::Load(cut)), host::Exception) << at;
    }
    // 3. What cannot be gone over, with its place; what only looks like the end of a document type.
    const std::pair<std::string, std::string> faults[] = {
        {"<a></a></a>", "1:8: an end tag without a start tag"},
        {"<a>\n<b></a>", "2:4: the end tag does not match the start tag"},
        {"<a b='>'", "1:1: the tag is not closed"},
        {"<a><></a>", "1:4: a tag without a name"},
        {"<a><!x></a>", "1:4: this cannot follow \"<!\""},
        {"<a>\n<!-- ->" + std::string(600'000, '\n'), "2:1: it is not closed"},
        {"<a><![CDATA[ ]>", "1:4: it is not closed"},
        {"<!DOCTYPE a [<?x ]> ?><!-- ]> --><!ENTITY e ']>'>",
         "1:1: the document type is not closed"},
        {"<a><b/>", "1:8: the document ends inside of an element"},
    };
    for (const auto& [text, message] : faults) {
        host::TMemoryViewStream faulty(text);
        try {
            static_cast<void>(nu::RecordIndex::Build(faulty));
            ADD_FAILURE() << text;
        } catch (const host::Exception& fault) {
            constexpr std::string_view common = "markup that an index cannot be made of: ";
            std::string told = fault.what();
            EXPECT_EQ(told.erase(told.find(common), common.size()), message) << text;
        }
    }
    // 4. Other encodings, and a path that tells no name.
    const std::string latin = "<?xml version='1.0' encoding='latin1'?><a/>";
    host::TMemoryViewStream other(latin);
    EXPECT_THROW(static_cast<void>(nu::RecordIndex::Build(other)), host::Exception);
    EXPECT_THROW(RecordReader(other, u"r", RecordShare{}), host::Exception);
    EXPECT_THROW(RecordReader(file, u"a/*", RecordShare{}), host::Exception);
}

} // namespace
