#include "nuXmlDOM/load/loading.h"

#include <memory>

#include "common/utf8.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/load/documentLoader.h"

namespace {

host::Ref<host::IDOMDocument> documentOf(host::TStream* stream, bool freeStream,
                                         const nu::Loading& loading,
                                         const TNuDOMLimits& limits = {}) {
    if (stream == nullptr) {
        throw ENuDomException(nu::messages::noStreamContents);
    }
    const std::unique_ptr<host::TStream> owned(freeStream ? stream : nullptr);
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->SetLimits(limits);
    nu::loadStream(*document, *stream, loading);
    return document.as<host::IDOMDocument>();
}

host::Ref<host::IDOMDocument> documentOf(const std::filesystem::path& fileName, std::uint16_t mode,
                                         nu::Loading loading, const TNuDOMLimits& limits = {}) {
    loading.file = NuFromUtf8(fileName.string());
    host::TFileStream file(fileName, mode);
    return documentOf(&file, false, loading, limits);
}

NuRef<TNuDOMDocument> documentOf(std::u16string_view xml, const nu::Loading& loading,
                                 const TNuDOMLimits& limits = {}) {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->SetLimits(limits);
    nu::loadText(*document, xml, loading);
    return document;
}

} // namespace

NuRef<TNuDOMDocument> NuLoadDocument(const std::filesystem::path& fileName,
                                     const TNuConformingOptions& options, TNuLoadReport* report,
                                     const TNuDOMLimits& limits) {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->SetLimits(limits);
    document->LoadFromFile(fileName, options, report);
    return document;
}

// Of XML text

NuRef<TNuDOMDocument> NuParseDocument(const TNuText& xml, const TNuConformingOptions& options,
                                      TNuLoadReport* report, const TNuDOMLimits& limits) {
    return documentOf(xml, {&options, report}, limits);
}

NuRef<TNuDOMDocument> NuCreateDOMDocument(std::u16string_view xml) {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->set_innerxml(xml);
    return document;
}

NuRef<TNuDOMDocument> NuCreateDOMDocument(std::u16string_view xml,
                                          const TNuConformingOptions& options,
                                          TNuLoadReport* report, const TNuDOMLimits& limits) {
    return documentOf(xml, {&options, report}, limits);
}

NuRef<TNuDOMDocument> NuCreateDOMDocument(std::u16string_view xml, TNuLoadReport& report) {
    return documentOf(xml, {nullptr, &report});
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(std::u16string_view xml) {
    return NuCreateDOMDocument(xml).as<host::IDOMDocument>();
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(std::u16string_view xml,
                                               const TNuConformingOptions& options,
                                               TNuLoadReport* report, const TNuDOMLimits& limits) {
    return documentOf(xml, {&options, report}, limits).as<host::IDOMDocument>();
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(std::u16string_view xml, TNuLoadReport& report) {
    return documentOf(xml, {nullptr, &report}).as<host::IDOMDocument>();
}

// Of a stream

host::Ref<host::IDOMDocument> NuGetDOMDocument(host::TStream* stream, bool freeStream) {
    return documentOf(stream, freeStream, {});
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(host::TStream* stream, bool freeStream,
                                               const TNuConformingOptions& options,
                                               TNuLoadReport* report, const TNuDOMLimits& limits) {
    return documentOf(stream, freeStream, {&options, report}, limits);
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(host::TStream* stream, bool freeStream,
                                               TNuLoadReport& report) {
    return documentOf(stream, freeStream, {nullptr, &report});
}

// Of a file

host::Ref<host::IDOMDocument> NuGetDOMDocument(const std::filesystem::path& fileName,
                                               std::uint16_t mode) {
    return documentOf(fileName, mode, {});
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(const std::filesystem::path& fileName,
                                               std::uint16_t mode,
                                               const TNuConformingOptions& options,
                                               TNuLoadReport* report, const TNuDOMLimits& limits) {
    return documentOf(fileName, mode, {&options, report}, limits);
}

host::Ref<host::IDOMDocument> NuGetDOMDocument(const std::filesystem::path& fileName,
                                               std::uint16_t mode, TNuLoadReport& report) {
    return documentOf(fileName, mode, {nullptr, &report});
}
