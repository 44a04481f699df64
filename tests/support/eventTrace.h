#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/com/implements.h"
#include "host/sax/BSaxExt.h"
#include "nuXmlParser/baseParser.h"
#include "nuXmlSax/contentHandler.h"
#include "nuXmlSax/reader.h"

namespace support {

/// What an EventTrace writes beside the events themselves.
enum class Positions {
    None,
    Events, ///< "line:column " of the locator before each event
    State,  ///< the same with all that state() tells
    Stream, ///< "position: " of the text of its source, in bytes, before each event
};

/// A handler that writes down a parse, one event a line:
///
///     SD  EP  ED                 startDocument, EndProlog, endDocument
///     M prefix=uri               startPrefixMapping
///     S p:a/a{uri} b="1"         startElement; "/local" only where it differs from the name,
///     "{uri}" E p:a/a{uri}               only where there is one T"text" C"text" SC EC characters,
///     comment, startCDATA, endCDATA I target"data"  D name     processingInstruction, startDTD
///     W1:5 what  R1:5 what  F1:5 what    warning, error, fatalError with line and column
///     X Class what               the exception that left the parse
///
/// Texts of faults appear as their short names of eventTrace.cpp where they have one; control
/// characters as \n, \r, \t or \x.. .
class EventTrace final
    : public host::Implements<INuSaxContentHandler, host::IBufferedLexicalHandler,
                              host::IErrorHandler> {
public:
    explicit EventTrace(Positions positions = Positions::None) : positions_(positions) {}

    /// Becomes all three handlers of the reader.
    void attachTo(TNuSAXXMLReader& reader);
    /// Runs `parse` and writes down the exception that leaves it.
    void record(const std::function<void()>& parse);

    /// The lines, separated by "|".
    [[nodiscard]] std::string text() const;
    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }
    /// The locator's "line:column;characters", and "!" once the input has ended.
    [[nodiscard]] std::string state() const;
    /// Called with each event's line; may throw.
    std::function<void(const std::string& line)> onEvent;

    void setDocumentLocator(host::ILocator& locator) override;
    void startDocument() override { add("SD"); }
    void endDocument() override { add("ED"); }
    void EndProlog() override { add("EP"); }
    void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) override;
    void endPrefixMapping(std::u16string_view) override { add("endPrefixMapping"); }
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void ignorableWhitespace(std::u16string_view) override { add("ignorableWhitespace"); }
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;
    void skippedEntity(std::u16string_view) override { add("skippedEntity"); }
    void comment(std::u16string_view text) override;
    void startCDATA() override { add("SC"); }
    void endCDATA() override { add("EC"); }
    void startDTD(std::u16string_view name, std::u16string_view publicId,
                  std::u16string_view systemId) override;
    void endDTD() override { add("endDTD"); }
    void startEntity(std::u16string_view) override { add("startEntity"); }
    void endEntity(std::u16string_view) override { add("endEntity"); }
    void warning(host::ISAXParseError& error) override { addFault('W', error); }
    void error(host::ISAXParseError& error) override { addFault('R', error); }
    void fatalError(host::ISAXParseError& error) override { addFault('F', error); }

private:
    [[nodiscard]] std::string place() const;
    [[nodiscard]] std::string before() const;
    void add(std::string line);
    void addFault(char kind, host::ISAXParseError& error);

    Positions positions_;
    host::Ref<host::ILocator> locator_;
    std::vector<std::string> lines_;
};

/// Calls `parse` and tells what leaves it: "Class what", or an empty text.
[[nodiscard]] std::string exceptionOf(const std::function<void()>& parse);

/// UTF-8 with control characters made visible.
[[nodiscard]] std::string readable(std::u16string_view text);

} // namespace support
