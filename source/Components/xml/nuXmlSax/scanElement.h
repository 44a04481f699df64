#pragma once

#include "host/runtime/format.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"

/// \file
/// Start tags, end tags and the namespaces of their names.

namespace nu {

/// Entered with the first character of the name current; leaves ">" current.
template <class Source> inline void SaxScanner<Source>::scanStartTag() {
    // 1. One level deeper; white space is treated as in the parent until an attribute says more.
    source_.ResetBuffer();
    ++reader_.depth_;
    reader_.preserveSpace_.push_back(preservesSpace());

    // 2. The name and the attributes: as a whole where they are plain, else step by step.
    Name name{source_.currentPlace(), nullptr, nullptr};
    TNuSAXAttributes& attributes = reader_.freshAttributes();
    PNuXmlChar end = scanPlainStartTag(name, attributes);
    while (end == nullptr && source_.extendWindow()) {
        // Not plain, or not all there: either way more text is needed.
        attributes.Clear();
        name.start = source_.currentPlace();
        end = scanPlainStartTag(name, attributes);
    }
    if (end != nullptr) {
        applyPlainAttributes(attributes);
        source_.moveTo(end);
        // Deliberate: `<a />` draws this warning; a space is taken for the promise of an attribute.
        if (*name.end == cNuSpace && attributes.getLength() == 0) {
            warn(messages::spaceWithoutAttributes);
        }
    } else {
        attributes.Clear();
        name = scanStartTagName();
        if (source_.hasEnded()) {
            fail(messages::endInElementName);
        }
        if (source_.current() == cNuSpace) {
            skipSpaces();
            scanAttributes(attributes);
        }
    }

    // 3. The namespace comes after the attributes, whose declarations count for the name.
    const std::u16string_view uri = resolveNamespace(name);

    // 4. The events; an empty element ends where it starts.
    if (content() != nullptr) {
        content()->startElement(uri, name.localName(), name.qName(), attributes);
    }
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
template <class Source> inline void SaxScanner<Source>::scanEndTag() {
    source_.ResetBuffer();
    Name name{};
    PNuXmlChar end = scanPlainEndTag(source_.currentPlace(), name);
    while (end == nullptr && source_.extendWindow()) {
        end = scanPlainEndTag(source_.currentPlace(), name);
    }
    if (end != nullptr) {
        source_.moveTo(end);
    } else {
        name = scanEndTagName();
    }
    const std::u16string_view uri = resolveNamespace(name);
    if (content() != nullptr) {
        content()->endElement(uri, name.localName(), name.qName());
    }
    closeElement();
}

template <class Source> typename SaxScanner<Source>::Name SaxScanner<Source>::scanEndTagName() {
    source_.ReadXmlChar();
    const PNuXmlChar start = source_.currentPlace();
    PNuXmlChar localStart = start;
    do {
        source_.template readUntil<StopSet::Name>();
        if (source_.current() == cNuColon) {
            localStart = source_.currentPlace() + 1;
        }
    } while (source_.current() != cNuGt && !source_.hasEnded());
    return {start, localStart, source_.currentPlace()};
}

template <class Source> inline void SaxScanner<Source>::closeElement() {
    reader_.namespaces_.RemoveLevel(reader_.depth_);
    --reader_.depth_;
    // A surplus end tag finds nothing to take away.
    if (!reader_.preserveSpace_.empty()) {
        reader_.preserveSpace_.pop_back();
    }
}

/// The URI of an element's name: never null, empty where there is none.
template <class Source>
inline std::u16string_view SaxScanner<Source>::resolveNamespace(const Name& name) {
    const std::u16string_view prefix = name.hasPrefix() ? name.prefix() : std::u16string_view();
    if (const TNuSaxNamespace* scope = reader_.namespaces_.GetNamespace(prefix)) {
        return scope->URI;
    }
    if (name.hasPrefix()) {
        warn(host::formatMessage(messages::noNamespaceForPrefix, {prefix}));
    }
    return u"";
}

} // namespace nu
