#include "documentText.h"

#include <algorithm>

#include "common/caseFolding.h"
#include "common/codePage.h"
#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "lineEndStream.h"

namespace tool {

namespace {

constexpr std::u16string_view utf8Name = u"UTF-8";

/// Takes everything and keeps nothing.
class NoStream final : public SinkStream {
public:
    std::size_t Write(const void* /*buffer*/, std::size_t count) override { return count; }
};

/// Whether a page has all that can be written in it only as it is. Most pages have it, and only
/// trying tells.
bool canBeWritten(TNuDOMDocument& document, std::uint32_t codePage) {
    try {
        NoStream nothing;
        document.SaveToStream(nothing, {false, false, true, codePage});
    } catch (const host::EConvertError&) {
        return false;
    }
    return true;
}

std::u16string_view lineEndOf(const LoadedDocument& loaded) {
    if (loaded.isRaw) {
        return loaded.layout.endsLinesWithCR ? u"\r\n" : u"\n";
    }
    switch (loaded.form.lineEnd) {
    case leCrLf:
        return u"\r\n";
    case leCr:
        return u"\r";
    case leNone:
    case leLf:
        break;
    }
    return u"\n";
}

} // namespace

TargetEncoding targetEncodingOf(const LoadedDocument& loaded) {
    const TNuSourceForm& form = loaded.form;
    // 1. The reader alone says nothing of the source; the declaration does.
    const std::string declared =
        loaded.isRaw ? NuToUtf8(loaded.document->GetEncoding()) : form.declaredEncoding;
    const bool isWide = !loaded.isRaw && form.encoding.starts_with("UTF-16");
    if (declared.empty()) {
        return {isWide ? cNuCodePageUtf16 : cNuCodePageUtf8, isWide || form.hasMark};
    }
    // 2. What is declared, if it can be written.
    if (NuEqualAsciiWord(NuFromUtf8(declared), u"utf-16")) {
        return {cNuCodePageUtf16, true};
    }
    const std::uint32_t codePage = NuFindCodePage(declared);
    if (codePage == cNuCodePageUtf8) {
        return {codePage, form.hasMark};
    }
    if (codePage != 0 && !loaded.isRaw && canBeWritten(*loaded.document, codePage)) {
        return {codePage};
    }
    return {cNuCodePageUtf8, false, declared};
}

DocumentText::DocumentText(const LoadedDocument& loaded, const TargetEncoding& encoding)
    : document_(*loaded.document), encoding_(encoding), lineEnd_(lineEndOf(loaded)) {
    if (!encoding.lost.empty()) {
        document_.SetEncoding(utf8Name);
    }
    // 1. What stands right below the document, in its order.
    std::vector<TNuDOMNode*> nodes;
    for (TNuDOMNode* node : document_.get_childNodes()) {
        if (node != document_.GetRootNode()) {
            nodes.push_back(node);
        }
    }
    const TopLevelOrder& order = loaded.order;
    for (std::size_t index = 0; index < nodes.size(); ++index) {
        (index < order.beforeRoot ? before_ : behind_).push_back(nodes[index]->get_xml());
    }
    // 2. The document type, which is not in the tree.
    if (order.hasDocumentType && !loaded.form.documentType.empty()) {
        const std::size_t place = std::min(order.beforeDocumentType, before_.size());
        before_.insert(before_.begin() + static_cast<std::ptrdiff_t>(place),
                       NuFromUtf8(loaded.form.documentType));
    }
    // 3. The document element is what is left.
    for (TNuDOMNode* node : nodes) {
        document_.removeChild(*node);
    }
}

void DocumentText::write(host::TStream& stream, const DocumentForm& form) {
    const bool isWide = encoding_.codePage == cNuCodePageUtf16;
    LineEndStream lines(stream, lineEnd_, isWide);
    if (encoding_.isMarked) {
        writeText(lines, u"\uFEFF");
    }
    for (const std::u16string& text : before_) {
        writeText(lines, text);
        writeText(lines, form.breaksTopLevel ? u"\n" : u"");
    }
    document_.SaveToStream(lines,
                           {form.isFormatted, false, true, encoding_.codePage, form.indentation});
    for (const std::u16string& text : behind_) {
        writeText(lines, form.breaksTopLevel ? u"\n" : u"");
        writeText(lines, text);
    }
    writeText(lines, form.endsWithLine ? u"\n" : u"");
    lines.finish();
}

void DocumentText::writeText(host::TStream& stream, std::u16string_view text) const {
    if (encoding_.codePage == cNuCodePageUtf16) {
        stream.WriteBuffer(text.data(), text.size() * sizeof(char16_t));
        return;
    }
    const std::string bytes = encoding_.codePage == cNuCodePageUtf8
                                  ? NuToUtf8(text)
                                  : NuWideStringToAnsiString(text, encoding_.codePage);
    stream.WriteBuffer(bytes.data(), bytes.size());
}

} // namespace tool
