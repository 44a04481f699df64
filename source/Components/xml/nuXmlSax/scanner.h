#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "nuXmlParser/markupBlock.h"
#include "nuXmlSax/reader.h"

namespace nu {

/// Scans a document from a character source and calls the handlers of a reader.
///
/// The source is one of the final parsers, so that its operations are inlined: a read costs no
/// call. Each operation is entered with the current character that its comment names and leaves the
/// one that the next needs; positions are read from the source whenever somebody can look.
template <class Source> class SaxScanner {
public:
    SaxScanner(TNuSAXXMLReader& reader, Source& source) noexcept
        : reader_(reader), source_(source) {}

    /// From the first character to the end of the document.
    void scanDocument();

private:
    /// A name as written and its part behind the last colon.
    struct Name {
        PNuXmlChar start;
        PNuXmlChar localStart;
        PNuXmlChar end;

        [[nodiscard]] std::u16string_view qName() const noexcept { return text(start, end); }
        /// Empty also where the colon is the last character of the input and so behind the end.
        [[nodiscard]] std::u16string_view localName() const noexcept {
            return text(localStart < end ? localStart : end, end);
        }
        [[nodiscard]] bool hasPrefix() const noexcept { return localStart != start; }
        /// Without the colon.
        [[nodiscard]] std::u16string_view prefix() const noexcept {
            return text(start, localStart - 1);
        }
    };

    // scanDocument.h
    void scanProlog();
    void scanContent();
    [[gnu::always_inline]] void scanMarkup();
    [[gnu::noinline]] void skipOutsideText();
    [[gnu::always_inline]] void scanText();

    // scanElement.h
    [[gnu::always_inline]] void scanStartTag();
    [[gnu::noinline]] Name scanStartTagName();
    [[gnu::always_inline]] void scanEndTag();
    [[gnu::noinline]] Name scanEndTagName();
    [[gnu::always_inline]] void closeElement();
    [[gnu::always_inline]] std::u16string_view resolveNamespace(const Name& name);

    // scanPlainTag.h
    [[gnu::always_inline]] PNuXmlChar scanPlainStartTag(Name& name, TNuSAXAttributes& attributes);
    [[gnu::always_inline]] PNuXmlChar scanPlainAttribute(PNuXmlChar start,
                                                         TNuSAXAttributes& attributes);
    [[gnu::always_inline]] PNuXmlChar scanPlainEndTag(PNuXmlChar slash, Name& name);
    static bool isPlainTagEnd(PNuXmlChar place) noexcept {
        return place[0] == cNuSlash && place[1] == cNuGt;
    }

    // scanAttributes.h
    [[gnu::noinline]] void scanAttributes(TNuSAXAttributes& attributes);
    void scanAttribute(TNuSAXAttributes& attributes);
    Name scanAttributeName();
    std::u16string_view scanAttributeValue();
    void applyAttribute(const TNuSAXAttribute& attribute);
    [[gnu::always_inline]] void applyPlainAttributes(const TNuSAXAttributes& attributes);

    // scanMarkup.h
    [[gnu::noinline]] void scanComment();
    [[gnu::noinline]] void scanCData();
    [[gnu::noinline]] void scanProcessingInstruction();
    [[gnu::noinline]] void scanDocumentType();

    static std::u16string_view text(PNuXmlChar start, PNuXmlChar end) noexcept {
        return {start, static_cast<std::size_t>(end - start)};
    }
    /// ReadXmlChar while a space is current.
    void skipSpaces() {
        while (source_.current() == cNuSpace) {
            source_.ReadXmlChar();
        }
    }
    /// ReadXmlChar until `stop` is current or the input has ended; no read where it already is.
    void skipTo(NuXmlChar stop) {
        source_.copyUntil(stop, [](PNuXmlChar, std::size_t) {});
    }
    /// ReadXmlChar as long as the current character is not `stop`, collecting what it passes.
    void collectTo(NuXmlChar stop, std::u16string& target) {
        source_.copyUntil(stop, [&target](PNuXmlChar start, std::size_t length) {
            target.append(start, length);
        });
    }
    void warn(std::u16string_view message) { reader_.Warning(source_, message); }
    [[noreturn]] void fail(std::u16string_view message) { reader_.FatalError(source_, message); }

    bool preservesSpace() const {
        return !reader_.preserveSpace_.empty() && reader_.preserveSpace_.back();
    }
    host::IBufferedContentHandler* content() const { return reader_.contentHandler_.get(); }
    host::IBufferedLexicalHandler* lexical() const { return reader_.lexicalHandler_.get(); }

    TNuSAXXMLReader& reader_;
    Source& source_;
};

} // namespace nu
