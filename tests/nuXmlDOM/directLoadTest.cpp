#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "common/memoryStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlDOM.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax.h"
#include "support/randomText.h"

namespace {

/// Markup that is plain for long stretches, with everything in between that is not.
std::string randomDocument(support::Random& random) {
    static constexpr std::string_view names[] = {
        "a",
        "b",
        "item",
        "p:a",
        "P:b",
        "q:r:s",
        "x",
        "xml:x",
        "Größe",
        "名前",
        "a=b",
        "p:",
        "a.very-long-name-of-an-element",
        "as-long-as-names-can-be-when-they-are-guessed-48",
        "xmlns",
        "xmlnsfoo",
        "a_name_that_is_longer_than_what_is_guessed_at_all_by_anybody"};
    static constexpr std::string_view attributes[] = {
        "a=\"1\"",
        "b=\"two words\"",
        "a=\"again\"",
        "p:a=\"\"",
        "xmlns=\"u\"",
        "xmlns:p=\"v\"",
        "XMLNS:P=\"w&amp;\"",
        "xmlns:q:r=\"u\"",
        "c=\"&lt;1&gt;\"",
        "c=\"&amp;lt;&quot;&apos;\"",
        "c=\"&amp;&#65;\"",
        "c='1'",
        "d=\"&#x;\"",
        "e=\"&unknown;\"",
        "f=\"Grüße\"",
        "g=\"漢字\"",
        "h=\"a\nb\"",
        "i=\"\n\"",
        "k =\"1\"",
        "l= \"1\"",
        "m",
        "n=\"<>'\"",
        "o=\"0123456\"",
        "o=\"01234567\"",
        "xml:space=\"preserve\"",
        "xml:space=\"default\"",
        "xml:space=\"odd\"",
        ":s=\"1\"",
        "t:=\"1\"",
        "u\tv=\"1\"",
        "w=\"0123456789012345678901234567890123456789\""};
    static constexpr std::string_view texts[] = {
        "text",
        " ",
        "\n",
        "\r\n",
        "\t",
        "\n  ",
        "a &amp; b",
        "Grüße",
        "漢",
        "漢字漢字",
        "😀",
        ">",
        "x>y",
        "\n>",
        "  text with white space  ",
        "<!-- c -->",
        "<![CDATA[ d ]]>",
        "<?pi data?>",
        "<!--漢-->",
        "<!---->",
        "<!--->-->",
        "<!-- a-b --- c -->",
        "<!--\n-->",
        "<!--é-é-->",
        "\x01",
        "]]>",
        "an ASCII text that is longer than what stands in a node"};
    const auto pick = [&random](const auto& list) { return list[random(std::size(list))]; };
    const std::size_t oddness = random(4) == 0 ? 4 : 40;
    std::string text =
        random(3) == 0 ? "\xEF\xBB\xBF" : "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    text += "<root>";
    for (std::size_t left = 1 + random(80); left > 0; --left) {
        switch (random(4)) {
        case 0:
            text += "</";
            text += random(2) == 0 ? pick(names) : "a";
            text += ">";
            break;
        case 1:
            text += pick(texts);
            break;
        default:
            text += "<";
            text += random(3) == 0 ? pick(names) : names[random(3)];
            for (std::size_t count = random(4); count > 0; --count) {
                text += random(oddness) == 0 ? "  " : " ";
                text += attributes[random(random(oddness) == 0 ? std::size(attributes) : 9)];
            }
            text += random(oddness) == 0 ? " >" : random(3) == 0 ? "/>" : ">";
        }
    }
    if (random(oddness) == 0) {
        static constexpr std::string_view oddities[] = {{"\0", 1}, "<", ">", "\"", "/", "<!x>"};
        text.insert(random(text.size()), pick(oddities));
    }
    // Often long enough for most of it to be beyond what is left to the end.
    return text + (random(2) == 0 ? std::string(70, ' ') : "");
}

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
    for (std::size_t index = 0; index < document->get_childNodes().Count(); ++index) {
        tell(*document->get_childNodes().GetItem(index), told);
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

/// What a document builds from its bytes is what a handler builds from the events of a reader.
TEST(DirectLoading, buildsWhatTheEventsTell) {
    const std::uint64_t inputs = support::randomInputs(20'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        const std::string bytes = randomDocument(random);
        const std::string direct = outcome([&](TNuDOMDocument& document) {
            // Foreign memory: nothing behind its end may be looked at.
            const auto copy = std::make_unique<char[]>(bytes.size());
            bytes.copy(copy.get(), bytes.size());
            host::TMemoryViewStream stream(std::string_view(copy.get(), bytes.size()));
            document.LoadFromStream(stream);
        });
        const std::string byEvents = outcome([&](TNuDOMDocument& document) {
            TNuSAXXMLReader reader;
            const auto handler = host::makeRef<TNuSaxToDomHandler>(reader, document);
            reader.setContentHandler(handler);
            reader.setLexicalHandler(handler);
            try {
                reader.ParseBytes(bytes);
            } catch (const ENuSaxHandledAbort&) {
                if (handler->Failure()) {
                    std::rethrow_exception(handler->Failure());
                }
                throw;
            }
        });
        ASSERT_EQ(direct, byEvents) << "seed " << seed << ": " << bytes;
    }
}

} // namespace
