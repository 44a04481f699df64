#pragma once

#include "host/sax/BSax.h"

/// \file
/// The buffered extension interfaces of SAX2: what is no content but can be reported all the same.

namespace host {

/// Receives comments, CDATA borders, entity borders and the document type as spans.
class NUXML_API IBufferedLexicalHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40201};

    virtual void comment(std::u16string_view text) = 0;
    virtual void startCDATA() = 0;
    virtual void endCDATA() = 0;
    virtual void startDTD(std::u16string_view name, std::u16string_view publicId,
                          std::u16string_view systemId) = 0;
    virtual void endDTD() = 0;
    virtual void startEntity(std::u16string_view name) = 0;
    virtual void endEntity(std::u16string_view name) = 0;
};

/// Receives the declarations of a document type as spans.
class NUXML_API IBufferedDeclHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40202};

    virtual void elementDecl(std::u16string_view name, std::u16string_view model) = 0;
    virtual void attributeDecl(std::u16string_view elementName, std::u16string_view attributeName,
                               std::u16string_view type, std::u16string_view mode,
                               std::u16string_view value) = 0;
    virtual void internalEntityDecl(std::u16string_view name, std::u16string_view value) = 0;
    virtual void externalEntityDecl(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId) = 0;
};

} // namespace host
