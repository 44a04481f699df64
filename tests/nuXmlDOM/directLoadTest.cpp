#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "common/memoryStream.h"
#include "common/stringStream.h"
#include "host/com/implements.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlDOM.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax.h"
#include "support/randomDocument.h"

namespace {

/// Text with a wrong reference has no value.
std::string valueOf(const TNuDOMNode& node) {
    try {
        return host::utf16ToUtf8(node.get_nodeValue());
    } catch (const host::Exception& error) {
        return error.what();
    }
}

/// The node and what is below it.
void tell(const TNuDOMNode& node, std::string& told) {
    const TNuDOMNode* parent = node.get_parentNode();
    told += std::to_string(node.get_nodeType()) + " " + host::utf16ToUtf8(node.get_nodeName()) +
            " {" + host::utf16ToUtf8(node.GetCreationNamespaceURI()) + "} " + valueOf(node) +
            " below " + (parent != nullptr ? host::utf16ToUtf8(parent->get_nodeName()) : "") + "\n";
    if (node.get_nodeType() == host::ELEMENT_NODE) {
        const auto& element = static_cast<const TNuDOMElement&>(node);
        for (const TNuDOMAttribute& attribute : element.Attributes()) {
            tell(attribute, told);
        }
        for (const TNuDOMNode& child : element.ChildNodes()) {
            tell(child, told);
        }
    }
}

/// The tree, or what it was when `load` failed, and how it failed.
template <class Load> std::string outcome(Load&& load) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    std::string told;
    try {
        load(*document);
    } catch (const ENuSaxFatalError& error) {
        told = "fatal " + error.Text() + "\n";
    } catch (const host::Exception& error) {
        told = std::string("throws ") + typeid(error).name() + ": " + error.what() + "\n";
    }
    const TNuDOMNodeList& children = document->get_childNodes();
    for (std::ptrdiff_t index = 0; index < std::ptrdiff_t(children.Count()); ++index) {
        tell(*children.GetItem(index), told);
    }
    for (const bool formatted : {false, true}) {
        TNuMemoryStream stream;
        document->SetProcessingInstruction(u"xml", u"encoding=\"utf-8\"");
        document->SaveToStream(stream, formatted, false);
        told.append(reinterpret_cast<const char*>(stream.Memory()),
                    static_cast<std::size_t>(stream.GetSize()));
        told += host::utf16ToUtf8(formatted ? document->get_formattedXml() : document->get_xml());
    }
    return told;
}

/// How both load: by what rules, within what limits, told to whom.
struct Way {
    std::optional<TNuConformingOptions> options{};
    TNuDOMLimits limits{};
    bool isReported = false;
    bool isWide = false;
};

/// Short text is read to its end, and text that is no UTF-8 in a code page.
std::string inRandomForm(std::string bytes, support::Random& random) {
    constexpr std::size_t longEnough = 17'000;
    if (random(8) == 0) {
        bytes += '\xE9';
    }
    return random(8) == 0 ? std::string(longEnough, ' ') + bytes : bytes;
}

/// A well-formed document with a byte of it changed, or a few of them said twice: one that checking
/// in the same pass has to refuse, or to read as it is meant.
std::string almostWellFormed(support::Random& random) {
    constexpr std::string_view marks = "<>&'\"=/:;!?-]x1 \t\r\n\x01\xC3";
    std::string bytes = support::randomWellFormed(random);
    const std::size_t place = random(bytes.size());
    if (random(2) == 0) {
        bytes[place] = marks[random(marks.size())];
    } else {
        bytes.insert(place, bytes.substr(random(bytes.size()), random(20)));
    }
    return bytes;
}

Way randomWay(support::Random& random) {
    Way way;
    way.isReported = random(3) == 0;
    way.isWide = random(4) == 0;
    if (random(2) == 0) {
        way.options.emplace();
        way.options->whiteSpace = static_cast<TNuConformingWhiteSpace>(random(3));
        way.options->namespaces = random(2) == 0;
    }
    if (random(4) == 0) {
        way.limits.Reading = {static_cast<std::int32_t>(1 + random(9)), 1 + random(4),
                              1 + random(50)};
    }
    return way;
}

/// What `bytes` say, as the way has them. Behind foreign memory nothing may be looked at.
template <class Load> std::string load(const Way& way, std::string_view bytes, Load&& load) {
    const std::u16string wide = way.isWide ? host::utf8ToUtf16(bytes) : u"";
    const auto copy = std::make_unique<char[]>(bytes.size());
    bytes.copy(copy.get(), bytes.size());
    TNuLoadReport report;
    const std::string told = outcome([&](TNuDOMDocument& document) {
        document.SetLimits(way.limits);
        TNuStringStream text(wide);
        host::TMemoryViewStream stream(std::string_view(copy.get(), bytes.size()));
        load(document, way.isWide ? static_cast<host::TStream&>(text) : stream, report);
    });
    return told + host::utf16ToUtf8(report.Text());
}

std::string loadDirectly(const Way& way, std::string_view bytes) {
    return load(
        way, bytes, [&](TNuDOMDocument& document, host::TStream& stream, TNuLoadReport& report) {
            if (way.options) {
                document.LoadFromStream(stream, *way.options, way.isReported ? &report : nullptr);
            } else if (way.isReported) {
                document.LoadFromStream(stream, report);
            } else {
                document.LoadFromStream(stream);
            }
        });
}

/// What hears of faults as documents do.
class Reporter final : public host::Implements<host::IErrorHandler> {
public:
    Reporter(TNuLoadReport& report, const TNuSaxToDomHandler& builder)
        : report_(report), builder_(builder) {}
    void warning(host::ISAXParseError& error) override { add(fsWarning, error); }
    void error(host::ISAXParseError& error) override { add(fsError, error); }
    void fatalError(host::ISAXParseError& error) override { add(fsFatal, error); }

private:
    void add(TNuFaultSeverity severity, host::ISAXParseError& error) {
        const bool isPlaced = error.getLineNumber() > 0;
        report_.Add({severity,
                     error.getMessage(),
                     {},
                     isPlaced ? error.getLineNumber() : builder_.FailureLine(),
                     isPlaced ? error.getColumnNumber() : builder_.FailureColumn()});
    }

    TNuLoadReport& report_;
    const TNuSaxToDomHandler& builder_;
};

std::string loadByEvents(const Way& way, std::string_view bytes) {
    return load(
        way, bytes, [&](TNuDOMDocument& document, host::TStream& stream, TNuLoadReport& report) {
            TNuSAXXMLReader reader;
            const auto handler = host::makeRef<TNuSaxToDomHandler>(reader, document);
            reader.setContentHandler(handler);
            reader.setLexicalHandler(handler);
            reader.SetLimits(way.limits.Reading);
            if (way.options) {
                reader.SetConforming(*way.options);
            }
            if (way.isReported) {
                reader.setErrorHandler(host::makeRef<Reporter>(report, *handler));
            }
            try {
                reader.Parse(stream);
            } catch (const ENuSaxHandledAbort&) {
                if (handler->Failure()) {
                    std::rethrow_exception(handler->Failure());
                }
                throw;
            } catch (const ENuSaxFatalError& fault) {
                if (way.isReported && report.Fatal() == nullptr) {
                    report.Add({fsFatal, fault.Message(), {}, fault.Line(), fault.Column()});
                }
                throw;
            }
        });
}

/// Attributes that are not the reader's own.
class ForeignAttributes final : public TNuSAXAttributes {
public:
    using TNuSAXAttributes::TNuSAXAttributes;
};

TEST(DirectLoading, buildsWhatAnotherProducerTells) {
    TNuSAXXMLReader reader;
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    const auto builder = host::makeRef<TNuSaxToDomHandler>(reader, *document);
    const auto attributes = host::makeRef<ForeignAttributes>(reader);
    TNuSAXAttribute& attribute = attributes->CreateAttribute();
    attribute.SetQName(u"k", 1);
    attribute.SetValue(u"1&amp;", 6);
    const std::u16string uri(300, u'u');
    builder->startDocument();
    builder->startDTD(u"a", u"", u"");
    builder->endDTD();
    builder->startPrefixMapping(u"", uri);
    builder->startElement(uri, u"a", u"a", *attributes);
    builder->startEntity(u"e");
    builder->characters(u"t");
    builder->endEntity(u"e");
    builder->ignorableWhitespace(u" ");
    builder->skippedEntity(u"s");
    EXPECT_ANY_THROW(builder->startElement(u"", u"b c", u"b c", *attributes));
    builder->endElement(uri, u"a", u"a");
    builder->endPrefixMapping(u"");
    const auto* const root = document->get_documentElement();
    EXPECT_EQ(root->get_xml(), u"<a k=\"1&amp;\">t</a>");
}

/// What a document builds from its bytes is what a handler builds from the events of a reader.
TEST(DirectLoading, buildsWhatTheEventsTell) {
    const std::uint64_t inputs = support::randomInputs(20'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        const Way way = randomWay(random);
        const std::size_t kind = way.options ? random(8) : 7;
        const std::string bytes = inRandomForm(kind < 4   ? support::randomWellFormed(random)
                                               : kind < 7 ? almostWellFormed(random)
                                                          : support::randomDocument(random),
                                               random);
        ASSERT_EQ(loadDirectly(way, bytes), loadByEvents(way, bytes))
            << "seed " << seed << ": " << bytes;
    }
}

/// A token is whole however much of the text is decoded at a time.
TEST(DirectLoading, takesTokensThatAreLongerThanItsWindow) {
    const char* const shapes[] = {"<~/>",
                                  "<~ b=\"c\">\n</~>",
                                  "<p:~ xmlns:p=\"u\"/>",
                                  "<r ~=\"1\"><~/></r>",
                                  "<r b=\"~\">~&amp;~</r>",
                                  "<r><?~ ~?><!--~--><![CDATA[~]]></r>",
                                  "<!DOCTYPE ~ SYSTEM \"~\"><~>~</~>"};
    support::Random random(1);
    for (const char* const shape : shapes) {
        for (const std::size_t length : {32'700U, 32'768U, 33'000U, 70'000U}) {
            const std::string token(length, 'a');
            std::string bytes;
            for (const char letter : std::string_view(shape)) {
                bytes += letter == '~' ? token : std::string(1, letter);
            }
            Way way = randomWay(random);
            way.limits = {};
            const std::string told = loadDirectly(way, bytes);
            EXPECT_TRUE(told == loadByEvents(way, bytes)) << shape << " with " << length;
            EXPECT_NE(told.find(token), std::string::npos) << shape << " with " << length;
        }
    }
}

} // namespace
