#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/com/ref.h"
#include "host/com/unknown.h"
#include "host/runtime/exception.h"
#include "host/runtime/export.h"

/// \file
/// The SAX2 interfaces in the form that passes strings, and what both forms share: locator, errors,
/// input source and exceptions. The form that passes spans of a parse buffer stands in BSax.h.

namespace host {

/// A character: a UTF-16 code unit.
using SAXChar = char16_t;
/// A text of UTF-16 code units.
using SAXString = std::u16string;
/// A length in characters; -1 where an operation says so.
using SAXLength = std::ptrdiff_t;

/// The general SAX exception.
class NUXML_API ESAXException : public Exception {
public:
    using Exception::Exception;
    ~ESAXException() override;
};

/// A feature, property or call whose name the parser knows but does not support.
class NUXML_API ESAXNotSupportedException : public ESAXException {
public:
    using ESAXException::ESAXException;
    ~ESAXNotSupportedException() override;
};

/// A feature or property whose name the parser does not know.
class NUXML_API ESAXNotRecognizedException : public ESAXException {
public:
    using ESAXException::ESAXException;
    ~ESAXNotRecognizedException() override;
};

/// Where in the document the current event stands. Valid during a parse.
class NUXML_API ILocator : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40001};

    /// The public identifier of the document, as the input source has it; "" where it has none.
    virtual SAXString getPublicId() = 0;
    /// The system identifier, which is the address of the document; "" where there is none.
    virtual SAXString getSystemId() = 0;
    /// The current line, the first being 1.
    virtual std::int64_t getLineNumber() = 0;
    /// The current column; the parser says how it counts.
    virtual std::int64_t getColumnNumber() = 0;
};

/// A fault of a document: its text and its place. Line and column are -1 where there is none.
class NUXML_API ISAXParseError : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40002};

    /// What is wrong, as a sentence in English.
    virtual SAXString getMessage() = 0;
    /// The public identifier of the document; "" where it has none.
    virtual SAXString getPublicId() = 0;
    /// The system identifier of the document; "" where it has none.
    virtual SAXString getSystemId() = 0;
    /// The line in which the fault was seen, the first being 1; -1 where there is none.
    virtual std::int64_t getLineNumber() = 0;
    /// The column in which the fault was seen; -1 where there is none.
    virtual std::int64_t getColumnNumber() = 0;
};

/// Receives the faults of a document. The error object may be kept in a host::Ref.
class NUXML_API IErrorHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40003};

    /// Something that is no fault by the rules of the parser; the parse goes on.
    virtual void warning(ISAXParseError& error) = 0;
    /// A fault after which the parse goes on.
    virtual void error(ISAXParseError& error) = 0;
    /// A fault that ends the parse: no further content follows, and the parser throws when the
    /// handler has returned.
    virtual void fatalError(ISAXParseError& error) = 0;
};

/// The attributes of one element. Indexes count from 0; an index outside raises EListError.
class NUXML_API IAttributes : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40004};

    /// How many attributes there are, namespace declarations included where the parser reports
    /// them.
    virtual SAXLength getLength() = 0;
    /// The namespace URI; "" where the attribute is in none.
    virtual SAXString getURI(SAXLength index) = 0;
    /// The name without prefix.
    virtual SAXString getLocalName(SAXLength index) = 0;
    /// The name as it is written, prefix included.
    virtual SAXString getQName(SAXLength index) = 0;
    /// The type that the document type declares; "CDATA" where nothing is declared or the parser
    /// does not look.
    virtual SAXString getType(SAXLength index) = 0;
    /// The value; the parser says whether references in it are resolved.
    virtual SAXString getValue(SAXLength index) = 0;
    /// The index of the first attribute with that name, or -1.
    virtual SAXLength getIndex(std::u16string_view uri, std::u16string_view localName) = 0;
    /// The same by qualified name.
    virtual SAXLength getIndex(std::u16string_view qName) = 0;
    /// The type of the first attribute with that name; "" without one.
    virtual SAXString getType(std::u16string_view uri, std::u16string_view localName) = 0;
    /// The same by qualified name.
    virtual SAXString getType(std::u16string_view qName) = 0;
    /// The value of the first attribute with that name; "" without one.
    virtual SAXString getValue(std::u16string_view uri, std::u16string_view localName) = 0;
    /// The same by qualified name.
    virtual SAXString getValue(std::u16string_view qName) = 0;
};

/// Receives the content of a document as strings.
class NUXML_API IContentHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40005};

    /// Comes before every other event of a parse. The locator may be kept in a host::Ref; its
    /// numbers mean something during the parse.
    virtual void setDocumentLocator(ILocator& locator) = 0;
    /// The document begins; once in a parse.
    virtual void startDocument() = 0;
    /// The document has ended; the last event of a parse that succeeds.
    virtual void endDocument() = 0;
    /// From the next element on the prefix stands for that URI; comes before the startElement that
    /// declares it. The prefix "" is the default namespace.
    virtual void startPrefixMapping(const SAXString& prefix, const SAXString& uri) = 0;
    /// The prefix loses that meaning; comes behind the endElement of the element that declares it.
    virtual void endPrefixMapping(const SAXString& prefix) = 0;
    /// An element begins. `attributes` is good during the call alone.
    virtual void startElement(const SAXString& uri, const SAXString& localName,
                              const SAXString& qName, IAttributes& attributes) = 0;
    /// An element ends; also one that is a tag by itself ("<a/>").
    virtual void endElement(const SAXString& uri, const SAXString& localName,
                            const SAXString& qName) = 0;
    /// Text between tags. One text may come in several calls, in the order of the document.
    virtual void characters(const SAXString& text) = 0;
    /// White space that the document type says means nothing; only a parser that reads document
    /// types calls it.
    virtual void ignorableWhitespace(const SAXString& text) = 0;
    /// A processing instruction; `data` begins behind the white space that follows the target. The
    /// XML declaration is none in SAX2; the parser says if it tells it all the same.
    virtual void processingInstruction(const SAXString& target, const SAXString& data) = 0;
    /// A reference to an entity that the parser does not read; the name is without "&" and ";".
    virtual void skippedEntity(const SAXString& name) = 0;
};

/// Receives notations and unparsed entities as strings.
class NUXML_API IDTDHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40006};

    /// A notation; an identifier that is not given is "".
    virtual void notationDecl(const SAXString& name, const SAXString& publicId,
                              const SAXString& systemId) = 0;
    /// An entity that is no XML; `notation` is the name of its notation.
    virtual void unparsedEntityDecl(const SAXString& name, const SAXString& publicId,
                                    const SAXString& systemId, const SAXString& notation) = 0;
};

class TStream;

/// Where a document comes from: identifiers, and a stream that the source does not own.
class NUXML_API IInputSource : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40007};

    /// The public identifier; "" where none was set. For messages and resolvers alone.
    virtual SAXString getPublicId() = 0;
    /// See getPublicId.
    virtual void setPublicId(std::u16string_view publicId) = 0;
    /// The system identifier, which is the address of the document; "" where none was set.
    virtual SAXString getSystemId() = 0;
    /// See getSystemId.
    virtual void setSystemId(std::u16string_view systemId) = 0;
    /// The name of the encoding that the stream is in; "" leaves it to the document.
    virtual SAXString getEncoding() = 0;
    /// See getEncoding.
    virtual void setEncoding(std::u16string_view encoding) = 0;
    /// The bytes of the document; null where the system identifier has to be opened instead. The
    /// stream is not the source's.
    virtual TStream* getByteStream() = 0;
    /// Sets the stream, which has to live as long as the source refers to it; null takes it away.
    virtual void setByteStream(TStream* stream) = 0;
};

/// Finds the source of an external entity; an empty handle means the parser's own way.
class NUXML_API IEntityResolver : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40008};

    /// Called before an external entity is opened.
    virtual Ref<IInputSource> resolveEntity(const SAXString& publicId,
                                            const SAXString& systemId) = 0;
};

/// A property of a reader, found by name; the derived interfaces carry its value.
class NUXML_API IProperty : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40009};

    /// The name under which the reader knows the property, a URI as a rule.
    virtual SAXString getName() = 0;
};

/// A property whose value is an interface.
class NUXML_API IInterfaceProperty : public IProperty {
public:
    using Base = IProperty;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C4000A};

    /// The value; an empty handle where nothing is set.
    virtual Ref<IUnknown> getValue() = 0;
    /// Sets the value; an empty handle takes it back. Throws ESAXNotSupportedException for an
    /// object that lacks the interface that the property is about.
    virtual void setValue(const Ref<IUnknown>& value) = 0;
};

/// Reads a document and reports it as strings. A handler that is not set costs nothing.
class NUXML_API IXMLReader : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C4000B};

    /// The state of a feature. Throws ESAXNotRecognizedException for a name that is not known and
    /// ESAXNotSupportedException where there is no answer now.
    virtual bool getFeature(std::u16string_view name) = 0;
    /// Turns a feature on or off. Throws as getFeature does, also where it cannot be changed.
    virtual void setFeature(std::u16string_view name, bool value) = 0;
    /// The property of that name, through which its value is read and set. Throws as getFeature
    /// does.
    virtual Ref<IProperty> getProperty(std::u16string_view name) = 0;
    /// The handler that was set; an empty handle without one.
    virtual Ref<IContentHandler> getContentHandler() = 0;
    /// Sets who receives the content; an empty handle for nobody. May be called during a parse and
    /// counts from the next event on.
    virtual void setContentHandler(const Ref<IContentHandler>& handler) = 0;
    /// The handler that was set; an empty handle without one.
    virtual Ref<IDTDHandler> getDTDHandler() = 0;
    /// Sets who receives notations and unparsed entities; an empty handle for nobody.
    virtual void setDTDHandler(const Ref<IDTDHandler>& handler) = 0;
    /// The resolver that was set; an empty handle without one.
    virtual Ref<IEntityResolver> getEntityResolver() = 0;
    /// Sets who finds external entities; an empty handle leaves it to the reader.
    virtual void setEntityResolver(const Ref<IEntityResolver>& resolver) = 0;
    /// The handler that was set; an empty handle without one.
    virtual Ref<IErrorHandler> getErrorHandler() = 0;
    /// Sets who receives the faults; with an empty handle a fatal one is still thrown.
    virtual void setErrorHandler(const Ref<IErrorHandler>& handler) = 0;
    /// Reads a document to its end; comes back when it is done. Throws ESAXException for a fatal
    /// fault, and what a handler throws.
    virtual void Parse(const Ref<IInputSource>& source) = 0;
    /// The same for the document at that address.
    virtual void Parse(std::u16string_view systemId) = 0;
};

} // namespace host
