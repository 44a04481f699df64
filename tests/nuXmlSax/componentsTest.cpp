#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <vector>

#include "common/caseFolding.h"
#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax.h"
#include "support/eventTrace.h"
#include "support/oddStream.h"
#include "support/randomText.h"

namespace {

using support::EventTrace;
using support::exceptionOf;
using support::OddStream;

constexpr std::u16string_view faulty =
    u"<!DOCTYPE d ><?p q?><a xmlns:x=\"u\" b=\"1\">t<!--c--><![CDATA[d]]><!x";

std::string utf8(TNuStringStream& text) {
    EXPECT_EQ(text.GetPosition(), 0);
    return support::readable(text.GetAsWideString());
}

/// Assigns all events; each writes its name and its texts to `log` and then calls `after`.
void assignAll(
    TNuSAXXMLReader& reader, std::string& log,
    const std::function<void(std::string_view)>& after = [](std::string_view) {}) {
    using Text = TNuStringStream;
    const auto note = [&reader, &log, after](std::string_view name) {
        return [&reader, &log, after, name](auto&... arguments) {
            log += name;
            [[maybe_unused]] const auto add = [&](auto& argument) {
                using Argument = std::remove_cvref_t<decltype(argument)>;
                if constexpr (std::is_same_v<Argument, Text>) {
                    log += ' ' + utf8(argument);
                } else if constexpr (std::is_same_v<Argument, TNuSAXXMLReader>) {
                    EXPECT_EQ(&argument, &reader);
                } else if constexpr (std::is_same_v<Argument, host::IAttributes>) {
                    log += ' ' + support::readable(argument.getValue(u"b"));
                } else {
                    log += ' ' + support::readable(argument.getMessage());
                }
            };
            (add(arguments), ...);
            log += '|';
            after(name);
        };
    };
    reader.OnStart = note("Start");
    reader.OnFinished = note("Finished");
    reader.OnStartDocument = note("StartDocument");
    reader.OnEndDocument = note("EndDocument");
    reader.OnEndProlog = note("EndProlog");
    reader.OnProcessingInstruction = note("ProcessingInstruction");
    reader.OnStartPrefixMapping = note("StartPrefixMapping");
    reader.OnEndPrefixMapping = note("EndPrefixMapping");
    reader.OnStartElement = note("StartElement");
    reader.OnCharacters = note("Characters");
    reader.OnEndElement = note("EndElement");
    reader.OnComment = note("Comment");
    reader.OnStartDTD = note("StartDTD");
    reader.OnEndDTD = note("EndDTD");
    reader.OnStartCDATA = note("StartCDATA");
    reader.OnEndCDATA = note("EndCDATA");
    reader.OnWarning = note("Warning");
    reader.OnError = note("Error");
    reader.OnFatalError = note("FatalError");
}

constexpr std::u16string_view allEvents =
    u"<!ENTITY d ><?p q?><a xmlns:x=\"u\" b=\"1\">t<!--c--><![CDATA[d]]></a><x:a />";

/// Brings about, at the end of the prolog, the two events that no document does.
void callRareEvents(TNuSAXXMLReader& reader, std::string_view event) {
    if (event == "EndProlog") {
        reader.getContentHandler()->endPrefixMapping(u"e");
        reader.getLexicalHandler()->endDTD();
    }
}

TEST(Events, tellAllThatHandlersHear) {
    TNuSAXXMLReader reader;
    std::string log;
    assignAll(reader, log, [&](std::string_view name) { callRareEvents(reader, name); });
    reader.Parse(allEvents);
    EXPECT_EQ(log, "Start|StartDocument|Error <!DOCTYPE expected, but <!DNTITY  found!"
                   "|StartDTD d  |ProcessingInstruction p q|EndProlog|EndPrefixMapping e|EndDTD"
                   "|StartPrefixMapping x u|StartElement  a a 1|Characters t|Comment c"
                   "|StartCDATA|Characters d|EndCDATA|EndElement  a a"
                   "|Warning The XML document is not wellformed!\\r\\n"
                   "A space after an element indicates that there are attributes."
                   "|Warning There is no NamespaceURI for the prefix \"x\"!"
                   "|StartElement  a x:a |EndElement  a x:a|EndDocument|Finished|");
    // Without events a parse delivers nothing, and leaves nothing behind.
    TNuSAXXMLReader silent;
    EXPECT_EQ(exceptionOf([&] { silent.Parse(faulty); }),
              "fatal Invalid XML after \"<!\" on line 1 and pos 66!");
    EXPECT_FALSE(silent.getContentHandler() || silent.getLexicalHandler() ||
                 silent.getErrorHandler());
}

TEST(Events, turnExceptionsIntoTheirOwn) {
    // As the reports name them; those in the second half pass exceptions on.
    const std::vector<std::string> names = {"OnProcessingInstruction",
                                            "OnStartPrefixMapping",
                                            "OnEndPrefixMapping",
                                            "StartElement",
                                            "Characters",
                                            "EndElement",
                                            "StartDTD",
                                            "Comment",
                                            "",
                                            "StartDocument",
                                            "EndCDATA",
                                            "EndDTD",
                                            "Warning"};
    bool isWrapped = true;
    for (const std::string& name : names) {
        isWrapped = isWrapped && !name.empty();
        for (const bool aborts : {false, true}) {
            TNuSAXXMLReader reader;
            std::string log;
            assignAll(reader, log, [&](std::string_view event) {
                if (name.ends_with(event)) {
                    log.clear();
                    aborts ? throw ENuSaxHandledAbort(u"100%s") : throw host::Exception(u"100%s");
                }
                callRareEvents(reader, event);
            });
            const std::string failure = exceptionOf([&] { reader.Parse(allEvents); });
            // An abort stops quietly only where no event hides it behind its own exception.
            const std::string report =
                isWrapped ? "Error evaluating the " + name + " event!\\r\\n100%s" : "100%s";
            if (name.empty()) {
                EXPECT_EQ(failure, "");
            } else if (aborts && !isWrapped) {
                EXPECT_EQ(failure + log, "Finished|") << name;
            } else {
                EXPECT_EQ(failure, "abort ") << name;
                EXPECT_EQ(log, "FatalError " + report + "|Finished|");
            }
        }
    }
    // A start tag's attributes must be there as strings.
    TNuSAXXMLReader reader;
    reader.OnStartElement = [](auto&...) {};
    const auto handler = host::makeRef<TNuSAXContentHandler>(reader);
    struct BufferedOnly final : TNuSAXAttributes {
        using TNuSAXAttributes::TNuSAXAttributes;
        host::ResultCode QueryInterface(const host::InterfaceId&, void** object) noexcept override {
            *object = nullptr;
            return host::resultNoInterface;
        }
    };
    const auto attributes = host::makeRef<BufferedOnly>(reader);
    EXPECT_EQ(exceptionOf([&] { handler->startElement(u"", u"", u"", *attributes); }),
              "ESAXException The Attributes object does not support IAttributes");
}

TEST(Parse, survivesExceptionsFromEveryCallback) {
    struct Kind {
        void (*raise)();
        std::string_view outcome; ///< what follows the event in the trace
    };
    const Kind kinds[] = {
        {[] { throw ENuSaxHandledAbort(u"quiet"); }, ""},
        {[] { throw ENuSaxFatalError(u"mine"); }, "X fatal mine"},
        {[] { throw host::EListError(u"list"); }, "F-1:-1 list|X abort "},
        {[] { throw std::runtime_error("standard"); }, "F-1:-1 standard|X abort "},
        {[] { throw 5; }, "F-1:-1 |X abort "},
    };
    for (const Kind& kind : kinds) {
        for (std::size_t stop = 1;; ++stop) {
            TNuSAXXMLReader reader;
            const auto trace = host::makeRef<EventTrace>();
            trace->attachTo(reader);
            bool finished = false;
            reader.OnFinished = [&](TNuSAXXMLReader& sender) {
                finished = sender.Namespaces().Count() == 0 && OddStream::alive == 0;
            };
            trace->onEvent = [&](const std::string&) {
                if (trace->lines().size() == stop) {
                    kind.raise();
                }
            };
            auto stream = std::make_unique<OddStream>("\xFF\xFE" + support::utf16Bytes(faulty));
            trace->record([&] { reader.Parse(stream.release(), true); });
            EXPECT_TRUE(finished);
            std::string rest;
            for (std::size_t line = stop; line < trace->lines().size(); ++line) {
                rest += (rest.empty() ? "" : "|") + trace->lines()[line];
            }
            if (stop == 12) { // the fault that ends the document anyway
                EXPECT_EQ(trace->lines()[stop - 1].substr(0, 12), "F1:66 Invali");
                EXPECT_EQ(rest, kind.outcome);
                break;
            }
            EXPECT_EQ(rest, kind.outcome) << stop;
            // The reader works as before, except for the depth of the elements left open.
            trace->onEvent = nullptr;
            const std::size_t before = trace->lines().size();
            trace->record([&] { reader.Parse(u"<b/>"); });
            EXPECT_EQ(trace->lines().size(), before + 5);
        }
    }
    // What fatalError throws leaves Parse as it is.
    TNuSAXXMLReader reader;
    reader.OnFatalError = [](host::ISAXParseError&) { throw host::EListError(u"again"); };
    EXPECT_EQ(exceptionOf([&] { reader.Parse(nullptr, true); }), "EListError again");
    reader.OnFatalError = nullptr;
    EXPECT_EQ(exceptionOf([&] { reader.Parse(nullptr, false); }), "abort ");
    // An exception of OnStart leaves as it is and frees the stream; one of OnFinished wins.
    reader.OnFinished = [](TNuSAXXMLReader&) { throw host::EListError(u"finished"); };
    EXPECT_EQ(exceptionOf([&] { reader.Parse(new OddStream("abc"), true); }),
              "EListError finished");
    reader.OnStart = [](TNuSAXXMLReader&) { throw host::EListError(u"start"); };
    EXPECT_EQ(exceptionOf([&] { reader.Parse(new OddStream("<a/>"), true); }), "EListError start");
    EXPECT_EQ(OddStream::alive, 0);
}

TEST(Parse, keepsTheDepthOfAnEarlierParse) {
    TNuSAXXMLReader reader;
    const auto trace = host::makeRef<EventTrace>();
    trace->attachTo(reader);
    for (const std::u16string_view text : {u"<a xml:space=\"preserve\"><b xmlns=\"u\"><c",
                                           u"<a/>x <b/>", u"</a></a></a></a><b/>x<c/>"}) {
        trace->record([&] { reader.Parse(text); });
    }
    EXPECT_EQ(trace->text(),
              "SD|EP|S a xml:space/space=\"preserve\"|S b{u} xmlns/=\"u\"|X fatal eof"
              "|SD|EP|S a|E a|T\"x \"|S b|E b|ED"
              "|SD|EP|E a|E a|E a|E a|S b|E b|S c|E c|ED");
}

TEST(Parse, forgetsWhatCameBefore) {
    // What a reader is asked, and what it tells: the same whatever it was asked before.
    const auto parse = [](std::u16string_view text) {
        return [text](TNuSAXXMLReader& reader) { reader.Parse(text); };
    };
    const auto parseFragment = [](std::u16string_view text) {
        return [text](TNuSAXXMLReader& reader) { reader.ParseFragment(text); };
    };
    const std::vector<std::function<void(TNuSAXXMLReader&)>> uses = {
        parse(u"<!DOCTYPE a ><!-- c --><a> <p:b xmlns:p=\"u\">x</p:b></a>"),
        parse(u"<a xml:space=\"preserve\" xmlns=\"u\" xmlns:p=\"v\"> <b><c"),
        parse(u"<a/><!DOCTYPE a >"),
        parse(u"<a><![CDATA["),
        parseFragment(u" x<!-- c --><p:b xml:space=\"preserve\"> </p:b> y"),
        parseFragment(u"<b>"),
        parseFragment(u"</a></a>z"),
        [](TNuSAXXMLReader& reader) { reader.ParseBytes("<a>\xFF</a>"); },
        [](TNuSAXXMLReader& reader) {
            reader.OnStart = [](TNuSAXXMLReader&) { throw host::EListError(u"start"); };
            reader.ParseFragment(u"<b/>");
        },
        [](TNuSAXXMLReader& reader) {
            reader.SetParserChoice(TNuSaxParserChoice::LargeStream);
            reader.ParseFragment(u"x");
        },
    };
    // Each of them may be asked inside another, too, and is refused.
    const auto traced = [](TNuSAXXMLReader& reader, const auto& use, bool isInterrupted) {
        const auto trace = host::makeRef<EventTrace>();
        trace->attachTo(reader);
        if (isInterrupted) {
            trace->onEvent = [&reader](const std::string&) {
                constexpr std::string_view refusal =
                    "ESAXException The reader is already parsing a document.";
                EXPECT_EQ(exceptionOf([&] { reader.Parse(new OddStream("<b/>"), true); }), refusal);
                EXPECT_EQ(exceptionOf([&] { reader.ParseFragment(u"b"); }), refusal);
                EXPECT_EQ(OddStream::alive, 0);
            };
        }
        trace->record([&] { use(reader); });
        reader.OnStart = nullptr;
        reader.SetParserChoice(TNuSaxParserChoice::BySize);
        return trace->text();
    };
    for (std::size_t first = 0; first < uses.size(); ++first) {
        for (std::size_t second = 0; second < uses.size(); ++second) {
            TNuSAXXMLReader reader;
            for (const std::size_t use : {first, second, first, second, second}) {
                TNuSAXXMLReader fresh;
                EXPECT_EQ(traced(reader, uses[use], use == second), traced(fresh, uses[use], false))
                    << first << " and " << second;
            }
        }
    }
}

TEST(Parse, keepsToItsLimits) {
    struct Case {
        std::u16string_view document;
        std::string_view refusal; ///< empty where the limits allow it
    };
    for (const Case& item : {
             Case{u"<abcd><b><c/></b><c b=\"12345678901234567890\" c=\"\" d=\"\"/></abcd>", ""},
             Case{u"</a></a><abcd/><?abcd efghij?>", ""},
             Case{u"<a><b><c><d/></c></b></a>", "The elements are nested deeper than 3 levels!"},
             Case{u"<a><b><c>\n<d\n >", "The elements are nested deeper than 3 levels!"},
             Case{u"<a b=\"\"c=\"\"d=\"\"e=\"\"/>", "The element has more than 3 attributes!"},
             Case{u"<a b=\"\" xmlns:c=\"\" d=\"\" e=\"\"/>",
                  "The name is longer than 4 characters!"},
             Case{u"<abcde/>", "The name is longer than 4 characters!"},
             Case{u"<a abcde=\"\"/>", "The name is longer than 4 characters!"},
             Case{u"<a/></abcde>", "The name is longer than 4 characters!"},
             Case{u"<?abcde?>", "The name is longer than 4 characters!"},
             Case{u"<!DOCTYPE abcde ><a/>", "The name is longer than 4 characters!"},
         }) {
        for (const auto choice :
             {TNuSaxParserChoice::SmallStream, TNuSaxParserChoice::LargeStream}) {
            TNuSAXXMLReader reader;
            reader.SetLimits({3, 3, 4});
            reader.SetParserChoice(choice);
            std::string told;
            reader.OnFatalError = [&](host::ISAXParseError& error) {
                told = support::readable(error.getMessage());
            };
            const std::string thrown = exceptionOf([&] { reader.Parse(item.document); });
            EXPECT_EQ(told, item.refusal) << support::readable(item.document);
            EXPECT_EQ(thrown.empty(), told.empty()) << thrown;
        }
    }
}

TEST(Parse, letsHandlersChange) {
    // 1. Each may be replaced by its own callback; what was put in place of a default goes with it.
    TNuSAXXMLReader reader;
    const auto second = host::makeRef<EventTrace>();
    reader.OnStartDocument = [&](TNuSAXXMLReader& sender) { second->attachTo(sender); };
    reader.Parse(u"<a />");
    EXPECT_EQ(second->text(), "EP|W1:4 noattr|S a|E a|ED");
    EXPECT_FALSE(reader.getContentHandler() || reader.getErrorHandler());
    // 2. The application's own stay; one that only the reader holds lives until the parse is over.
    auto first = host::makeRef<EventTrace>();
    first->attachTo(reader);
    first->onEvent = [&](const std::string&) { second->attachTo(reader); };
    first.reset();
    reader.OnStartDocument = nullptr;
    reader.Parse(u"<b/>");
    EXPECT_EQ(second->text(), "EP|W1:4 noattr|S a|E a|ED|EP|S b|E b|ED");
    EXPECT_EQ(reader.getContentHandler().get(), second.get());
    // 3. None at all, from the middle on.
    second->onEvent = [&](const std::string&) {
        reader.setContentHandler(nullptr);
        reader.setLexicalHandler(nullptr);
        reader.setErrorHandler(nullptr);
    };
    EXPECT_EQ(exceptionOf([&] { reader.Parse(faulty); }),
              "fatal Invalid XML after \"<!\" on line 1 and pos 66!");
}

/// Keeps what it is lent.
struct Keeper final : host::TBufferedDefaultHandler {
    host::Ref<host::ILocator> locator;
    std::vector<host::Ref<host::IBufferedAttributes>> lists;

    void setDocumentLocator(host::ILocator& lent) override { locator = &lent; }
    void startElement(std::u16string_view, std::u16string_view, std::u16string_view,
                      host::IBufferedAttributes& lent) override {
        lists.emplace_back(&lent);
    }
};

TEST(Parse, lendsWhatHandlersMayKeep) {
    TNuSAXXMLReader reader;
    const auto keeper = host::makeRef<Keeper>();
    reader.setContentHandler(host::Ref<host::IBufferedContentHandler>(keeper.get()));
    reader.Parse(new OddStream("<a b=\"1\" c=\"2\">\n<d e=\"3\"/></a>"), true);
    EXPECT_EQ(OddStream::alive, 0);
    EXPECT_EQ(keeper->locator->getLineNumber() * 100 + keeper->locator->getColumnNumber(), 215);
    ASSERT_EQ(keeper->lists.size(), 2U);
    EXPECT_EQ(keeper->lists[0]->getLength() + keeper->lists[1]->getLength(), 0);
}

TEST(Attributes, areFoundByNameAndPlace) {
    TNuSAXXMLReader reader;
    bool isSeen = false;
    reader.OnStartElement = [&](TNuSAXXMLReader&, auto&, auto&, auto&, host::IAttributes& list) {
        if (list.getLength() == 0) {
            return;
        }
        isSeen = true;
        EXPECT_EQ(list.getLength(), 5);
        EXPECT_EQ(list.getQName(4) + u'|' + list.getLocalName(4) + u'|' + list.getURI(4) + u'|' +
                      list.getValue(4) + u'|' + list.getType(4),
                  u"b|b|u|3|CDATA");
        EXPECT_EQ(list.getLocalName(0) + list.getURI(0) + list.getURI(1), u"");
        // The declaration of p is the first whose local name is p; an empty URI is any.
        EXPECT_EQ(list.getIndex(u"", u"p") * 100 + list.getIndex(u"", u"b") * 10 +
                      list.getIndex(u"u", u"b"),
                  124);
        EXPECT_EQ(list.getIndex(u"q:b") + list.getIndex(u"B") + list.getIndex(u"w", u"b"), -3);
        EXPECT_EQ(list.getValue(u"p:b") + list.getType(u"p:b") + list.getValue(u"v", u"b") +
                      list.getType(u"v", u"b") + list.getValue(u"none") + list.getType(u"none"),
                  u"1CDATA1CDATA");
        for (const host::SAXLength index : {host::SAXLength{-1}, host::SAXLength{5}}) {
            EXPECT_EQ(exceptionOf([&] { static_cast<void>(list.getValue(index)); }),
                      "EListError List index out of bounds (" + std::to_string(index) + ")");
        }
        // The same as spans.
        const auto buffered = host::queryInterface<host::IBufferedAttributes>(&list);
        const char16_t* text = nullptr;
        host::SAXLength length = 0;
        buffered->getURI(1, text, length);
        EXPECT_TRUE(text == nullptr && length == -1);
        buffered->getType(1, text, length);
        EXPECT_TRUE(std::u16string_view(text) == u"CDATA" && length == -1);
        buffered->getLocalName(0, text, length);
        EXPECT_EQ(length, 0);
        buffered->getValue(u"v", 1, u"b", 1, text, length);
        EXPECT_EQ(std::u16string_view(text, 1), u"1");
        buffered->getValue(u"b", 1, text, length);
        EXPECT_EQ(std::u16string_view(text, 1), u"3");
        buffered->getType(u"x", 1, text, length);
        EXPECT_EQ(length, 0);
        EXPECT_EQ(buffered->getIndex(u"p:b", 3) * 10 + buffered->getIndex(u"v", 1, u"b", 1), 22);
    };
    reader.Parse(u"<o><a xmlns=\"u\" xmlns:p=\"v\" p:b=\"1\" c=\"2\" b=\"3\"/></o>");
    EXPECT_TRUE(isSeen);
}

TEST(NamespaceList, hidesAndRemoves) {
    TNuSaxNamespaceList list;
    const auto find = [&](std::u16string_view prefix) {
        const TNuSaxNamespace* found = list.GetNamespace(prefix);
        return found == nullptr ? u"-" : found->URI;
    };
    list.AddNamespace(1, u"p", u"1");
    list.AddNamespace(3, u"P", u"2");
    list.AddNamespace(2, u"", u"3"); // levels in any order
    EXPECT_EQ(find(u"p") + find(u"") + find(u"q"), u"23-");
    list.RemoveLevel(3);
    EXPECT_EQ(find(u"p") + find(u""), u"13");
    list.RemoveLevel(2);
    EXPECT_EQ(find(u"p") + find(u""), u"1-");
    list.Clear();
    EXPECT_EQ(find(u"p"), u"-");
}

TEST(NamespaceList, findsTheNewestWhateverCameAndWent) {
    struct Declaration {
        std::int32_t level;
        std::u16string prefix;
        std::u16string uri;
    };
    // The Kelvin sign is a k to whom letter case does not matter.
    const std::u16string prefixes[] = {u"k", u"K", u"\u212A", u"kk", u"kK", u"l", u""};
    TNuSaxNamespaceList list;
    std::vector<Declaration> model;
    support::Random random(5);
    for (int step = 0; step < 20'000; ++step) {
        const auto level = static_cast<std::int32_t>(random(5));
        const std::u16string& prefix = prefixes[random(std::size(prefixes))];
        if (const auto action = random(8); action == 0) {
            list.RemoveLevel(level);
            std::erase_if(model, [level](const Declaration& one) { return one.level >= level; });
        } else if (action < 3) {
            model.push_back({level, prefix, {static_cast<char16_t>(step)}});
            list.AddNamespace(level, prefix, model.back().uri);
        }
        const auto newest = std::find_if(model.rbegin(), model.rend(), [&](const Declaration& one) {
            return NuEqualFolded(one.prefix, prefix);
        });
        const TNuSaxNamespace* found = list.GetNamespace(prefix);
        ASSERT_EQ(found != nullptr, newest != model.rend()) << step;
        ASSERT_TRUE(found == nullptr || found->URI == newest->uri) << step;
    }
}

TEST(Reader, hasFeaturesPropertiesAndRefusals) {
    TNuSAXXMLReader reader;
    const std::u16string features = u"http://xml.org/sax/features/";
    EXPECT_TRUE(reader.getFeature(features + u"namespaces"));
    EXPECT_FALSE(reader.getFeature(features + u"namespace-prefixes"));
    EXPECT_TRUE(reader.getFeature(features + u"lexical-handler/parameter-entities"));
    reader.setFeature(features + u"namespace-prefixes", true);
    EXPECT_TRUE(reader.getFeature(features + u"Namespace-Prefixes"));
    EXPECT_EQ(exceptionOf([&] { static_cast<void>(reader.getFeature(u"mine")); }),
              "ESAXNotSupportedException The Keldon SAX parser does not support mine");
    reader.setFeature(u"mine", false);
    EXPECT_FALSE(reader.getFeature(u"mine"));

    const auto trace = host::makeRef<EventTrace>();
    const auto property = reader.getProperty(u"HTTP://xml.org/sax/properties/lexical-handler")
                              .as<host::IInterfaceProperty>();
    EXPECT_EQ(property->getName(), u"HTTP://xml.org/sax/properties/lexical-handler");
    EXPECT_FALSE(property->getValue());
    property->setValue(host::Ref<host::IBufferedLexicalHandler>(trace.get()));
    EXPECT_EQ(reader.getLexicalHandler().get(), trace.get());
    EXPECT_NE(exceptionOf([&] { property->setValue(property); }), "");
    EXPECT_EQ(exceptionOf([&] { static_cast<void>(reader.getProperty(u"other")); }),
              "ESAXNotSupportedException The Keldon SAX parser does not support other");

    EXPECT_EQ(
        exceptionOf([&] { reader.setDTDHandler(nullptr); }),
        "ESAXNotSupportedException DTDhandlers are not supported in this version of Velt XML.");
    EXPECT_EQ(exceptionOf([&] { reader.setEntityResolver(nullptr); }),
              "ESAXNotSupportedException EntityResolvers are not supported in this version of "
              "Velt XML.");
    EXPECT_FALSE(reader.getDTDHandler() || reader.getEntityResolver());
    reader.OnStart = [](TNuSAXXMLReader&) { FAIL(); };
    EXPECT_EQ(exceptionOf([&] { reader.Parse(host::Ref<host::IInputSource>()); }),
              "ESAXNotSupportedException This call is not supported in Velt XML.");
}

TEST(Handlers, mustNotBeFreedWhileHeld) {
    TNuSAXXMLReader reader;
    auto* handler = new TNuSaxErrorHandler(reader);
    EXPECT_EQ(handler->_AddRef() + handler->_AddRef(), 3);
    EXPECT_EQ(exceptionOf([&] { handler->Free(); }), "Exception Dangling RefCount 2");
    EXPECT_EQ(handler->_Release(), 1);
    EXPECT_EQ(handler->_Release(), 0);
    EXPECT_EQ(exceptionOf([&] {
                  TNuSAXLexicalHandler local(reader);
                  local._AddRef();
              }),
              "Exception Dangling RefCount 1");
}

// What is kept longer than it should be

TEST(Reader, staysToTheEndOfItsParseWhoeverLetsGoOfIt) {
    std::string expected;
    bool isDropped = true;
    for (std::size_t at = 0; isDropped; ++at) {
        auto handle = TNuSAXXMLReader::CreateCounted();
        TNuSAXXMLReader& reader = *handle;
        std::string log;
        std::size_t count = 0;
        assignAll(reader, log, [&](std::string_view) {
            if (count++ == at) {
                handle.reset();
            }
        });
        EXPECT_THROW(reader.Parse(faulty), ENuSaxFatalError);
        isDropped = !handle;
        expected = at == 0 ? log : expected;
        EXPECT_EQ(log, expected) << at;
    }
    EXPECT_NE(expected, "");
}

TEST(Attributes, areAnEmptyListBeyondTheirEventAndHandlersSilentBeyondTheirParse) {
    constexpr std::u16string_view texts[] = {u"<a b=\"1\"><c b=\"2\"/></a>",
                                             u"<a  b=\"1\"><c  b=\"2\"/></a>"};
    for (const std::u16string_view text : texts) {
        for (const bool fails : {false, true}) {
            host::Ref<host::IProperty> property;
            std::vector<host::Ref<host::IAttributes>> kept;
            host::Ref<host::IBufferedContentHandler> handler;
            {
                const auto reader = TNuSAXXMLReader::CreateCounted();
                int ends = 0;
                reader->OnEndDocument = [&](auto&) { ++ends; };
                property = reader->getProperty(u"http://xml.org/sax/properties/lexical-handler");
                reader->OnStartElement = [&](auto&, auto&, auto&, auto&, auto& attributes) {
                    for (const auto& former : kept) {
                        EXPECT_EQ(former->getLength(), 0);
                    }
                    kept.emplace_back(&attributes);
                    handler = reader->getContentHandler();
                    EXPECT_EQ(attributes.getLength(), 1);
                    EXPECT_EQ(attributes.getValue(u"b"), kept.size() == 1 ? u"1" : u"2");
                    if (fails) {
                        throw std::runtime_error("no");
                    }
                };
                try {
                    reader->Parse(text);
                    EXPECT_FALSE(fails);
                } catch (const ENuSaxHandledAbort&) {
                    EXPECT_TRUE(fails);
                }
                const int endsOfParse = ends;
                handler->endDocument();
                EXPECT_EQ(ends, endsOfParse);
            }
            EXPECT_EQ(kept.size(), fails ? 1U : 2U);
            for (const auto& attributes : kept) {
                EXPECT_EQ(attributes->getLength(), 0);
                EXPECT_THROW((void)attributes->getValue(0), host::EListError);
            }
            handler->endDocument();
            // It keeps its reader.
            property.as<host::IInterfaceProperty>()->setValue({});
        }
    }
}

} // namespace
