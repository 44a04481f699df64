#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/exception.h"
#include "host/sax/BSax.h"
#include "nuXmlParser/chars.h"
#include "nuXmlSax/handler.h"

/// One attribute of a start tag: spans of the parse buffer, valid during the callback.
class NUXML_API TNuSAXAttribute {
public:
    explicit TNuSAXAttribute(TNuSAXXMLReader& reader) noexcept : reader_(&reader) {}
    /// Makes it an attribute as it stands in the buffer, which is no declaration unless classify
    /// finds out that it is.
    void set(std::int32_t level, std::u16string_view qName, std::u16string_view localName,
             std::u16string_view value, bool isKnownVerbatim) noexcept {
        level_ = level;
        isDefaultNamespace_ = false;
        isNamespaceDecl_ = false;
        isKnownVerbatim_ = isKnownVerbatim;
        qName_ = qName;
        localName_ = localName;
        value_ = value;
    }
    /// Finds out whether it is a declaration, see SetQName.
    void classify() noexcept;

    /// Stores the qualified name and classifies it: a declaration starts with the letters xmlns, in
    /// either case, followed in the buffer by ":" or, for the default namespace, "=".
    /// Reads the unit behind a name of exactly these five letters.
    void SetQName(PNuXmlChar name, host::SAXLength length) noexcept {
        qName_ = span(name, length);
        classify();
    }
    /// Stores the name without prefix, a part of the qualified name. The span is not copied.
    void SetLocalName(PNuXmlChar name, host::SAXLength length) noexcept {
        localName_ = span(name, length);
    }
    /// Stores the raw value, without its quotes. The span is not copied.
    void SetValue(PNuXmlChar value, host::SAXLength length) noexcept {
        value_ = span(value, length);
        isKnownVerbatim_ = false;
    }
    /// The depth of the element, the root being 1.
    void SetLevel(std::int32_t level) noexcept { level_ = level; }

    /// The reader whose parse it belongs to; it has to live.
    [[nodiscard]] TNuSAXXMLReader& Reader() const noexcept { return *reader_; }
    /// The depth of the element, the root being 1.
    [[nodiscard]] std::int32_t Level() const noexcept { return level_; }
    /// Whether it is "xmlns" without a prefix, in either letter case.
    [[nodiscard]] bool IsDefaultNamespace() const noexcept { return isDefaultNamespace_; }
    /// Whether it declares a namespace: "xmlns" or "xmlns:…", in either letter case.
    [[nodiscard]] bool IsNamespaceDecl() const noexcept { return isNamespaceDecl_; }
    /// Whether the value was seen to hold none of & < > ' while it was scanned. False tells
    /// nothing.
    [[nodiscard]] bool isKnownVerbatim() const noexcept { return isKnownVerbatim_; }

    /// The name as it is written, prefix included.
    [[nodiscard]] NuXmlString GetQName() const { return NuXmlString(qName_); }
    /// The name behind the last colon; empty for a default declaration.
    [[nodiscard]] NuXmlString GetLocalName() const { return NuXmlString(localNameSpan()); }
    /// The raw text between the quotes; references are not expanded.
    [[nodiscard]] NuXmlString GetValue() const { return NuXmlString(value_); }
    /// Always "CDATA".
    [[nodiscard]] NuXmlString GetType() const;
    /// "xmlns" for any declaration, otherwise the text before the local name's colon.
    [[nodiscard]] NuXmlString GetPrefix() const { return NuXmlString(prefixSpan()); }
    /// The URI of the prefix in the scopes open now; empty for declarations and unknown prefixes.
    /// Deliberate: an attribute without a prefix takes the default namespace, unlike in Namespaces
    /// in XML.
    [[nodiscard]] NuXmlString GetURIEx() const;
    /// The same as a span; null and -1 where there is none.
    void GetURI(PNuXmlChar& uri, host::SAXLength& length) const;

    /// GetQName as a span of the buffer, valid during the callback.
    [[nodiscard]] std::u16string_view qNameSpan() const noexcept { return qName_; }
    /// GetLocalName as a span of the buffer, valid during the callback.
    [[nodiscard]] std::u16string_view localNameSpan() const noexcept {
        return isDefaultNamespace_ ? std::u16string_view() : localName_;
    }
    /// GetValue as a span of the buffer, valid during the callback.
    [[nodiscard]] std::u16string_view valueSpan() const noexcept { return value_; }
    /// GetPrefix as a span, valid during the callback.
    [[nodiscard]] std::u16string_view prefixSpan() const noexcept;

private:
    /// Keeps the place also of an empty span: where a local name starts tells where the prefix
    /// ends.
    static std::u16string_view span(PNuXmlChar text, host::SAXLength length) noexcept {
        return {text, length <= 0 ? 0 : static_cast<std::size_t>(length)};
    }

    TNuSAXXMLReader* reader_;
    std::int32_t level_ = 0;
    bool isDefaultNamespace_ = false;
    bool isNamespaceDecl_ = false;
    bool isKnownVerbatim_ = false;
    std::u16string_view qName_;
    std::u16string_view localName_;
    std::u16string_view value_;
};

/// The attributes of one start tag in document order, namespace declarations included. Duplicates
/// are kept; a search finds the first. Names are compared exactly. A reference that is kept beyond
/// the callback leads to an empty list.
class NUXML_API TNuSAXAttributes
    : public TNuSAXHandlerOf<host::IBufferedAttributes, host::IAttributes> {
public:
    using TNuSAXHandlerOf::TNuSAXHandlerOf;
    ~TNuSAXAttributes() noexcept(false) override;

    /// Appends an empty attribute. The reference is valid until the next one is appended.
    TNuSAXAttribute& CreateAttribute() { return next() = TNuSAXAttribute(Reader()); }
    /// Appends an attribute that the caller sets. The reference is valid until the next one is
    /// appended.
    TNuSAXAttribute& next() {
        if (count_ == room_) [[unlikely]] {
            addRoom();
        }
        return attributes_[count_++];
    }
    /// Throws host::EListError for an index outside.
    [[nodiscard]] const TNuSAXAttribute& GetAttribute(host::SAXLength index) const {
        host::checkListIndex(index, count_);
        return attributes_[static_cast<std::size_t>(index)];
    }
    /// Empties the list; the memory stays for the next tag.
    void Clear() noexcept { count_ = 0; }
    /// All of them in document order; valid until the list changes.
    [[nodiscard]] std::span<const TNuSAXAttribute> all() const noexcept {
        return {attributes_.data(), count_};
    }

    host::SAXLength getLength() override { return static_cast<host::SAXLength>(count_); }

    // Spans
    /// The URI of the attribute's prefix, see TNuSAXAttribute::GetURIEx; null and -1 without one.
    void getURI(host::SAXLength index, PNuXmlChar& uri, host::SAXLength& length) override;
    /// The name behind the colon; empty for the declaration of the default namespace.
    void getLocalName(host::SAXLength index, PNuXmlChar& name, host::SAXLength& length) override;
    /// The name as it is written.
    void getQName(host::SAXLength index, PNuXmlChar& name, host::SAXLength& length) override;
    /// Always "CDATA", ended by a NUL character; the length is -1.
    void getType(host::SAXLength index, PNuXmlChar& type, host::SAXLength& length) override;
    /// The raw value; references are not expanded (NuXMLToStr does it).
    void getValue(host::SAXLength index, PNuXmlChar& value, host::SAXLength& length) override;
    /// The first attribute with that local name and that URI, or -1.
    host::SAXLength getIndex(PNuXmlChar uri, host::SAXLength uriLength, PNuXmlChar localName,
                             host::SAXLength localNameLength) override;
    /// The first attribute of exactly that qualified name, or -1.
    host::SAXLength getIndex(PNuXmlChar qName, host::SAXLength qNameLength) override;
    /// "CDATA" where there is such an attribute; empty, with length 0, where there is none.
    void getType(PNuXmlChar uri, host::SAXLength uriLength, PNuXmlChar localName,
                 host::SAXLength localNameLength, PNuXmlChar& type,
                 host::SAXLength& length) override;
    /// The same by qualified name.
    void getType(PNuXmlChar qName, host::SAXLength qNameLength, PNuXmlChar& type,
                 host::SAXLength& length) override;
    /// The raw value; empty, with length 0, without such an attribute.
    void getValue(PNuXmlChar uri, host::SAXLength uriLength, PNuXmlChar localName,
                  host::SAXLength localNameLength, PNuXmlChar& value,
                  host::SAXLength& length) override;
    /// The same by qualified name.
    void getValue(PNuXmlChar qName, host::SAXLength qNameLength, PNuXmlChar& value,
                  host::SAXLength& length) override;

    // Strings
    host::SAXString getURI(host::SAXLength index) override;
    host::SAXString getLocalName(host::SAXLength index) override;
    host::SAXString getQName(host::SAXLength index) override;
    host::SAXString getType(host::SAXLength index) override;
    host::SAXString getValue(host::SAXLength index) override;
    host::SAXLength getIndex(std::u16string_view uri, std::u16string_view localName) override;
    host::SAXLength getIndex(std::u16string_view qName) override;
    host::SAXString getType(std::u16string_view uri, std::u16string_view localName) override;
    host::SAXString getType(std::u16string_view qName) override;
    host::SAXString getValue(std::u16string_view uri, std::u16string_view localName) override;
    host::SAXString getValue(std::u16string_view qName) override;

    /// The first attribute with that local name and that URI, an empty URI standing for any; or -1.
    [[nodiscard]] host::SAXLength getIndexFromName(std::u16string_view uri,
                                                   std::u16string_view localName) const;
    /// The first attribute with that qualified name, or -1.
    [[nodiscard]] host::SAXLength getIndexFromQName(std::u16string_view qName) const;
    // Type or value of the attribute so found, or an empty text.
    /// "CDATA" if there is an attribute of that local name and URI; "" without one.
    [[nodiscard]] NuXmlString getTypeFromName(std::u16string_view uri,
                                              std::u16string_view localName) const;
    /// "CDATA" if there is an attribute of that qualified name; "" without one.
    [[nodiscard]] NuXmlString getTypeFromQName(std::u16string_view qName) const;
    /// The raw value of the attribute of that local name and URI; "" without one.
    [[nodiscard]] NuXmlString getValueFromName(std::u16string_view uri,
                                               std::u16string_view localName) const;
    /// The raw value of the attribute of that qualified name; "" without one.
    [[nodiscard]] NuXmlString getValueFromQName(std::u16string_view qName) const;

private:
    [[nodiscard]] NUXML_LOCAL std::u16string_view valueAt(host::SAXLength index) const;

    void addRoom();

    /// The first count_ are in use; those behind wait for the next tag.
    std::vector<TNuSAXAttribute> attributes_;
    std::size_t count_ = 0;
    std::size_t room_ = 0; ///< the size of the list, which is slow to ask for
};
