#include "nuXmlDOM/write/savedEncoding.h"

#include "common/caseFolding.h"
#include "common/codePage.h"
#include "common/utf8.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace nu {

namespace {

constexpr std::u16string_view declarationTarget = u"xml";
constexpr std::u16string_view encodingWord = u"encoding";
constexpr std::u16string_view blanks = u" \t\r\n";

/// The page for what no page is known of. All of its characters have their ASCII bytes in almost
/// every encoding, and references are made of ASCII.
constexpr std::uint32_t codePageAscii = 20127;

/// The first instruction right below a document that is a declaration by its target.
const TNuDOMProcessingInstruction* findDeclaration(const TNuDOMDocument& document) {
    const TNuDOMNode* node = childrenOf(document)->first();
    for (; node != nullptr; node = NodeLinks::next(*node)) {
        if (is<TNuDOMProcessingInstruction>(*node) &&
            NuEqualFolded(NodeContext::name(*node).qualified(), declarationTarget)) {
            break;
        }
    }
    return static_cast<const TNuDOMProcessingInstruction*>(node);
}

NuXmlString dataOf(const TNuDOMProcessingInstruction* declaration) {
    return declaration != nullptr ? NodeText::stored(*declaration).toString() : NuXmlString();
}

/// The page whose bytes are what a declaration promises, on a system that writes UTF-8.
std::uint32_t codePageFor(std::u16string_view encoding) {
    const std::uint32_t codePage = NuFindCodePage(NuToUtf8(encoding));
    // TIS-620 is a part of the page that it names.
    const bool isExact = codePage != 0 && !NuEqualAsciiWord(encoding, u"tis-620");
    // What calls itself some UTF cannot be meant by bytes of 8 bits.
    const bool isUtf = NuFolded(encoding.substr(0, 3)) == u"utf";
    return isExact ? codePage : isUtf ? cNuCodePageUtf8 : codePageAscii;
}

} // namespace

std::optional<NamePlace> findEncodingName(std::u16string_view data) noexcept {
    constexpr auto none = std::u16string_view::npos;
    for (std::size_t word = data.find(encodingWord); word != none;
         word = data.find(encodingWord, word + 1)) {
        const std::size_t equals = data.find_first_not_of(blanks, word + encodingWord.size());
        if (equals == none || data[equals] != u'=') {
            continue;
        }
        const std::size_t opening = data.find_first_not_of(blanks, equals + 1);
        if (opening == none || (data[opening] != u'"' && data[opening] != u'\'')) {
            continue;
        }
        const std::size_t closing = data.find(data[opening], opening + 1);
        if (closing != none) {
            return NamePlace{opening + 1, closing - opening - 1};
        }
    }
    return std::nullopt;
}

SavedEncoding savedEncodingOf(const TNuDOMDocument& document) {
    // 1. What is written as Unicode.
    const NuXmlString encoding = document.GetEncoding();
    if (encoding == u"utf-8") {
        return {SavedForm::Utf8};
    }
    if (encoding == u"utf-16" || encoding.find(u"ucs") != encoding.npos) {
        return {SavedForm::Utf16};
    }
    // 2. Deliberate: anything else, and nothing, is the code page of the system, without a mark.
    const std::uint32_t systemPage = NuGetSystemCodePage();
    if (systemPage != cNuCodePageUtf8) {
        return {SavedForm::EightBit, systemPage};
    }
    // 3. Deliberate: a system of UTF-8 has no page of that kind. There the bytes are what the
    // declaration says, in quotes or apostrophes, because no other program could read them.
    const NuXmlString data = dataOf(findDeclaration(document));
    const std::optional<NamePlace> name = findEncodingName(data);
    return {SavedForm::EightBit,
            name ? codePageFor(std::u16string_view(data).substr(name->start, name->length))
                 : cNuCodePageUtf8};
}

SavedEncoding savedEncodingOf(std::uint32_t codePage) {
    if (codePage == cNuCodePageUtf8) {
        return {SavedForm::Utf8};
    }
    if (codePage == cNuCodePageUtf16) {
        return {SavedForm::Utf16};
    }
    static_cast<void>(NuNarrowAnsiPrefix({}, codePage, nullptr)); // throws
    return {SavedForm::EightBit, codePage};
}

} // namespace nu

NuXmlString TNuDOMDocument::GetEncoding() const {
    // What the next two double quotes behind the word enclose.
    // Deliberate: nothing else is looked at, not even where the word stands; single quotes are
    // none.
    const NuXmlString data = NuFolded(nu::dataOf(nu::findDeclaration(*this)));
    const std::size_t word = data.find(nu::encodingWord);
    const std::size_t opening = word != data.npos ? data.find(cNuQuote, word) : data.npos;
    const std::size_t closing = opening != data.npos ? data.find(cNuQuote, opening + 1) : data.npos;
    return closing != data.npos ? data.substr(opening + 1, closing - opening - 1) : NuXmlString();
}

void TNuDOMDocument::SetEncoding(std::u16string_view name) {
    NuXmlString data = nu::dataOf(nu::findDeclaration(*this));
    if (const std::optional<nu::NamePlace> place = nu::findEncodingName(data)) {
        data.replace(place->start - 1, place->length + 2, u'"' + NuXmlString(name) + u'"');
    } else {
        // Behind the version, which stands first.
        const std::size_t quote = data.find_first_of(u"\"'");
        const std::size_t end = quote != data.npos ? data.find(data[quote], quote + 1) : data.npos;
        if (end == data.npos) {
            data = u"version=\"1.0\"";
        }
        data.insert(end == data.npos ? data.size() : end + 1,
                    u" encoding=\"" + NuXmlString(name) + u'"');
    }
    SetProcessingInstruction(nu::declarationTarget, data);
}
