#pragma once

#include <string_view>

#include "host/com/implements.h"
#include "nuXmlSax.h"

namespace tool {

/// A receiver of everything that a reader tells about a document, which does nothing about what its
/// heirs do not care for; all of them want elements and text. `More` are further interfaces, error
/// handlers for example.
template <class... More>
class DocumentHandler
    : public host::Implements<INuSaxContentHandler, host::IBufferedLexicalHandler, More...> {
public:
    void setDocumentLocator(host::ILocator& /*locator*/) override {}
    void startDocument() override {}
    void endDocument() override {}
    void EndProlog() override {}
    void startPrefixMapping(std::u16string_view /*prefix*/, std::u16string_view /*uri*/) override {}
    void endPrefixMapping(std::u16string_view /*prefix*/) override {}
    void ignorableWhitespace(std::u16string_view /*text*/) override {}
    void processingInstruction(std::u16string_view /*target*/,
                               std::u16string_view /*data*/) override {}
    void skippedEntity(std::u16string_view /*name*/) override {}
    void comment(std::u16string_view /*text*/) override {}
    void startCDATA() override {}
    void endCDATA() override {}
    void startDTD(std::u16string_view /*name*/, std::u16string_view /*publicId*/,
                  std::u16string_view /*systemId*/) override {}
    void endDTD() override {}
    void startEntity(std::u16string_view /*name*/) override {}
    void endEntity(std::u16string_view /*name*/) override {}
};

} // namespace tool
