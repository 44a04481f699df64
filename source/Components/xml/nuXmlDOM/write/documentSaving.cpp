#include "common/codePage.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/fileReplacement.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/write/nodeSaving.h"
#include "nuXmlDOM/write/savedEncoding.h"
#include "nuXmlDOM/write/targets.h"

namespace {

void saveEightBit(const TNuDOMDocument& document, host::TStream& stream,
                  const nu::WriteOptions& options, std::uint32_t codePage) {
    nu::EightBitTarget target(stream);
    if (codePage == cNuCodePageUtf8) {
        nu::writeNode(document, target, options);
    } else {
        nu::writeInCodePage(document, target, options, codePage);
    }
}

} // namespace

void TNuDOMDocument::SaveToStream(host::TStream& stream, bool formatted, bool writeByteOrderMark) {
    SaveToStream(stream, {formatted, writeByteOrderMark});
}

void TNuDOMDocument::SaveToStream(host::TStream& stream, const TNuSaveOptions& options) {
    const nu::SavedEncoding encoding =
        options.codePage == 0 ? nu::savedEncodingOf(*this) : nu::savedEncodingOf(options.codePage);
    nu::WriteOptions writing{options.formatted, options.writeByteOrderMark, 0, options.keepContent,
                             options.indentation};
    switch (encoding.form) {
    case nu::SavedForm::Utf8: {
        nu::Utf8Target target(stream);
        return nu::writeNode(*this, target, writing);
    }
    case nu::SavedForm::Utf16:
        return nu::saveWide(*this, stream, writing);
    case nu::SavedForm::EightBit:
        writing.marked = false;
        return saveEightBit(*this, stream, writing, encoding.codePage);
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
