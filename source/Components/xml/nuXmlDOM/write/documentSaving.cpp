#include "common/codePage.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/fileReplacement.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/write/nodeSaving.h"
#include "nuXmlDOM/write/savedEncoding.h"
#include "nuXmlDOM/write/targets.h"

namespace {

void saveEightBit(const TNuDOMDocument& document, host::TStream& stream, bool formatted,
                  std::uint32_t codePage) {
    nu::EightBitTarget target(stream);
    if (codePage == cNuCodePageUtf8) {
        nu::writeNode(document, target, {formatted});
    } else {
        nu::writeInCodePage(document, target, {formatted}, codePage);
    }
}

} // namespace

void TNuDOMDocument::SaveToStream(host::TStream& stream, bool formatted, bool writeByteOrderMark) {
    const nu::SavedEncoding encoding = nu::savedEncodingOf(*this);
    switch (encoding.form) {
    case nu::SavedForm::Utf8: {
        nu::Utf8Target target(stream);
        return nu::writeNode(*this, target, {formatted, writeByteOrderMark});
    }
    case nu::SavedForm::Utf16:
        return nu::saveWide(*this, stream, {formatted, writeByteOrderMark});
    case nu::SavedForm::EightBit:
        return saveEightBit(*this, stream, formatted, encoding.codePage);
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
