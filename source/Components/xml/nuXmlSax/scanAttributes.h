#pragma once

#include "host/runtime/format.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"

/// \file
/// The attributes of a start tag.

namespace nu {

/// Entered with the first character behind the spaces after the element's name; leaves "/" or ">"
/// current.
template <class Source> void SaxScanner<Source>::scanAttributes(TNuSAXAttributes& attributes) {
    const auto atTagEnd = [this] {
        return source_.current() == cNuSlash || source_.current() == cNuGt;
    };
    if (atTagEnd()) {
        warn(messages::spaceWithoutAttributes);
        return;
    }
    do {
        scanAttribute(attributes);
    } while (!atTagEnd() && !source_.hasEnded());
    if (source_.hasEnded()) {
        fail(messages::endInElement);
    }
}

/// Entered with the first character of the name current; leaves the first character behind the
/// spaces after the value current. Deliberate: no space is needed between attributes.
template <class Source> void SaxScanner<Source>::scanAttribute(TNuSAXAttributes& attributes) {
    // 1. Name and value, each complaining for itself.
    const Name name = scanAttributeName();
    const std::u16string_view value = scanAttributeValue();

    // 2. The attribute.
    checkName(name.qName());
    const std::size_t limit = reader_.limits_.Attributes;
    if (attributes.all().size() >= limit) {
        fail(host::formatMessage(messages::tooManyAttributes, {limit}));
    }
    TNuSAXAttribute& attribute = attributes.CreateAttribute();
    attribute.SetLevel(reader_.depth_);
    attribute.SetQName(name.start, name.end - name.start);
    attribute.SetLocalName(name.localStart, name.end - name.localStart);
    attribute.SetValue(value.data(), static_cast<host::SAXLength>(value.size()));

    // 3. What it means for the element.
    applyAttribute(attribute);

    // 4. On behind the closing quote.
    source_.ReadXmlChar();
    skipSpaces();
}

/// Leaves "=" current. Spaces around it are not allowed, but a name keeps its first part.
template <class Source> typename SaxScanner<Source>::Name SaxScanner<Source>::scanAttributeName() {
    Name name{};
    name.start = source_.currentPlace();
    name.localStart = name.start;
    for (;;) {
        source_.template readUntil<StopSet::Name>();
        const NuXmlChar current = source_.current();
        if (current == cNuColon) {
            name.localStart = source_.currentPlace() + 1;
        }
        if (current == cNuSpace || current == cNuEqual || source_.hasEnded()) {
            break;
        }
    }
    name.end = source_.currentPlace();
    if (source_.current() != cNuEqual) {
        warn(messages::equalAfterAttributeName);
        skipTo(cNuEqual);
        if (source_.hasEnded()) {
            fail(messages::endBeforeEqual);
        }
    }
    return name;
}

/// Entered with "=" current; leaves the closing quote current. Deliberate: only the double quote
/// delimits values; any other beginning is skipped up to the next one.
template <class Source> std::u16string_view SaxScanner<Source>::scanAttributeValue() {
    // 1. The opening quote.
    source_.ReadXmlChar();
    if (!source_.hasEnded() && source_.current() != cNuQuote) {
        warn(messages::quoteExpected);
        skipTo(cNuQuote);
        if (source_.hasEnded() && source_.current() != cNuQuote) {
            fail(messages::endBeforeValue);
        }
    }
    source_.ReadXmlChar();
    if (source_.hasEnded()) {
        fail(messages::endBeforeValue);
    }

    // 2. The value.
    const PNuXmlChar start = source_.currentPlace();
    if (source_.current() != cNuQuote) {
        source_.template readUntil<StopSet::Quote>();
        if (source_.hasEnded()) {
            fail(messages::endInValue);
        }
    }
    return text(start, source_.currentPlace());
}

/// Declarations open a scope; xml:space decides about the element's own white space. Both stay in
/// the list.
template <class Source> void SaxScanner<Source>::applyAttribute(const TNuSAXAttribute& attribute) {
    const std::u16string_view value = attribute.valueSpan();
    if (attribute.IsDefaultNamespace()) {
        reader_.namespaces_.AddNamespace(reader_.depth_, {}, value);
    } else if (attribute.IsNamespaceDecl()) {
        if (content() != nullptr) {
            content()->startPrefixMapping(attribute.localNameSpan(), value);
        }
        reader_.namespaces_.AddNamespace(reader_.depth_, attribute.localNameSpan(), value);
    } else if (attribute.qNameSpan() == u"xml:space") {
        if (value == u"preserve") {
            reader_.space_.set(reader_.depth_, true);
        } else if (value == u"default") {
            reader_.space_.set(reader_.depth_, false);
        }
    }
}

} // namespace nu
