#include <memory>

#include "common/memoryStream.h"
#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/load/documentLoader.h"

namespace {

using nu::Loading;
using nu::loadStream;
using nu::loadText;

void loadFile(TNuDOMDocument& document, const std::filesystem::path& fileName, Loading loading) {
    loading.file = NuFromUtf8(fileName.string());
    // A file that cannot be looked at is left to the stream, which says why.
    std::error_code error;
    if (!std::filesystem::exists(fileName, error) && !error) {
        throw host::EReadError(host::formatMessage(nu::messages::noFile, {loading.file}));
    }
    host::TFileStream file(fileName, host::fmOpenRead | host::fmShareDenyNone);
    loadStream(document, file, loading);
}

/// Everything from the position of the stream on.
void copyContents(host::IStream& source, host::TStream& target) {
    constexpr std::size_t blockSize = 64 * 1024;
    const auto block = std::make_unique<std::byte[]>(blockSize);
    for (;;) {
        std::size_t count = 0;
        if (source.Read(block.get(), blockSize, count) < 0) {
            throw ENuDomException(nu::messages::noStreamContents);
        }
        if (count == 0) {
            return;
        }
        target.WriteBuffer(block.get(), count);
    }
}

void loadInterface(TNuDOMDocument& document, host::IStream* stream, const Loading& loading) {
    if (stream == nullptr) {
        throw ENuDomException(nu::messages::noStreamContents);
    }
    TNuMemoryStream contents;
    copyContents(*stream, contents);
    contents.Seek(0, host::SeekOrigin::Beginning);
    loadStream(document, contents, loading);
}

void loadSource(TNuDOMDocument& document, const host::DOMSource& source, const Loading& loading) {
    if (const auto* text = std::get_if<std::u16string_view>(&source)) {
        return text->starts_with(cNuLt)
                   ? loadText(document, *text, loading)
                   : loadFile(document, host::TFileStream::systemPath(*text), loading);
    }
    if (const auto* stream = std::get_if<host::TStream*>(&source)) {
        if (*stream == nullptr) {
            throw ENuDomException(nu::messages::noStreamContents);
        }
        return loadStream(document, **stream, loading);
    }
    loadInterface(document, std::get<host::IStream*>(source), loading);
}

} // namespace

void TNuDOMDocument::set_innerxml(std::u16string_view xml) {
    Clear();
    TNuDOMNode::set_innerxml(xml);
}

bool TNuDOMDocument::loadxml(std::u16string_view xml) {
    set_innerxml(xml);
    return true;
}

bool TNuDOMDocument::loadxml(std::u16string_view xml, const TNuConformingOptions& options,
                             TNuLoadReport* report) {
    loadText(*this, xml, {&options, report});
    return true;
}

bool TNuDOMDocument::loadxml(std::u16string_view xml, TNuLoadReport& report) {
    loadText(*this, xml, {nullptr, &report});
    return true;
}

bool TNuDOMDocument::LoadFromStream(host::TStream& stream) {
    loadStream(*this, stream, {});
    return true;
}

bool TNuDOMDocument::LoadFromStream(host::TStream& stream, const TNuConformingOptions& options,
                                    TNuLoadReport* report) {
    loadStream(*this, stream, {&options, report});
    return true;
}

bool TNuDOMDocument::LoadFromStream(host::TStream& stream, TNuLoadReport& report) {
    loadStream(*this, stream, {nullptr, &report});
    return true;
}

bool TNuDOMDocument::loadFromStream(host::IStream* stream) {
    loadInterface(*this, stream, {});
    return true;
}

bool TNuDOMDocument::LoadFromFile(const std::filesystem::path& fileName) {
    loadFile(*this, fileName, {});
    return true;
}

bool TNuDOMDocument::LoadFromFile(const std::filesystem::path& fileName,
                                  const TNuConformingOptions& options, TNuLoadReport* report) {
    loadFile(*this, fileName, {&options, report});
    return true;
}

bool TNuDOMDocument::LoadFromFile(const std::filesystem::path& fileName, TNuLoadReport& report) {
    loadFile(*this, fileName, {nullptr, &report});
    return true;
}

bool TNuDOMDocument::load(const host::DOMSource& source) {
    loadSource(*this, source, {});
    return true;
}

bool TNuDOMDocument::load(const host::DOMSource& source, const TNuConformingOptions& options,
                          TNuLoadReport* report) {
    loadSource(*this, source, {&options, report});
    return true;
}

bool TNuDOMDocument::load(const host::DOMSource& source, TNuLoadReport& report) {
    loadSource(*this, source, {nullptr, &report});
    return true;
}
