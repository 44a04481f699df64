#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/com/implements.h"
#include "host/sax/BSax.h"
#include "host/sax/BSaxExt.h"

/// \file
/// Ready-made parts of SAX2: the error object, the input source, handlers that do nothing, and the
/// registry of vendors.

namespace host {

/// A fault of a document as a counted object.
class NUXML_API TSAXParseError final : public Implements<ISAXParseError> {
public:
    TSAXParseError(std::u16string_view message, std::u16string_view publicId,
                   std::u16string_view systemId, std::int64_t line, std::int64_t column);
    ~TSAXParseError() override;

    SAXString getMessage() override { return message_; }
    SAXString getPublicId() override { return publicId_; }
    SAXString getSystemId() override { return systemId_; }
    std::int64_t getLineNumber() override { return line_; }
    std::int64_t getColumnNumber() override { return column_; }

private:
    SAXString message_;
    SAXString publicId_;
    SAXString systemId_;
    std::int64_t line_;
    std::int64_t column_;
};

/// An input source over a stream of the caller's, which must outlive it.
class NUXML_API TInputSource final : public Implements<IInputSource> {
public:
    explicit TInputSource(TStream* stream = nullptr) noexcept : stream_(stream) {}
    ~TInputSource() override;

    SAXString getPublicId() override { return publicId_; }
    void setPublicId(std::u16string_view publicId) override { publicId_ = publicId; }
    SAXString getSystemId() override { return systemId_; }
    void setSystemId(std::u16string_view systemId) override { systemId_ = systemId; }
    SAXString getEncoding() override { return encoding_; }
    void setEncoding(std::u16string_view encoding) override { encoding_ = encoding; }
    TStream* getByteStream() override { return stream_; }
    void setByteStream(TStream* stream) override { stream_ = stream; }

private:
    SAXString publicId_;
    SAXString systemId_;
    SAXString encoding_;
    TStream* stream_;
};

/// A handler of everything that does nothing: derive from it and override what you want to see.
class NUXML_API TBufferedDefaultHandler
    : public Implements<IBufferedContentHandler, IBufferedLexicalHandler, IErrorHandler> {
public:
    ~TBufferedDefaultHandler() override;

    void setDocumentLocator(ILocator& locator) override;
    void startDocument() override;
    void endDocument() override;
    void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) override;
    void endPrefixMapping(std::u16string_view prefix) override;
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void ignorableWhitespace(std::u16string_view text) override;
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;
    void skippedEntity(std::u16string_view name) override;
    void comment(std::u16string_view text) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(std::u16string_view name, std::u16string_view publicId,
                  std::u16string_view systemId) override;
    void endDTD() override;
    void startEntity(std::u16string_view name) override;
    void endEntity(std::u16string_view name) override;
    void warning(ISAXParseError& error) override;
    void error(ISAXParseError& error) override;
    void fatalError(ISAXParseError& error) override;
};

/// A parser as an application finds it: by the vendor's description. A reader that a vendor does
/// not offer is an empty handle.
class NUXML_API TSAXVendor {
public:
    TSAXVendor() = default;
    TSAXVendor(const TSAXVendor&) = delete;
    TSAXVendor& operator=(const TSAXVendor&) = delete;
    virtual ~TSAXVendor();

    /// The name by which applications ask for the vendor; the same at every call.
    [[nodiscard]] virtual SAXString Description() const = 0;
    /// A new reader of the string form.
    virtual Ref<IXMLReader> XMLReader() = 0;
    /// A new reader of the buffered form.
    virtual Ref<IBufferedXMLReader> BufferedXMLReader() = 0;
};

/// Puts a vendor into the registry, which does not own it. Registering it again changes nothing.
NUXML_API void RegisterSAXVendor(TSAXVendor& vendor);
/// Takes a vendor out of the registry; one that is not there is no fault. When no vendor with that
/// description is left and it was the default, there is no default any more.
NUXML_API void UnregisterSAXVendor(const TSAXVendor& vendor);
/// The vendor with that description, or null. The latest registered wins.
NUXML_API TSAXVendor* FindSAXVendor(std::u16string_view description);
/// The registered vendors, oldest first.
NUXML_API std::vector<TSAXVendor*> RegisteredSAXVendors();
/// The description of the vendor that applications get when they name none; may be empty.
NUXML_API SAXString DefaultSAXVendor();
/// Changes the default; the vendor need not be registered yet.
NUXML_API void SetDefaultSAXVendor(std::u16string_view description);

/// A new buffered reader of the named vendor, or of the default vendor when the name is empty.
/// Throws ESAXException when there is no such vendor or it offers none.
NUXML_API Ref<IBufferedXMLReader> CreateBufferedXMLReader(std::u16string_view vendor = {});

} // namespace host
