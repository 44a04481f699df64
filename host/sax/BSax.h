#pragma once

#include "host/sax/Sax.h"

/// \file
/// The buffered SAX2 interfaces: names, values and text are spans of the parser's buffer, valid
/// only during the call that passes them. Who wants to keep one makes a string of it.

namespace host {

/// The attributes of one element as spans of the parse buffer. Indexes count from 0; an index
/// outside raises EListError. The spans are valid as long as the callback that got the list.
class NUXML_API IBufferedAttributes : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40101};

    virtual SAXLength getLength() = 0;
    /// The span of the namespace URI; null and -1 where the attribute has none.
    virtual void getURI(SAXLength index, const SAXChar*& uri, SAXLength& length) = 0;
    virtual void getLocalName(SAXLength index, const SAXChar*& localName, SAXLength& length) = 0;
    virtual void getQName(SAXLength index, const SAXChar*& qName, SAXLength& length) = 0;
    /// The type, ended by a NUL character; the length is -1.
    virtual void getType(SAXLength index, const SAXChar*& type, SAXLength& length) = 0;
    virtual void getValue(SAXLength index, const SAXChar*& value, SAXLength& length) = 0;
    /// The index of the first attribute with that name, or -1.
    virtual SAXLength getIndex(const SAXChar* uri, SAXLength uriLength, const SAXChar* localName,
                               SAXLength localNameLength) = 0;
    virtual SAXLength getIndex(const SAXChar* qName, SAXLength qNameLength) = 0;
    /// The type or value of the attribute with that name; empty, with length 0, where there is
    /// none.
    virtual void getType(const SAXChar* uri, SAXLength uriLength, const SAXChar* localName,
                         SAXLength localNameLength, const SAXChar*& type, SAXLength& length) = 0;
    virtual void getType(const SAXChar* qName, SAXLength qNameLength, const SAXChar*& type,
                         SAXLength& length) = 0;
    virtual void getValue(const SAXChar* uri, SAXLength uriLength, const SAXChar* localName,
                          SAXLength localNameLength, const SAXChar*& value, SAXLength& length) = 0;
    virtual void getValue(const SAXChar* qName, SAXLength qNameLength, const SAXChar*& value,
                          SAXLength& length) = 0;
};

/// Receives the content of a document as spans.
class NUXML_API IBufferedContentHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40102};

    /// The locator may be kept in a host::Ref; its numbers mean something during the parse.
    virtual void setDocumentLocator(ILocator& locator) = 0;
    virtual void startDocument() = 0;
    virtual void endDocument() = 0;
    virtual void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) = 0;
    virtual void endPrefixMapping(std::u16string_view prefix) = 0;
    virtual void startElement(std::u16string_view uri, std::u16string_view localName,
                              std::u16string_view qName, IBufferedAttributes& attributes) = 0;
    virtual void endElement(std::u16string_view uri, std::u16string_view localName,
                            std::u16string_view qName) = 0;
    virtual void characters(std::u16string_view text) = 0;
    virtual void ignorableWhitespace(std::u16string_view text) = 0;
    virtual void processingInstruction(std::u16string_view target, std::u16string_view data) = 0;
    virtual void skippedEntity(std::u16string_view name) = 0;
};

/// Receives notations and unparsed entities as spans.
class NUXML_API IBufferedDTDHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40103};

    virtual void notationDecl(std::u16string_view name, std::u16string_view publicId,
                              std::u16string_view systemId) = 0;
    virtual void unparsedEntityDecl(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId, std::u16string_view notation) = 0;
};

/// Reads a document and reports it as spans.
class NUXML_API IBufferedXMLReader : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40104};

    virtual bool getFeature(std::u16string_view name) = 0;
    virtual void setFeature(std::u16string_view name, bool value) = 0;
    virtual Ref<IProperty> getProperty(std::u16string_view name) = 0;
    virtual Ref<IBufferedContentHandler> getContentHandler() = 0;
    virtual void setContentHandler(const Ref<IBufferedContentHandler>& handler) = 0;
    virtual Ref<IBufferedDTDHandler> getDTDHandler() = 0;
    virtual void setDTDHandler(const Ref<IBufferedDTDHandler>& handler) = 0;
    virtual Ref<IEntityResolver> getEntityResolver() = 0;
    virtual void setEntityResolver(const Ref<IEntityResolver>& resolver) = 0;
    virtual Ref<IErrorHandler> getErrorHandler() = 0;
    virtual void setErrorHandler(const Ref<IErrorHandler>& handler) = 0;
    virtual void Parse(const Ref<IInputSource>& source) = 0;
    virtual void Parse(std::u16string_view textOrFileName) = 0;
};

} // namespace host
