#pragma once

#include <limits>

#include "host/runtime/format.h"
#include "nuXmlSax/attributesEnd.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"

/// \file
/// Start tags, end tags and the namespaces of their names.

namespace nu {

/// Entered with the first character of the name current; leaves ">" current.
template <class Source> void SaxScanner<Source>::scanStartTag() {
    // 1. One level deeper.
    source_.ResetBuffer();
    if (reader_.depth_ >= reader_.limits_.Depth) {
        fail(host::formatMessage(messages::tooDeep, {reader_.limits_.Depth}));
    }
    ++reader_.depth_;

    // 2. The name and the attributes.
    const Name name = scanStartTagName();
    if (source_.hasEnded()) {
        fail(messages::endInElementName);
    }
    checkName(name.qName());
    TNuSAXAttributes& attributes = reader_.freshAttributes();
    if (source_.current() == cNuSpace) {
        skipSpaces();
        scanAttributes(attributes);
    }

    // 3. The namespace comes after the attributes, whose declarations count for the name.
    const std::u16string_view uri = resolveNamespace(name);

    // 4. The events; an empty element ends where it starts.
    reportElementStart(uri, name, attributes);
    if (source_.current() == cNuSlash) {
        if (content() != nullptr) {
            content()->endElement(uri, name.localName(), name.qName());
        }
        closeElement();
        source_.ReadXmlChar();
    }

    // 5. The end of the tag.
    if (source_.current() != cNuGt) {
        warn(messages::greaterExpected);
        skipTo(cNuGt);
        if (source_.current() != cNuGt && source_.hasEnded()) {
            fail(messages::endOfDocument);
        }
    }
}

template <class Source>
inline void SaxScanner<Source>::reportElementStart(std::u16string_view uri, const Name& name,
                                                   TNuSAXAttributes& attributes) {
    if (content() != nullptr) {
        const AttributesEnd end(attributes);
        content()->startElement(uri, name.localName(), name.qName(), attributes);
    }
}

/// Deliberate: only a space ends a name here, not a line break or a tab; and the first character is
/// never looked at, so a name can begin with anything.
template <class Source> typename SaxScanner<Source>::Name SaxScanner<Source>::scanStartTagName() {
    const PNuXmlChar start = source_.currentPlace();
    PNuXmlChar localStart = start;
    for (;;) {
        source_.template readUntil<StopSet::Name>();
        while (source_.current() == cNuColon) {
            localStart = source_.ReadXmlChar();
        }
        const NuXmlChar current = source_.current();
        if (current == cNuSpace || current == cNuGt) {
            break;
        }
        // The look ahead comes before the test for the end: it may be what finds the end.
        if (current == cNuSlash && *source_.PeekXmlChar() == cNuGt) {
            break;
        }
        if (source_.hasEnded()) {
            break;
        }
    }
    return {start, localStart, source_.currentPlace()};
}

/// Entered with "/" current; leaves ">" current. Deliberate: the name is not compared with that of
/// the open element, and a space before ">" belongs to it.
template <class Source> void SaxScanner<Source>::scanEndTag() {
    source_.ResetBuffer();
    source_.ReadXmlChar();
    const PNuXmlChar start = source_.currentPlace();
    PNuXmlChar localStart = start;
    do {
        source_.template readUntil<StopSet::Name>();
        if (source_.current() == cNuColon) {
            localStart = source_.currentPlace() + 1;
        }
    } while (source_.current() != cNuGt && !source_.hasEnded());
    const Name name{start, localStart, source_.currentPlace()};
    checkName(name.qName());
    if (reader_.depth_ == std::numeric_limits<std::int32_t>::min()) {
        fail(messages::tooManyEnds);
    }
    reportElementEnd(name);
}

template <class Source> void SaxScanner<Source>::checkName(std::u16string_view name) {
    const std::size_t limit = reader_.limits_.NameLength;
    if (name.size() > limit) {
        fail(host::formatMessage(messages::nameTooLong, {limit}));
    }
}

template <class Source> inline void SaxScanner<Source>::reportElementEnd(const Name& name) {
    const std::u16string_view uri = resolveNamespace(name);
    if (content() != nullptr) {
        content()->endElement(uri, name.localName(), name.qName());
    }
    closeElement();
}

template <class Source> inline void SaxScanner<Source>::closeElement() {
    reader_.namespaces_.RemoveLevel(reader_.depth_);
    reader_.space_.close(reader_.depth_);
    --reader_.depth_;
}

/// The URI of an element's name: never null, empty where there is none.
template <class Source>
inline std::u16string_view SaxScanner<Source>::resolveNamespace(const Name& name) {
    if (!name.hasPrefix()) {
        const TNuSaxNamespace* const scope = reader_.namespaces_.defaultNamespace();
        return scope != nullptr ? std::u16string_view(scope->URI) : u"";
    }
    if (const TNuSaxNamespace* scope = reader_.namespaces_.GetNamespace(name.prefix())) {
        return scope->URI;
    }
    warn(host::formatMessage(messages::noNamespaceForPrefix, {name.prefix()}));
    return u"";
}

} // namespace nu
