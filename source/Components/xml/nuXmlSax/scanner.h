#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "nuXmlParser/characterSource.h"
#include "nuXmlParser/markupBlock.h"
#include "nuXmlParser/textCounter.h"
#include "nuXmlSax/reader.h"

namespace nu {

/// Scans a document from a character source and calls the handlers of a reader.
///
/// The source is one of the final parsers, so that its operations are inlined: a read costs no
/// call. Each operation is entered with the current character that its comment names and leaves the
/// one that the next needs; positions are read from the source whenever somebody can look.
template <class Source> class SaxScanner {
    static_assert(CharacterSource<Source>);

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
    void scanMarkup();
    [[nodiscard]] bool readsDirectly() const noexcept;
    void readDirectly();
    bool extendsText(bool isDirect);
    bool needsMoreText();
    void skipOutsideText();
    /// Whether white space between two places is kept because it has no line break.
    [[nodiscard]] bool isInlineSpace(PNuXmlChar start, PNuXmlChar end) const noexcept {
        return reader_.space_.keepsInline() && start != end &&
               std::find(start, end, TextCounter::lineFeed) == end;
    }
    void scanText();

    // scanPlain.h: the hot loop, one function without a call but those of the handlers
    void scanPlainContent();
    [[gnu::always_inline]] PNuXmlChar findSolid(PNuXmlChar place);
    [[gnu::always_inline]] PNuXmlChar scanPlainText(PNuXmlChar tagEnd);
    [[gnu::always_inline]] PNuXmlChar scanPlainStartTag(PNuXmlChar less);
    [[gnu::always_inline]] PNuXmlChar scanPlainEndTag(PNuXmlChar less);
    [[gnu::always_inline]] PNuXmlChar findPlainTagEnd(Name& name, TNuSAXAttributes& attributes);
    [[gnu::always_inline]] PNuXmlChar scanPlainAttribute(PNuXmlChar start,
                                                         TNuSAXAttributes& attributes);
    [[nodiscard]] bool isHarmless(PNuXmlChar start, PNuXmlChar end) const noexcept {
        return static_cast<std::size_t>(end - start) <= reader_.harmlessLength_;
    }
    [[gnu::noinline]] void applyPlainAttributes(const TNuSAXAttributes& attributes);

    // scanElement.h
    void scanStartTag();
    [[gnu::always_inline]] void reportElementStart(std::u16string_view uri, const Name& name,
                                                   TNuSAXAttributes& attributes);
    Name scanStartTagName();
    void checkName(std::u16string_view name);
    void scanEndTag();
    [[gnu::always_inline]] void reportElementEnd(const Name& name);
    [[gnu::always_inline]] void closeElement();
    [[gnu::always_inline]] std::u16string_view resolveNamespace(const Name& name);

    // scanAttributes.h
    void scanAttributes(TNuSAXAttributes& attributes);
    void scanAttribute(TNuSAXAttributes& attributes);
    Name scanAttributeName();
    std::u16string_view scanAttributeValue();
    void applyAttribute(const TNuSAXAttribute& attribute);

    // scanMarkup.h
    void scanComment();
    void scanExactComment();
    void scanExactInstruction();
    void collectExactly(std::u16string_view terminator, std::u16string& target);
    void scanCData();
    void scanProcessingInstruction();
    void scanDocumentType();

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
    /// Where text without its control characters is collected; its memory serves again and again.
    std::u16string& emptyCollection() noexcept {
        collected_.clear();
        return collected_;
    }
    void warn(std::u16string_view message) { reader_.Warning(source_, message); }
    [[noreturn]] void fail(std::u16string_view message) { reader_.FatalError(source_, message); }

    host::IBufferedContentHandler* content() const { return reader_.contentHandler_.get(); }
    host::IBufferedLexicalHandler* lexical() const { return reader_.lexicalHandler_.get(); }

    /// Declarations and xml:space, the attributes that mean something here, all start with an x.
    static bool mayBeMeaningful(NuXmlChar first) noexcept { return (first | 0x20) == u'x'; }

    TNuSAXXMLReader& reader_;
    Source& source_;
    std::u16string collected_;
    bool hasMeaningfulAttribute_ = false; ///< the plain tag being scanned may have one
};

} // namespace nu
