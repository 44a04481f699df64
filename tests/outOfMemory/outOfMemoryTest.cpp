// Every allocation fails once, one run after the other: what was asked for happens wholly or says
// why not, nothing is lost or leaked, and what it was asked of can be used again.

#include <exception>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/caseFolding.h"
#include "common/codePage.h"
#include "common/memoryStream.h"
#include "common/stringStream.h"
#include "common/text.h"
#include "common/utf8.h"
#include "fuzz/support/interfaceTable.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/csvDataSet.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/stringList.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"
#include "nuXmlParser.h"
#include "nuXmlRecords.h"
#include "nuXmlSax.h"
#include "outOfMemory/failingMemory.h"

using failing::failEverywhere;
using failing::onCall;
using failing::wasReached;

namespace {

constexpr std::u16string_view text =
    u"<?xml version=\"1.0\"?><!--c--><r xmlns:p=\"u\" n=\"5\"><p:a k=\"a value of some length\" "
    u"l=\"&amp;\"/><b>a text that does not fit into its node</b><b/><![CDATA[x]]>\u20AC<?q w?></r>";

NuXmlString written(TNuDOMDocument& document) { return document.get_xml(); }

// All operations of the interfaces

/// A document, and a handle to a node of each kind and to each kind of list.
void fill(fuzz::Pool& pool) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(text);
    pool.keep(document.as<host::IDOMDocument>());
    for (const auto* path : {u"r", u"r/p:a", u"r/p:a/@k", u"r/b/#text", u"r/#cdata-section", u"xml",
                             u"r/q", u"#comment", u"r/b"}) {
        const auto found = document->CreateNodeList(path);
        for (TNuDOMNode* node : *found) {
            pool.keep(host::queryInterface<host::IDOMNode>(node));
        }
    }
    TNuDOMElement& root = *document->GetRootNode();
    pool.keep(host::queryInterface<host::IDOMNodeList>(&root.get_childNodes()));
    pool.keep(host::queryInterface<host::IDOMNamedNodeMap>(&root.get_attributes()));
    pool.keep(document->createElement(u"loose").as<host::IDOMElement>());
    pool.keep(document->createAttribute(u"loose").as<host::IDOMAttr>());
    pool.keep(TNuDOMDocument::Create().as<host::IDOMDocument>());
    pool.keep(host::CreateDOMImplementation());
    const auto reader = host::CreateBufferedXMLReader();
    pool.keep(reader->getProperty(u"http://xml.org/sax/properties/lexical-handler"));
    pool.keep(reader);
    pool.keep(host::Ref<host::IErrorHandler>(host::makeRef<host::TBufferedDefaultHandler>().get()));
    pool.fillStream("<s/>");
}

TEST(OutOfMemory, isAResultOfEveryInterfaceOperation) {
    std::vector<fuzz::Step> steps;
    fuzz::addInterfaceSteps(steps);
    long count = 0;
    for (std::size_t index = 0; index < 8 * steps.size(); ++index) {
        SCOPED_TRACE(index);
        std::vector<std::uint8_t> choices(64);
        std::size_t state = index;
        for (std::uint8_t& choice : choices) {
            state = state * 6364136223846793005U + 1442695040888963407U;
            choice = static_cast<std::uint8_t>(state >> 56);
        }
        count += failEverywhere([&] {
            fuzz::Pool pool(choices.data(), choices.size());
            fill(pool);
            pool.mayFail = true;
            pool.onCall = onCall;
            steps[index % steps.size()](pool);
            if (const host::Ref<host::IDOMDocument> document = pool.find<host::IDOMDocument>()) {
                fuzz::checkShape(document);
                host::Ref<host::IDOMElement> element;
                EXPECT_EQ(document->createElement(u"again", element), host::resultOk);
            }
        });
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(count, 2000); // that allocations were made to fail at all
}

// All that no interface leads to

class Thing : public host::Published<Thing> {
public:
    std::u16string Name = u"a name that does not fit into a string";
    host::Variant Any = 5;
    std::vector<std::u16string> Words{u"one", u"two"};
    std::vector<std::unique_ptr<Thing>> Parts;
    std::shared_ptr<Thing> Next;
    host::TDateTime Made{40000.5};
    static constexpr auto published =
        host::publish<Thing>(u"TThing", host::prop<&Thing::Name>(), host::prop<&Thing::Any>(),
                             host::prop<&Thing::Words>(), host::prop<&Thing::Parts>(),
                             host::prop<&Thing::Next>(), host::prop<&Thing::Made>());
};

constexpr std::string_view withEntities =
    "<!DOCTYPE r [<!ENTITY e 'an entity &#x20AC;'><!ATTLIST r k CDATA 'v'>]>"
    "<r xmlns:p=\"u\"><p:a>&e;</p:a><!--c--><?q w?><![CDATA[x]]></r>";
constexpr std::string_view faulty = "<a><b c='1' d=\"1\" d=\"2\">&x <p:q/>]]></b></c></a></a>x<!x";

/// What the operations work on. All of it has to be of use afterwards.
struct State {
    NuRef<TNuDOMDocument> document = NuCreateDOMDocument(text);
    NuRef<TNuDOMDocument> other = NuCreateDOMDocument(u"<o><n/></o>");
    TNuSAXXMLReader reader;
    host::TMemoryStream out;
    host::TMemoryStream in{withEntities};
    TNuLoadReport report;
    Thing thing;
    std::filesystem::path file = std::filesystem::temp_directory_path() / "nuxmlOutOfMemory.xml";

    State() {
        thing.Parts.push_back(std::make_unique<Thing>());
        thing.Next = std::make_shared<Thing>();
        const auto ignore = [](auto&...) {};
        const auto ignoreAll = [&](auto&... events) { ((events = ignore), ...); };
        ignoreAll(reader.OnStartElement, reader.OnStartPrefixMapping, reader.OnEndElement,
                  reader.OnCharacters, reader.OnProcessingInstruction, reader.OnComment,
                  reader.OnWarning, reader.OnError, reader.OnFatalError);
    }
    ~State() { std::filesystem::remove(file); }

    [[nodiscard]] TNuDOMElement& root() const { return *document->GetRootNode(); }
    void check() {
        const NuXmlString now = written(*document);
        EXPECT_EQ(written(*NuCreateDOMDocument(now)), now);
        EXPECT_FALSE(document->IsLoading());
        document->loadxml(text);
        EXPECT_EQ(written(*document), written(*NuCreateDOMDocument(text)));
        int count = 0;
        reader.ClearConforming();
        reader.OnStartElement = [&count](auto&...) { ++count; };
        reader.ParseBytes("<a><b/></a>");
        EXPECT_EQ(count, 2);
    }
};

template <class... Values> void use(Values&&...) {}

struct Work {
    const char* name;
    void (*run)(State& s);
    bool changesDocument = false;
};

constexpr Work works[] = {
    {"texts",
     [](State&) {
         std::u16string all(40, u'\u20AC');
         all += u"<&'\" tail";
         use(NuXMLToStr(NuStrToXML(all)), NuXMLToStr(NuStrToXML(NuToUtf8(all))), NuFolded(all),
             NuLowered(all), NuFromUtf8(NuToUtf8(all)), NuContainsText(all, u"TAIL"),
             NuAnsiStringToWideString(NuWideStringToAnsiString(all)));
         TNuStringStream stream(all);
         stream.AddString(all);
         use(stream.GetAsWideString(), stream.GetAsAnsiString());
     }},
    {"values",
     [](State&) {
         const std::vector<std::uint8_t> bytes(50, 1);
         use(NuXMLToBytes(NuBytesToXML(bytes)), NuXMLToDateTime(NuDateTimeToXML({40000.25})),
             NuDateToXML({1}), NuTimeToXML({0.5}), NuDoubleToXML(1e300), NuInt64ToXML(-1),
             NuBoolToXML(true), NuSchemaType(host::Variant(1)),
             NuXmlToVariant(NuVariantToXml(std::vector<std::u16string>{u"a", u"b"}),
                            host::varStringArray));
     }},
    {"loading a text",
     [](State& s) {
         s.document->loadxml(text);
         s.document->loadxml(text, TNuConformingOptions{}, &s.report);
         s.document->loadxml(text, s.report);
     },
     true},
    {"loading in one call",
     [](State& s) {
         s.document->SaveToFile(s.file, true);
         s.document->save(s.file.u16string());
         use(NuLoadDocument(s.file, {}, &s.report), NuGetDOMDocument(s.file, host::fmOpenRead),
             NuGetDOMDocument(text), NuGetDOMDocument(&s.in, false, s.report));
         const auto stream = host::makeStreamInterface(s.in);
         s.in.SetPosition(0);
         TNuDOMDocument::Create()->load(stream.get());
     }},
    {"saving",
     [](State& s) {
         for (const char16_t* encoding : {u"UTF-8", u"UTF-16", u"ISO-8859-1", u"US-ASCII"}) {
             s.document->SetEncoding(encoding);
             s.document->SaveToStream(s.out, {true, true, true});
         }
         s.root().SaveToStream(s.out);
         use(s.document->get_formattedXml(), s.root().get_formattedInnerXml(),
             NuGetFormattedXML(text));
     },
     true},
    {"paths",
     [](State& s) {
         const TNuDOMPath path(u"//b[1] | r/*[@k='a'] | r/b/../@n", soCaseInsensitive);
         use(path.Text(), path.Complaint(), path.CreateNodeList(*s.document),
             path.CreateElementList(*s.document), path.SelectSingleNode(s.root()),
             TNuDOMPath(u"contains(a)").Complaint(), s.root().CreateElementList(u"b"));
     }},
    {"making by a path", [](State& s) { s.document->SelectSingleNode(u"r/x[@k='v']/y", soCreate); },
     true},
    {"lists",
     [](State& s) {
         const auto list = TNuDOMNodeList::Create(&s.root(), s.document.get(), false);
         for (TNuDOMElement& child : s.root().ChildElements()) {
             list->Add(child);
         }
         list->Insert(0, *s.other->GetRootNode());
         list->Sort(u".");
         list->Remove(*s.root().GetChildElement(u"b"));
         list->Clear();
         s.root().get_childElements().Sort(u".");
     },
     true},
    {"nodes",
     [](State& s) {
         const auto attribute = s.document->createAttributeNS(u"u", u"p:z");
         s.root().setAttributeNode(*attribute);
         for (int number = 0; number < 40; ++number) {
             s.root().setAttribute(u"k" + NuIntToXML(number), u"v");
         }
         s.document->_CreateElement(u"e", u"u", &s.root(), rdpFirst, nullptr);
         s.document->_CreateCharacterData(TNuDOMComment::Class, u"c", &s.root(), rdpLast, nullptr);
         EXPECT_THROW(attribute->_linkToParent(s.document.get(), rdpLast, nullptr), std::exception);
         s.root().get_firstChild()->_delete();
         s.root().appendChild(*s.other->GetRootNode()); // adopted
         s.document->Clear();
         s.document->CreateRootNode(u"again");
     },
     true},
    {"reading",
     [](State& s) {
         s.reader.setFeature(u"a feature of some length", true);
         for (const std::string_view bytes : {withEntities, faulty}) {
             for (const auto choice :
                  {TNuSaxParserChoice::SmallStream, TNuSaxParserChoice::LargeStream}) {
                 s.reader.SetParserChoice(choice);
                 try {
                     s.reader.ParseBytes(bytes);
                 } catch (const ENuSaxFatalError&) {
                 }
             }
         }
         s.reader.ParseFragment(u"text<p:a/>&amp;");
         s.reader.SetConforming({});
         s.reader.ParseBytes(withEntities);
     }},
    {"the conforming stage",
     [](State& s) {
         use(NuCheckXML(s.in));
         s.in.SetPosition(0);
         TNuConformingStream stage(s.in);
         for (char block[64]; stage.Read(block, sizeof block) != 0;) {
         }
     }},
    {"objects",
     [](State& s) {
         const NuXmlString xml = NuSerializeObject2Xml(s.thing, u"T");
         Thing read;
         NuDeSerializeObject(read, xml, dsStrict);
         NuSerializeObject2Stream(s.thing, s.out);
         s.out.SetPosition(0);
         NuDeSerializeObject(read, s.out);
         NuDeSerializeObject(read, *NuSerializeObject2DOM(s.thing, s.root()));
         NuSaveObject(s.file, s.thing);
         NuLoadObject(s.file, read);
     },
     true},
    {"streams of objects",
     [](State& s) {
         nu::ObjectWriter writer(s.out, u"things");
         writer.Write(s.thing);
         writer.Write(s.thing);
         writer.Close();
         s.out.SetPosition(0);
         std::vector<std::unique_ptr<Thing>> read;
         nu::ReadObjects<Thing>(s.out, u"things/Thing",
                                [&](auto thing) { read.push_back(std::move(thing)); });
         EXPECT_EQ(read.size(), 2U);
     }},
    {"the face of C++",
     [](State& s) {
         TNuDOMElement& root = s.root();
         root.Set("b", "a text that does not fit into its node");
         root.Set(u"new/deep/@k", 5);
         use(root.Get<int>("new/deep/@k"), root.Get("b", std::string("none")), root.Find("nobody"),
             root.At("b").Get<NuXmlString>(), root.Make("made/here"));
         for (TNuDOMElement& element : root.Select("//b")) {
             element.Set("@k", "a value of some length");
         }
         for (const TNuDOMNode& node : root.SelectNodes(u"//@*")) {
             use(node.Text());
         }
         for (TNuDOMElement& element : root.ChildElements("b")) {
             use(element.Attributes().begin());
         }
         const auto copy = s.document->CreateCopy();
         root.AddCopy(*s.other->GetRootNode());
         root.InsertCopy(*copy->GetRootNode(), rdpFirst, nullptr);
         use(s.other->CreateCopy(root));
         std::ostringstream stream;
         stream << *s.document;
         stream.exceptions(std::ios::badbit); // which is all that a stream says of it
     },
     true},
    {"records of a document",
     [](State& s) {
         constexpr std::string_view document =
             "<?xml version='1.0' encoding='UTF-8'?><all xmlns:p='u'><p:r k='1'><t>one</t></p:r>"
             "<r k='2'><t>a text of more than a few letters</t></r><r><r/></r></all>";
         host::TMemoryViewStream file(document);
         const nu::RecordIndex index = nu::RecordIndex::Build(file, 0, 20);
         index.Save(s.out);
         s.out.SetPosition(0);
         const nu::RecordIndex loaded = nu::RecordIndex::Load(s.out);
         const nu::RecordColumns columns(u"t,@k");
         int count = 0;
         std::string told;
         for (int number = 0; number < 2; ++number) {
             nu::RecordReader records(file, u"all/*", loaded,
                                      nu::shareOf(file.GetSize(), number, 2));
             for (; records.Next(); ++count) {
                 told += records.Xml();
                 records.AppendJson(told);
                 records.AppendRow(told, columns, nu::RowForm::Csv);
                 use(records.Document().get_xml());
                 Thing read;
                 records.ReadObject(read);
             }
         }
         EXPECT_EQ(count, 3);
     }},
    {"data sets and lists",
     [](State& s) {
         host::CsvDataSet data;
         data.LoadText("a,b\n1,\"a text that does not fit\"\n2,y\n");
         data.Save(s.out);
         host::TStringList strings{u"a string of more than a few letters"};
         strings.SetText(strings.GetText() + u"\r\nmore");
         use(NuSerializeObject2Xml(strings));
     }},
};

TEST(OutOfMemory, leavesAllElseWhole) {
    for (const Work& work : works) {
        SCOPED_TRACE(work.name);
        const long count = failEverywhere([&] {
            State state;
            const NuXmlString before = written(*state.document);
            onCall(true);
            std::string failure;
            try {
                work.run(state);
            } catch (const std::exception& error) {
                onCall(false);
                failure = error.what();
            }
            onCall(false);
            EXPECT_TRUE(failure.empty() || wasReached) << failure;
            EXPECT_TRUE(work.changesDocument || written(*state.document) == before);
            state.check();
        });
        EXPECT_GT(count, 3);
    }
}

} // namespace
