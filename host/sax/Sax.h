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

    virtual SAXString getPublicId() = 0;
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

    virtual SAXString getMessage() = 0;
    virtual SAXString getPublicId() = 0;
    virtual SAXString getSystemId() = 0;
    virtual std::int64_t getLineNumber() = 0;
    virtual std::int64_t getColumnNumber() = 0;
};

/// Receives the faults of a document. The error object may be kept in a host::Ref.
class NUXML_API IErrorHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40003};

    virtual void warning(ISAXParseError& error) = 0;
    virtual void error(ISAXParseError& error) = 0;
    virtual void fatalError(ISAXParseError& error) = 0;
};

/// The attributes of one element. Indexes count from 0; an index outside raises EListError.
class NUXML_API IAttributes : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40004};

    virtual SAXLength getLength() = 0;
    virtual SAXString getURI(SAXLength index) = 0;
    virtual SAXString getLocalName(SAXLength index) = 0;
    virtual SAXString getQName(SAXLength index) = 0;
    virtual SAXString getType(SAXLength index) = 0;
    virtual SAXString getValue(SAXLength index) = 0;
    /// The index of the first attribute with that name, or -1.
    virtual SAXLength getIndex(std::u16string_view uri, std::u16string_view localName) = 0;
    virtual SAXLength getIndex(std::u16string_view qName) = 0;
    virtual SAXString getType(std::u16string_view uri, std::u16string_view localName) = 0;
    virtual SAXString getType(std::u16string_view qName) = 0;
    virtual SAXString getValue(std::u16string_view uri, std::u16string_view localName) = 0;
    virtual SAXString getValue(std::u16string_view qName) = 0;
};

/// Receives the content of a document as strings.
class NUXML_API IContentHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40005};

    virtual void setDocumentLocator(ILocator& locator) = 0;
    virtual void startDocument() = 0;
    virtual void endDocument() = 0;
    virtual void startPrefixMapping(const SAXString& prefix, const SAXString& uri) = 0;
    virtual void endPrefixMapping(const SAXString& prefix) = 0;
    virtual void startElement(const SAXString& uri, const SAXString& localName,
                              const SAXString& qName, IAttributes& attributes) = 0;
    virtual void endElement(const SAXString& uri, const SAXString& localName,
                            const SAXString& qName) = 0;
    virtual void characters(const SAXString& text) = 0;
    virtual void ignorableWhitespace(const SAXString& text) = 0;
    virtual void processingInstruction(const SAXString& target, const SAXString& data) = 0;
    virtual void skippedEntity(const SAXString& name) = 0;
};

/// Receives notations and unparsed entities as strings.
class NUXML_API IDTDHandler : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40006};

    virtual void notationDecl(const SAXString& name, const SAXString& publicId,
                              const SAXString& systemId) = 0;
    virtual void unparsedEntityDecl(const SAXString& name, const SAXString& publicId,
                                    const SAXString& systemId, const SAXString& notation) = 0;
};

class TStream;

/// Where a document comes from: identifiers, and a stream that the source does not own.
class NUXML_API IInputSource : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40007};

    virtual SAXString getPublicId() = 0;
    virtual void setPublicId(std::u16string_view publicId) = 0;
    virtual SAXString getSystemId() = 0;
    virtual void setSystemId(std::u16string_view systemId) = 0;
    virtual SAXString getEncoding() = 0;
    virtual void setEncoding(std::u16string_view encoding) = 0;
    virtual TStream* getByteStream() = 0;
    virtual void setByteStream(TStream* stream) = 0;
};

/// Finds the source of an external entity; an empty handle means the parser's own way.
class NUXML_API IEntityResolver : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40008};

    virtual Ref<IInputSource> resolveEntity(const SAXString& publicId,
                                            const SAXString& systemId) = 0;
};

/// A property of a reader, found by name; the derived interfaces carry its value.
class NUXML_API IProperty : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C40009};

    virtual SAXString getName() = 0;
};

/// A property whose value is an interface.
class NUXML_API IInterfaceProperty : public IProperty {
public:
    using Base = IProperty;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C4000A};

    virtual Ref<IUnknown> getValue() = 0;
    virtual void setValue(const Ref<IUnknown>& value) = 0;
};

/// Reads a document and reports it as strings. A handler that is not set costs nothing.
class NUXML_API IXMLReader : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x6B1F2C7E40A94D11, 0xA1B39E5D70C4000B};

    virtual bool getFeature(std::u16string_view name) = 0;
    virtual void setFeature(std::u16string_view name, bool value) = 0;
    virtual Ref<IProperty> getProperty(std::u16string_view name) = 0;
    virtual Ref<IContentHandler> getContentHandler() = 0;
    virtual void setContentHandler(const Ref<IContentHandler>& handler) = 0;
    virtual Ref<IDTDHandler> getDTDHandler() = 0;
    virtual void setDTDHandler(const Ref<IDTDHandler>& handler) = 0;
    virtual Ref<IEntityResolver> getEntityResolver() = 0;
    virtual void setEntityResolver(const Ref<IEntityResolver>& resolver) = 0;
    virtual Ref<IErrorHandler> getErrorHandler() = 0;
    virtual void setErrorHandler(const Ref<IErrorHandler>& handler) = 0;
    virtual void Parse(const Ref<IInputSource>& source) = 0;
    virtual void Parse(std::u16string_view systemId) = 0;
};

} // namespace host
