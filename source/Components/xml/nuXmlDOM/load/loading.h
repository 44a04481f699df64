#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "host/dom/document.h"
#include "host/runtime/stream.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/limits.h"
#include "nuXmlDOM/load/loadReport.h"
#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/xmlFault.h"

/// \file
/// Documents made and loaded in one call. What is wrong with the XML throws as
/// TNuSAXXMLReader::Parse does; there is no document then. To load within limits by the reader's
/// own rules, make a document, give it the limits and let it load.
///
/// What of white space is loaded stands with the loading operations of TNuDOMDocument.

/// A document of XML text. The text is no file name, whatever it looks like; without markup in it
/// the document is empty.
[[nodiscard]] NUXML_API NuRef<TNuDOMDocument> NuCreateDOMDocument(std::u16string_view xml);
/// The same in UTF-8.
[[nodiscard]] inline NuRef<TNuDOMDocument> NuCreateDOMDocument(const TNuUtf8Text& xml) {
    return NuCreateDOMDocument(xml.view());
}

/// The same as an interface.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument> NuGetDOMDocument(std::u16string_view xml);
/// The same in UTF-8.
[[nodiscard]] inline host::Ref<host::IDOMDocument> NuGetDOMDocument(const TNuUtf8Text& xml) {
    return NuGetDOMDocument(xml.view());
}

/// A document of what a stream holds from its position on. With `freeStream` the stream is
/// destroyed, also when loading fails.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument> NuGetDOMDocument(host::TStream* stream,
                                                                       bool freeStream);

/// A document of a file, opened in a mode of host::TFileStream.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument>
NuGetDOMDocument(const std::filesystem::path& fileName, std::uint16_t mode);

/// \name The same, read as the XML standard means it
/// What is not well-formed throws ENuXmlFault with its place. `report`, if there is one, receives
/// what was wrong, the fatal fault included. The document has the limits from the beginning on.
/// @{

/// A document of a file: the way to begin with.
[[nodiscard]] NUXML_API NuRef<TNuDOMDocument>
NuLoadDocument(const std::filesystem::path& fileName, const TNuConformingOptions& options = {},
               TNuLoadReport* report = nullptr, const TNuDOMLimits& limits = {});
/// A document of XML text in memory.
[[nodiscard]] NUXML_API NuRef<TNuDOMDocument>
NuParseDocument(const TNuText& xml, const TNuConformingOptions& options = {},
                TNuLoadReport* report = nullptr, const TNuDOMLimits& limits = {});
/// The same as NuParseDocument, for text in UTF-16.
[[nodiscard]] NUXML_API NuRef<TNuDOMDocument>
NuCreateDOMDocument(std::u16string_view xml, const TNuConformingOptions& options,
                    TNuLoadReport* report = nullptr, const TNuDOMLimits& limits = {});
/// The same as an interface.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument>
NuGetDOMDocument(std::u16string_view xml, const TNuConformingOptions& options,
                 TNuLoadReport* report = nullptr, const TNuDOMLimits& limits = {});
/// The same in UTF-8.
[[nodiscard]] inline host::Ref<host::IDOMDocument>
NuGetDOMDocument(const TNuUtf8Text& xml, const TNuConformingOptions& options,
                 TNuLoadReport* report = nullptr, const TNuDOMLimits& limits = {}) {
    return NuGetDOMDocument(xml.view(), options, report, limits);
}
/// A document of what a stream holds from its position on, as an interface. With `freeStream` the
/// stream is destroyed, also when loading fails.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument>
NuGetDOMDocument(host::TStream* stream, bool freeStream, const TNuConformingOptions& options,
                 TNuLoadReport* report = nullptr, const TNuDOMLimits& limits = {});
/// A document of a file, opened in a mode of host::TFileStream, as an interface.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument>
NuGetDOMDocument(const std::filesystem::path& fileName, std::uint16_t mode,
                 const TNuConformingOptions& options, TNuLoadReport* report = nullptr,
                 const TNuDOMLimits& limits = {});
/// @}

/// \name By the rules of the reader alone, with a report
/// @{

/// See NuCreateDOMDocument; `report` receives what the reader forgives, too.
[[nodiscard]] NUXML_API NuRef<TNuDOMDocument> NuCreateDOMDocument(std::u16string_view xml,
                                                                  TNuLoadReport& report);
/// The same as an interface.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument> NuGetDOMDocument(std::u16string_view xml,
                                                                       TNuLoadReport& report);
/// The same in UTF-8.
[[nodiscard]] inline host::Ref<host::IDOMDocument> NuGetDOMDocument(const TNuUtf8Text& xml,
                                                                    TNuLoadReport& report) {
    return NuGetDOMDocument(xml.view(), report);
}
/// The same for a stream, which is destroyed with `freeStream`, also when loading fails.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument>
NuGetDOMDocument(host::TStream* stream, bool freeStream, TNuLoadReport& report);
/// The same for a file, opened in a mode of host::TFileStream.
[[nodiscard]] NUXML_API host::Ref<host::IDOMDocument>
NuGetDOMDocument(const std::filesystem::path& fileName, std::uint16_t mode, TNuLoadReport& report);
/// @}
