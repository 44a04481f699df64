#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include "host/runtime/memoryStream.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlSax.h"
#include "peers/peer.h"
#include "peers/textRun.h"

namespace bench {

namespace {

enum class AttributeUris : std::uint8_t { notAsked, asked };

/// Sums the lengths of all spans. The URI of an attribute is looked up when it is asked for, which
/// many handlers never do; the other libraries cannot leave it out.
template <AttributeUris uris> class Counter final : public host::TBufferedDefaultHandler {
public:
    Tally tally;

    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override {
        ++tally.elements;
        tally.units += uri.size() + localName.size() + qName.size();
        const host::SAXLength count = attributes.getLength();
        tally.attributes += static_cast<std::size_t>(count);
        for (host::SAXLength index = 0; index < count; ++index) {
            const host::SAXChar* text = nullptr;
            host::SAXLength length = 0;
            attributes.getQName(index, text, length);
            tally.units += static_cast<std::size_t>(length);
            attributes.getValue(index, text, length);
            tally.units += static_cast<std::size_t>(length);
            if constexpr (uris == AttributeUris::asked) {
                attributes.getURI(index, text, length);
                tally.units += static_cast<std::size_t>(std::max<host::SAXLength>(length, 0));
            }
        }
    }

    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override {
        tally.units += uri.size() + localName.size() + qName.size();
    }

    void characters(std::u16string_view text) override { tally.units += text.size(); }
};

/// References in text arrive as they are written and are counted as what they stand for. The
/// inputs have no CDATA sections, where that would be wrong.
class Examiner final : public host::TBufferedDefaultHandler {
public:
    Tally tally;

    void startElement(std::u16string_view, std::u16string_view, std::u16string_view,
                      host::IBufferedAttributes& attributes) override {
        ++tally.elements;
        tally.attributes += static_cast<std::size_t>(attributes.getLength());
    }

    void characters(std::u16string_view text) override {
        TextRun run;
        for (std::size_t index = 0; index < text.size(); ++index) {
            if (text[index] != u'&') {
                run.add(text[index]);
                continue;
            }
            const std::size_t end = text.find(u';', index);
            addReference(run, text.substr(index + 1, end - index - 1));
            index = end;
        }
        tally.units += run.finish();
    }

    void startCDATA() override { throw std::logic_error("an input has a CDATA section"); }

private:
    static void addReference(TextRun& run, std::u16string_view name) {
        if (!name.starts_with(u'#')) {
            run.add(name.front());
            return;
        }
        const bool isHexadecimal = name[1] == u'x';
        char32_t number = 0;
        for (const char16_t digit : name.substr(isHexadecimal ? 2 : 1)) {
            const char32_t value = digit <= u'9' ? digit - u'0' : (digit | 0x20u) - u'a' + 10;
            number = number * (isHexadecimal ? 16 : 10) + value;
        }
        for (std::size_t units = number < 0x10000 ? 1 : 2; units > 0; --units) {
            run.add(static_cast<char16_t>(number < 0x10000 ? number : 0xD800));
        }
    }
};

enum class Reading : std::uint8_t { alone, conforming };

template <class Handler, Reading reading = Reading::alone> Tally parse(host::TStream& stream) {
    stream.Seek(0, host::SeekOrigin::Beginning);
    const host::Ref<Handler> handler = host::makeRef<Handler>();
    TNuSAXXMLReader reader;
    reader.setContentHandler(handler);
    reader.setLexicalHandler(handler);
    reader.setErrorHandler(handler);
    if constexpr (reading == Reading::conforming) {
        reader.SetConforming({});
    }
    reader.Parse(stream);
    return handler->tally;
}

/// Like all others it finds the input ready in memory.
template <class Handler, Reading reading = Reading::alone> Run prepare(std::string_view text) {
    return [stream = std::make_shared<host::TMemoryStream>(text)] {
        return parse<Handler, reading>(*stream);
    };
}

Tally examine(std::string_view text) {
    host::TMemoryViewStream stream(text);
    return parse<Examiner>(stream);
}

const bool registered = addReader({oursName, prepare<Counter<AttributeUris::notAsked>>, examine});
const bool withUrisRegistered =
    addReader({std::string(oursName) + "+uris", prepare<Counter<AttributeUris::asked>>, {}});
const bool withStageRegistered =
    addReader({std::string(oursName) + "+stage",
               prepare<Counter<AttributeUris::notAsked>, Reading::conforming>,
               {}});

} // namespace

} // namespace bench
