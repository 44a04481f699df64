#include "common/caseFolding.h"
#include "common/codePage.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/fileReplacement.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlDOM/write/nodeSaving.h"
#include "nuXmlDOM/write/targets.h"

namespace nu {

namespace {

constexpr std::u16string_view declarationTarget = u"xml";
constexpr std::u16string_view encodingWord = u"encoding";

void saveEightBit(const TNuDOMDocument& document, host::TStream& stream, bool formatted) {
    const std::uint32_t codePage = NuGetSystemCodePage();
    if (codePage == cNuCodePageUtf8) {
        EightBitUtf8Target target(stream);
        writeNode(document, target, {formatted});
    } else {
        CodePageTarget target(stream, codePage);
        writeNode(document, target, {formatted});
    }
}

} // namespace

} // namespace nu

NuXmlString TNuDOMDocument::GetEncoding() const {
    // 1. The declaration is the first instruction of that target.
    const nu::NodeName* name = nullptr;
    const TNuDOMNode* declaration = topLevel_.first();
    for (; declaration != nullptr; declaration = nu::NodeAccess::next(*declaration)) {
        name = &nu::NodeAccess::name(*declaration);
        if (nu::NodeAccess::is<TNuDOMProcessingInstruction>(*declaration) &&
            NuEqualFolded(name->qualified(), nu::declarationTarget)) {
            break;
        }
    }
    if (declaration == nullptr) {
        return {};
    }
    // 2. What the next two double quotes behind the word enclose.
    // Deliberate: nothing else is looked at, not even where the word stands; single quotes are
    // none.
    const NuXmlString data = NuFolded(
        nu::NodeAccess::stored(static_cast<const TNuDOMProcessingInstruction&>(*declaration))
            .toString());
    const std::size_t word = data.find(nu::encodingWord);
    const std::size_t opening = word != data.npos ? data.find(cNuQuote, word) : data.npos;
    const std::size_t closing = opening != data.npos ? data.find(cNuQuote, opening + 1) : data.npos;
    return closing != data.npos ? data.substr(opening + 1, closing - opening - 1) : NuXmlString();
}

void TNuDOMDocument::SaveToStream(host::TStream& stream, bool formatted, bool writeByteOrderMark) {
    const NuXmlString encoding = GetEncoding();
    if (encoding == u"utf-8") {
        nu::Utf8Target target(stream);
        nu::writeNode(*this, target, {formatted, writeByteOrderMark});
    } else if (encoding == u"utf-16" || encoding.find(u"ucs") != encoding.npos) {
        nu::saveWide(*this, stream, {formatted, writeByteOrderMark});
    } else {
        // Deliberate: any other encoding, and none, is the code page of the system, without a mark;
        // characters that it does not have are lost.
        nu::saveEightBit(*this, stream, formatted);
    }
}

void TNuDOMDocument::SaveToStream(host::IStream* stream) {
    host::TInterfaceStream adapter{host::Ref<host::IStream>(stream)};
    SaveToStream(adapter, false, false);
}

void TNuDOMDocument::SaveToFile(const std::filesystem::path& fileName, bool formatted) {
    host::FileReplacement file(fileName);
    SaveToStream(file.stream(), formatted, true);
    file.commit();
}

void TNuDOMDocument::save(std::u16string_view fileName) {
    SaveToFile(host::TFileStream::systemPath(fileName), false);
}
