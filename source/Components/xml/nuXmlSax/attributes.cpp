#include "nuXmlSax/attributes.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlParser/namespaceNames.h"
#include "nuXmlSax/namespaceList.h"
#include "nuXmlSax/reader.h"

namespace {

constexpr std::u16string_view attributeType = u"CDATA";

std::u16string_view span(PNuXmlChar text, host::SAXLength length) noexcept {
    return {text, length <= 0 ? 0 : static_cast<std::size_t>(length)};
}

void put(std::u16string_view source, PNuXmlChar& text, host::SAXLength& length) noexcept {
    text = source.data();
    length = static_cast<host::SAXLength>(source.size());
}

/// Compares letter by letter and stops at the first difference, so that a short name at the end of
/// the buffer is not read past.
bool startsLikeDeclaration(PNuXmlChar name, bool isExact) noexcept {
    for (const NuXmlChar letter : nu::declarationPrefix) {
        const auto upper = static_cast<NuXmlChar>(letter - (u'a' - u'A'));
        if (*name != letter && (isExact || *name != upper)) {
            return false;
        }
        ++name;
    }
    return true;
}

} // namespace

void TNuSAXAttribute::classify() noexcept {
    isDefaultNamespace_ = false;
    isNamespaceDecl_ = false;
    const PNuXmlChar name = qName_.data();
    if (qName_.size() < nu::declarationPrefix.size() ||
        !startsLikeDeclaration(name, reader_->IsBehindStage())) {
        return;
    }
    // Deliberate: the unit behind the letters is looked up in the buffer even where the name ends
    // before it. That is how a bare xmlns is known, and why `xmlns =` declares nothing.
    const NuXmlChar behind = name[nu::declarationPrefix.size()];
    isDefaultNamespace_ = behind == cNuEqual;
    isNamespaceDecl_ = isDefaultNamespace_ || behind == cNuColon;
}

NuXmlString TNuSAXAttribute::GetType() const { return NuXmlString(attributeType); }

std::u16string_view TNuSAXAttribute::prefixSpan() const noexcept {
    if (isNamespaceDecl_) {
        return nu::declarationPrefix;
    }
    const bool hasColon = localName_.data() > qName_.data();
    return hasColon
               ? qName_.substr(0, static_cast<std::size_t>(localName_.data() - qName_.data()) - 1)
               : std::u16string_view();
}

NuXmlString TNuSAXAttribute::GetURIEx() const {
    PNuXmlChar uri = nullptr;
    host::SAXLength length = 0;
    GetURI(uri, length);
    return NuXmlString(span(uri, length));
}

void TNuSAXAttribute::GetURI(PNuXmlChar& uri, host::SAXLength& length) const {
    const TNuSaxNamespace* scope =
        isNamespaceDecl_ ? nullptr : reader_->Namespaces().GetNamespace(prefixSpan());
    if (scope == nullptr) {
        uri = nullptr;
        length = -1;
    } else {
        put(scope->URI, uri, length);
    }
}

TNuSAXAttributes::~TNuSAXAttributes() noexcept(false) = default;

void TNuSAXAttributes::addRoom() {
    constexpr std::size_t leastRoom = 8;
    attributes_.resize(std::max(leastRoom, 2 * count_), TNuSAXAttribute(Reader()));
    room_ = attributes_.size();
}

void TNuSAXAttributes::getURI(host::SAXLength index, PNuXmlChar& uri, host::SAXLength& length) {
    GetAttribute(index).GetURI(uri, length);
}

void TNuSAXAttributes::getLocalName(host::SAXLength index, PNuXmlChar& name,
                                    host::SAXLength& length) {
    put(GetAttribute(index).localNameSpan(), name, length);
}

void TNuSAXAttributes::getQName(host::SAXLength index, PNuXmlChar& name, host::SAXLength& length) {
    put(GetAttribute(index).qNameSpan(), name, length);
}

void TNuSAXAttributes::getType(host::SAXLength index, PNuXmlChar& type, host::SAXLength& length) {
    host::checkListIndex(index, count_);
    type = attributeType.data();
    length = -1;
}

void TNuSAXAttributes::getValue(host::SAXLength index, PNuXmlChar& value, host::SAXLength& length) {
    put(GetAttribute(index).valueSpan(), value, length);
}

host::SAXLength TNuSAXAttributes::getIndex(PNuXmlChar uri, host::SAXLength uriLength,
                                           PNuXmlChar localName, host::SAXLength localNameLength) {
    return getIndexFromName(span(uri, uriLength), span(localName, localNameLength));
}

host::SAXLength TNuSAXAttributes::getIndex(PNuXmlChar qName, host::SAXLength qNameLength) {
    return getIndexFromQName(span(qName, qNameLength));
}

void TNuSAXAttributes::getType(PNuXmlChar uri, host::SAXLength uriLength, PNuXmlChar localName,
                               host::SAXLength localNameLength, PNuXmlChar& type,
                               host::SAXLength& length) {
    const auto index = getIndex(uri, uriLength, localName, localNameLength);
    put(index < 0 ? std::u16string_view() : attributeType, type, length);
}

void TNuSAXAttributes::getType(PNuXmlChar qName, host::SAXLength qNameLength, PNuXmlChar& type,
                               host::SAXLength& length) {
    const auto index = getIndex(qName, qNameLength);
    put(index < 0 ? std::u16string_view() : attributeType, type, length);
}

void TNuSAXAttributes::getValue(PNuXmlChar uri, host::SAXLength uriLength, PNuXmlChar localName,
                                host::SAXLength localNameLength, PNuXmlChar& value,
                                host::SAXLength& length) {
    put(valueAt(getIndex(uri, uriLength, localName, localNameLength)), value, length);
}

void TNuSAXAttributes::getValue(PNuXmlChar qName, host::SAXLength qNameLength, PNuXmlChar& value,
                                host::SAXLength& length) {
    put(valueAt(getIndex(qName, qNameLength)), value, length);
}

host::SAXString TNuSAXAttributes::getURI(host::SAXLength index) {
    return GetAttribute(index).GetURIEx();
}

host::SAXString TNuSAXAttributes::getLocalName(host::SAXLength index) {
    return GetAttribute(index).GetLocalName();
}

host::SAXString TNuSAXAttributes::getQName(host::SAXLength index) {
    return GetAttribute(index).GetQName();
}

host::SAXString TNuSAXAttributes::getType(host::SAXLength index) {
    return GetAttribute(index).GetType();
}

host::SAXString TNuSAXAttributes::getValue(host::SAXLength index) {
    return GetAttribute(index).GetValue();
}

host::SAXLength TNuSAXAttributes::getIndex(std::u16string_view uri, std::u16string_view localName) {
    return getIndexFromName(uri, localName);
}

host::SAXLength TNuSAXAttributes::getIndex(std::u16string_view qName) {
    return getIndexFromQName(qName);
}

host::SAXString TNuSAXAttributes::getType(std::u16string_view uri, std::u16string_view localName) {
    return getTypeFromName(uri, localName);
}

host::SAXString TNuSAXAttributes::getType(std::u16string_view qName) {
    return getTypeFromQName(qName);
}

host::SAXString TNuSAXAttributes::getValue(std::u16string_view uri, std::u16string_view localName) {
    return getValueFromName(uri, localName);
}

host::SAXString TNuSAXAttributes::getValue(std::u16string_view qName) {
    return getValueFromQName(qName);
}

host::SAXLength TNuSAXAttributes::getIndexFromName(std::u16string_view uri,
                                                   std::u16string_view localName) const {
    for (std::size_t index = 0; index < count_; ++index) {
        const TNuSAXAttribute& attribute = attributes_[index];
        if (attribute.localNameSpan() == localName &&
            (uri.empty() || attribute.GetURIEx() == uri)) {
            return static_cast<host::SAXLength>(index);
        }
    }
    return -1;
}

host::SAXLength TNuSAXAttributes::getIndexFromQName(std::u16string_view qName) const {
    for (std::size_t index = 0; index < count_; ++index) {
        if (attributes_[index].qNameSpan() == qName) {
            return static_cast<host::SAXLength>(index);
        }
    }
    return -1;
}

NuXmlString TNuSAXAttributes::getTypeFromName(std::u16string_view uri,
                                              std::u16string_view localName) const {
    return getIndexFromName(uri, localName) < 0 ? NuXmlString() : NuXmlString(attributeType);
}

NuXmlString TNuSAXAttributes::getTypeFromQName(std::u16string_view qName) const {
    return getIndexFromQName(qName) < 0 ? NuXmlString() : NuXmlString(attributeType);
}

NuXmlString TNuSAXAttributes::getValueFromName(std::u16string_view uri,
                                               std::u16string_view localName) const {
    return NuXmlString(valueAt(getIndexFromName(uri, localName)));
}

NuXmlString TNuSAXAttributes::getValueFromQName(std::u16string_view qName) const {
    return NuXmlString(valueAt(getIndexFromQName(qName)));
}

std::u16string_view TNuSAXAttributes::valueAt(host::SAXLength index) const {
    return index < 0 ? std::u16string_view()
                     : attributes_[static_cast<std::size_t>(index)].valueSpan();
}
