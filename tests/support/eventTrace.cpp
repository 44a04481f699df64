#include "support/eventTrace.h"

#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"
#include "nuXmlParser/parserErrors.h"

namespace support {

namespace {

struct NamedText {
    std::string_view name;
    std::string_view text;
};

/// Written out here once more, so that every expected name stands for an exact text.
constexpr NamedText texts[] = {
    {"space", "The XML document is not wellformed!\r\nA space is not allowed after a \"<!"},
    {"name", "Unexpected End Of Document!"},
    {"end", "Unexptected End Of Document!"},
    {"gt", "The XML document is not wellformed!\r\nA \">\" was expected."},
    {"noattr", "The XML document is not wellformed!\r\n"
               "A space after an element indicates that there are attributes."},
    {"equal", "The XML document is not wellformed!\r\nA \"=\" should follow an attributename."},
    {"noequal", "Unexptected End Of Document!\r\nA \"=\" was expected!"},
    {"quote", "The XML document is not wellformed!\r\n"
              "A quote to mark the start of the attribute value was expected."},
    {"noquote", "Unexptected End Of Document!\r\n"
                "A quote to mark the start of an attribute value was expected!"},
    {"novalue", "Unexptected End Of Document!\r\n"
                "A quote to mark the end of an attribute value was expected!"},
    {"unclosed", "Unexptected End Of Document!\r\nThe element was not closed!"},
    {"dash", "The XML document is not wellformed!\r\nAfter <!- should be followed by another - !"},
    {"cend", "The XML document is not wellformed!\r\nA comment should end with -->"},
    {"comment", "Unexptected End Of Document!\r\nThe comment was not closed!"},
    {"cdata", "Unexptected End Of Document!\r\nThe CDATA was not closed!"},
    {"pi", "The XML document is not wellformed!\r\nThe closing (>) of the processing instruction "
           "should be placed right after the question mark (?)!"},
    {"eof", "Unexpected EOF"},
    {"noxml", "The sourcestream does not contain XML or is not positioned at the beginning of an "
              "XML block!"},
    {"utf8", "The sourcestream contains invalid UTF-8 data!"},
};

std::string nameOf(std::u16string_view message) {
    const std::string text = host::utf16ToUtf8(message);
    for (const NamedText& known : texts) {
        if (known.text == text) {
            return std::string(known.name);
        }
    }
    return readable(message);
}

/// A name, with its local part and its URI where they say something new.
std::string elementName(std::u16string_view uri, std::u16string_view localName,
                        std::u16string_view qName) {
    return readable(qName) + (localName == qName ? "" : "/" + readable(localName)) +
           (uri.empty() ? "" : "{" + readable(uri) + "}");
}

std::string quoted(std::u16string_view text) { return '"' + readable(text) + '"'; }

} // namespace

std::string readable(std::u16string_view text) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    for (const char unit : host::utf16ToUtf8(text)) {
        const auto code = static_cast<unsigned char>(unit);
        if (code >= 0x20) {
            result += unit;
        } else if (code == '\n' || code == '\r' || code == '\t') {
            result += code == '\n' ? "\\n" : code == '\r' ? "\\r" : "\\t";
        } else {
            result += {'\\', 'x', digits[code / 16], digits[code % 16]};
        }
    }
    return result;
}

std::string exceptionOf(const std::function<void()>& parse) {
    try {
        parse();
    } catch (const ENuSaxFatalError& failure) {
        return "fatal " + nameOf(failure.Message());
    } catch (const ENuSaxHandledAbort& failure) {
        return "abort " + nameOf(failure.Message());
    } catch (const host::ESAXNotSupportedException& failure) {
        return "ESAXNotSupportedException " + nameOf(failure.Message());
    } catch (const host::ESAXException& failure) {
        return "ESAXException " + nameOf(failure.Message());
    } catch (const host::EConvertError& failure) {
        return "EConvertError " + nameOf(failure.Message());
    } catch (const host::EStreamError& failure) {
        return "EStreamError " + nameOf(failure.Message());
    } catch (const host::EListError& failure) {
        return "EListError " + nameOf(failure.Message());
    } catch (const host::Exception& failure) {
        return "Exception " + nameOf(failure.Message());
    } catch (...) {
        return "foreign " + nameOf(host::currentExceptionMessage());
    }
    return {};
}

void EventTrace::attachTo(TNuSAXXMLReader& reader) {
    reader.setContentHandler(this);
    reader.setLexicalHandler(this);
    reader.setErrorHandler(this);
}

void EventTrace::record(const std::function<void()>& parse) {
    if (const std::string failure = exceptionOf(parse); !failure.empty()) {
        lines_.push_back("X " + failure);
    }
}

std::string EventTrace::text() const {
    std::string result;
    for (const std::string& line : lines_) {
        result += (result.empty() ? "" : "|") + line;
    }
    return result;
}

std::string EventTrace::state() const {
    if (!locator_) {
        return "-";
    }
    auto& parser = dynamic_cast<TNuXmlBaseParser&>(*locator_);
    return place() + ';' + std::to_string(parser.CharCount()) + (parser.Eof() ? "!" : "");
}

std::string EventTrace::place() const {
    return std::to_string(locator_->getLineNumber()) + ':' +
           std::to_string(locator_->getColumnNumber());
}

std::string EventTrace::before() const {
    switch (positions_) {
    case Positions::None:
        break;
    case Positions::Events:
        return place() + ' ';
    case Positions::State:
        return state() + ' ';
    case Positions::Stream:
        return std::to_string(dynamic_cast<TNuXmlBaseParser&>(*locator_).GetStreamPos()) + ": ";
    }
    return {};
}

void EventTrace::add(std::string line) {
    lines_.push_back(before() + line);
    if (onEvent) {
        onEvent(line);
    }
}

void EventTrace::addFault(char kind, host::ISAXParseError& error) {
    add(kind + std::to_string(error.getLineNumber()) + ':' +
        std::to_string(error.getColumnNumber()) + ' ' + nameOf(error.getMessage()) +
        readable(error.getPublicId()) + readable(error.getSystemId()));
}

void EventTrace::setDocumentLocator(host::ILocator& locator) { locator_ = &locator; }

void EventTrace::startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) {
    add("M " + readable(prefix) + '=' + readable(uri));
}

void EventTrace::startElement(std::u16string_view uri, std::u16string_view localName,
                              std::u16string_view qName, host::IBufferedAttributes& attributes) {
    std::string line = "S " + elementName(uri, localName, qName);
    const auto& list = dynamic_cast<const TNuSAXAttributes&>(attributes);
    for (host::SAXLength index = 0; index < attributes.getLength(); ++index) {
        const TNuSAXAttribute& attribute = list.GetAttribute(index);
        const char16_t* attributeUri = nullptr;
        host::SAXLength length = 0;
        attribute.GetURI(attributeUri, length);
        line += ' ' + elementName({}, attribute.localNameSpan(), attribute.qNameSpan());
        if (attributeUri != nullptr) { // an empty URI was declared
            line += '{' + readable({attributeUri, static_cast<std::size_t>(length)}) + '}';
        }
        line += '=' + quoted(attribute.valueSpan());
    }
    add(std::move(line));
}

void EventTrace::endElement(std::u16string_view uri, std::u16string_view localName,
                            std::u16string_view qName) {
    add("E " + elementName(uri, localName, qName));
}

void EventTrace::characters(std::u16string_view text) { add('T' + quoted(text)); }

void EventTrace::processingInstruction(std::u16string_view target, std::u16string_view data) {
    add("I " + readable(target) + quoted(data));
}

void EventTrace::comment(std::u16string_view text) { add('C' + quoted(text)); }

void EventTrace::startDTD(std::u16string_view name, std::u16string_view publicId,
                          std::u16string_view systemId) {
    add("D " + readable(name) + readable(publicId) + readable(systemId));
}

} // namespace support
