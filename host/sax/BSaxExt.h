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

    /// What stands between "<!--" and "-->".
    virtual void comment(std::u16string_view text) = 0;
    /// The text that follows, up to endCDATA, stands in a CDATA section.
    virtual void startCDATA() = 0;
    /// The end of the CDATA section.
    virtual void endCDATA() = 0;
    /// A document type declaration begins; an identifier that is not given is empty.
    virtual void startDTD(std::u16string_view name, std::u16string_view publicId,
                          std::u16string_view systemId) = 0;
    /// The end of the document type declaration.
    virtual void endDTD() = 0;
    /// What follows, up to endEntity, comes from that entity. A parser that expands no entities
    /// never calls it.
    virtual void startEntity(std::u16string_view name) = 0;
    /// The end of the entity.
    virtual void endEntity(std::u16string_view name) = 0;
};

/// Receives the declarations of a document type as spans.
class NUXML_API IBufferedDeclHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40202};

    /// The declaration of an element; `model` is its content model, with white space taken out.
    virtual void elementDecl(std::u16string_view name, std::u16string_view model) = 0;
    /// The declaration of one attribute: its type, how its default is meant ("#IMPLIED",
    /// "#REQUIRED", "#FIXED" or empty), and the default.
    virtual void attributeDecl(std::u16string_view elementName, std::u16string_view attributeName,
                               std::u16string_view type, std::u16string_view mode,
                               std::u16string_view value) = 0;
    /// An entity with its replacement text; a parameter entity has a "%" before its name.
    virtual void internalEntityDecl(std::u16string_view name, std::u16string_view value) = 0;
    /// An entity that stands elsewhere; `publicId` is empty where none is given.
    virtual void externalEntityDecl(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId) = 0;
};

} // namespace host
