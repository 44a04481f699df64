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

    /// How many attributes there are, namespace declarations included where the parser reports
    /// them.
    virtual SAXLength getLength() = 0;
    /// The span of the namespace URI; null and -1 where the attribute has none.
    virtual void getURI(SAXLength index, const SAXChar*& uri, SAXLength& length) = 0;
    /// The span of the name without prefix.
    virtual void getLocalName(SAXLength index, const SAXChar*& localName, SAXLength& length) = 0;
    /// The span of the name as it is written, prefix included.
    virtual void getQName(SAXLength index, const SAXChar*& qName, SAXLength& length) = 0;
    /// The type, ended by a NUL character; the length is -1.
    virtual void getType(SAXLength index, const SAXChar*& type, SAXLength& length) = 0;
    /// The span of the value; the parser says whether references in it are resolved.
    virtual void getValue(SAXLength index, const SAXChar*& value, SAXLength& length) = 0;
    /// The index of the first attribute with that name, or -1.
    virtual SAXLength getIndex(const SAXChar* uri, SAXLength uriLength, const SAXChar* localName,
                               SAXLength localNameLength) = 0;
    /// The same by qualified name.
    virtual SAXLength getIndex(const SAXChar* qName, SAXLength qNameLength) = 0;
    /// The type or value of the attribute with that name; empty, with length 0, where there is
    /// none.
    virtual void getType(const SAXChar* uri, SAXLength uriLength, const SAXChar* localName,
                         SAXLength localNameLength, const SAXChar*& type, SAXLength& length) = 0;
    /// The type by qualified name.
    virtual void getType(const SAXChar* qName, SAXLength qNameLength, const SAXChar*& type,
                         SAXLength& length) = 0;
    /// The value by namespace URI and local name; empty, with length 0, without such an attribute.
    virtual void getValue(const SAXChar* uri, SAXLength uriLength, const SAXChar* localName,
                          SAXLength localNameLength, const SAXChar*& value, SAXLength& length) = 0;
    /// The value by qualified name.
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
    /// The document begins; once in a parse.
    virtual void startDocument() = 0;
    /// The document has ended; the last event of a parse that succeeds.
    virtual void endDocument() = 0;
    /// From the next element on the prefix stands for that URI; comes before the startElement that
    /// declares it. The prefix "" is the default namespace.
    virtual void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) = 0;
    /// The prefix loses that meaning; comes behind the endElement of the element that declares it.
    virtual void endPrefixMapping(std::u16string_view prefix) = 0;
    /// An element begins. The attributes and the spans in them are good during the call alone.
    virtual void startElement(std::u16string_view uri, std::u16string_view localName,
                              std::u16string_view qName, IBufferedAttributes& attributes) = 0;
    /// An element ends; also one that is a tag by itself ("<a/>").
    virtual void endElement(std::u16string_view uri, std::u16string_view localName,
                            std::u16string_view qName) = 0;
    /// Text between tags. One text may come in several calls, in the order of the document.
    virtual void characters(std::u16string_view text) = 0;
    /// White space that the document type says means nothing; only a parser that reads document
    /// types calls it.
    virtual void ignorableWhitespace(std::u16string_view text) = 0;
    /// A processing instruction; `data` begins behind the white space that follows the target.
    virtual void processingInstruction(std::u16string_view target, std::u16string_view data) = 0;
    /// A reference to an entity that the parser does not read; the name is without "&" and ";".
    virtual void skippedEntity(std::u16string_view name) = 0;
};

/// Receives notations and unparsed entities as spans.
class NUXML_API IBufferedDTDHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40103};

    /// A notation; an identifier that is not given is empty.
    virtual void notationDecl(std::u16string_view name, std::u16string_view publicId,
                              std::u16string_view systemId) = 0;
    /// An entity that is no XML; `notation` is the name of its notation.
    virtual void unparsedEntityDecl(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId, std::u16string_view notation) = 0;
};

/// Reads a document and reports it as spans.
class NUXML_API IBufferedXMLReader : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40104};

    /// The state of a feature. Throws ESAXNotRecognizedException or ESAXNotSupportedException for a
    /// name that the reader does not know or has no answer for.
    virtual bool getFeature(std::u16string_view name) = 0;
    /// Turns a feature on or off. Throws as getFeature does, also where it cannot be changed.
    virtual void setFeature(std::u16string_view name, bool value) = 0;
    /// The property of that name, through which its value is read and set. Throws as getFeature
    /// does.
    virtual Ref<IProperty> getProperty(std::u16string_view name) = 0;
    /// The handler that was set; an empty handle without one.
    virtual Ref<IBufferedContentHandler> getContentHandler() = 0;
    /// Sets who receives the content; an empty handle for nobody.
    virtual void setContentHandler(const Ref<IBufferedContentHandler>& handler) = 0;
    /// The handler that was set; an empty handle without one.
    virtual Ref<IBufferedDTDHandler> getDTDHandler() = 0;
    /// Sets who receives notations and unparsed entities; an empty handle for nobody.
    virtual void setDTDHandler(const Ref<IBufferedDTDHandler>& handler) = 0;
    /// The resolver that was set; an empty handle without one.
    virtual Ref<IEntityResolver> getEntityResolver() = 0;
    /// Sets who finds external entities; an empty handle leaves it to the reader.
    virtual void setEntityResolver(const Ref<IEntityResolver>& resolver) = 0;
    /// The handler that was set; an empty handle without one.
    virtual Ref<IErrorHandler> getErrorHandler() = 0;
    /// Sets who receives the faults; with an empty handle a fatal one is still thrown.
    virtual void setErrorHandler(const Ref<IErrorHandler>& handler) = 0;
    /// Reads the document of a source to its end; comes back when it is done. Throws ESAXException
    /// for a fatal fault.
    virtual void Parse(const Ref<IInputSource>& source) = 0;
    /// The same for XML text or the name of a file; the reader says how it tells one from the
    /// other.
    virtual void Parse(std::u16string_view textOrFileName) = 0;
};

} // namespace host
