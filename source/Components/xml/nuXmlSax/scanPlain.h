#pragma once

#include "nuXmlParser/textCounter.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"

/// \file
/// Content as nearly all documents have it, scanned with one pointer in a register.
///
/// The step-by-step scanners move their source with every read, and each read waits for the last.
/// Tags that are written as the standard wants them, with text or white space between, need no such
/// care: these scanners look ahead without moving, take a tag or a text as a whole, and give up,
/// with nothing done, at the first thing that is not plain or comes near the end of the text at
/// hand. What they take means the same, event by event and position by position, to the
/// step-by-step scanners.

namespace nu {

/// Entered with any character current; leaves the first "<" or ">" current that is not plain.
template <class Source> void SaxScanner<Source>::scanPlainContent() {
    PNuXmlChar place = source_.currentPlace();
    bool isTag = *place == cNuLt;
    if ((!isTag && *place != cNuGt) || (isTag && place == source_.LastPtr())) {
        return;
    }
    // Behind a tag comes text, and behind text, which does not end with the input, a tag.
    for (;; isTag = !isTag) {
        PNuXmlChar next = nullptr;
        if (!isTag) {
            next = scanPlainText(place);
        } else if (place[1] == cNuSlash) {
            next = scanPlainEndTag(place);
        } else {
            next = scanPlainStartTag(place);
        }
        if (next == nullptr) {
            source_.moveTo(place);
            return;
        }
        place = next;
    }
}

/// The first solid character, or the end of the input, from `place` on, which is not the last one.
/// Nearly always it is the one behind a single space.
template <class Source> inline PNuXmlChar SaxScanner<Source>::findSolid(PNuXmlChar place) {
    return *place == cNuSpace && place[1] > cNuSpace
               ? place + 1
               : source_.template findFrom<StopSet::Solid>(place);
}

/// From the ">" of a tag over text, white space or nothing to the "<" behind it, whose place is the
/// result; null where that is not plain.
template <class Source> inline PNuXmlChar SaxScanner<Source>::scanPlainText(PNuXmlChar tagEnd) {
    // 1. The character behind a tag is read raw. The first solid one tells what follows.
    const PNuXmlChar last = source_.LastPtr();
    const PNuXmlChar start = tagEnd + 1;
    if (tagEnd == last || start == last || reader_.depth_ < 1 ||
        (*start < cNuSpace && *start != TextCounter::lineFeed)) {
        return nullptr;
    }
    const PNuXmlChar solid = *start > cNuSpace || reader_.space_.isPreserved()
                                 ? start
                                 : source_.template findFrom<StopSet::Solid>(start);
    if (*solid == cNuLt && solid != last && !isInlineSpace(start, solid)) {
        source_.countRaw(start);
        if (solid != start) {
            source_.releaseBefore(start);
        }
        return solid;
    }

    // 2. Text. A ">" right behind a tag is none.
    const PNuXmlChar end = source_.template findFrom<StopSet::Less>(solid);
    if (*start == cNuGt || *end != cNuLt || end == last) {
        return nullptr;
    }
    source_.countRaw(start);
    source_.releaseBefore(start);
    source_.moveTo(end);
    if (content() != nullptr) {
        content()->characters(text(start, end));
    }
    return end;
}

/// Takes the start tag at `less` and gives the place of its ">"; null where it is not plain.
template <class Source> inline PNuXmlChar SaxScanner<Source>::scanPlainStartTag(PNuXmlChar less) {
    // 1. Name, attributes and end, or nothing.
    Name name{};
    name.start = less + 1;
    TNuSAXAttributes& attributes = reader_.freshAttributes();
    hasMeaningfulAttribute_ = false;
    // What may be more than the limits allow is looked at step by step.
    const PNuXmlChar end = findPlainTagEnd(name, attributes);
    if (end == nullptr || reader_.depth_ >= reader_.limits_.Depth || !isHarmless(name.start, end)) {
        attributes.Clear();
        return nullptr;
    }

    // 2. What the attributes mean, then the namespace of the name.
    ++reader_.depth_;
    source_.releaseBefore(name.start);
    if (hasMeaningfulAttribute_) {
        applyPlainAttributes(attributes);
    }
    source_.moveTo(end);
    if (*name.end == cNuSlash) {
        source_.countPeek(); // whether the name ends there shows only behind it
    }
    if (*name.end == cNuSpace && attributes.all().empty()) {
        warn(messages::spaceWithoutAttributes);
    }
    const std::u16string_view uri = resolveNamespace(name);

    // 3. The events; an empty element ends where it starts.
    reportElementStart(uri, name, attributes);
    if (*end != cNuSlash) {
        return end;
    }
    if (content() != nullptr) {
        content()->endElement(uri, name.localName(), name.qName());
    }
    closeElement();
    return end + 1;
}

/// Looks at the start tag whose name begins at `name.start`. On success its attributes are in the
/// list and the result is the place of the ">", or of the "/" before it; otherwise null.
template <class Source>
inline PNuXmlChar SaxScanner<Source>::findPlainTagEnd(Name& name, TNuSAXAttributes& attributes) {
    const PNuXmlChar last = source_.LastPtr();
    // An end that has a "/" has the ">" right behind it, and something more behind that.
    const auto isEmptyEnd = [last](PNuXmlChar place) {
        return place[1] == cNuGt && place + 1 != last;
    };

    // 1. The name ends at a space or at the end of the tag. It cannot begin with a control
    //    character, which a read would skip, or with what begins other markup or draws a warning.
    if (name.start == last || *name.start <= cNuQuest) {
        return nullptr;
    }
    name.localStart = name.start;
    PNuXmlChar place = name.start + 1;
    for (;; ++place) {
        place = source_.template findFrom<StopSet::Name>(place);
        if (place == last) {
            return nullptr;
        }
        if (*place == cNuSpace || *place == cNuGt) {
            break;
        }
        if (*place == cNuColon && place[1] >= cNuSpace && place[1] != cNuColon) {
            name.localStart = place + 1;
        } else if (*place == cNuSlash && isEmptyEnd(place)) {
            break;
        } else if (*place != cNuEqual) {
            return nullptr;
        }
    }
    name.end = place;

    // 2. The attributes.
    if (*place == cNuSpace) {
        place = findSolid(place);
        while (*place != cNuSlash && *place != cNuGt) {
            place = scanPlainAttribute(place, attributes);
            if (place == nullptr) {
                return nullptr;
            }
        }
        if (place == last || (*place == cNuSlash && !isEmptyEnd(place))) {
            return nullptr;
        }
    }
    return place;
}

/// Looks at the attribute whose name begins at `start`. On success it is in the list and the result
/// is the first character behind the spaces after its value; otherwise null.
template <class Source>
inline PNuXmlChar SaxScanner<Source>::scanPlainAttribute(PNuXmlChar start,
                                                         TNuSAXAttributes& attributes) {
    // 1. The name ends at "=", with a quote and the value right behind it.
    const PNuXmlChar last = source_.LastPtr();
    PNuXmlChar localStart = start;
    PNuXmlChar nameEnd = source_.template findFrom<StopSet::Name>(start);
    while (*nameEnd != cNuEqual) {
        if (*nameEnd != cNuColon || nameEnd == start || nameEnd == last) {
            return nullptr;
        }
        localStart = nameEnd + 1;
        nameEnd = source_.template findFrom<StopSet::Name>(localStart);
    }
    if (nameEnd == start || last - nameEnd < 3 || nameEnd[1] != cNuQuote || nameEnd[2] < cNuSpace) {
        return nullptr;
    }

    // 2. The value, and what comes after it.
    const PNuXmlChar value = nameEnd + 2;
    bool isVerbatim = false;
    const PNuXmlChar valueEnd =
        source_.template findFrom<StopSet::Quote, StopSet::Escaped>(value, isVerbatim);
    if (valueEnd == last || *valueEnd != cNuQuote) {
        return nullptr;
    }
    PNuXmlChar next = valueEnd + 1;
    if (*next <= cNuSpace && next != last) {
        next = findSolid(next);
    }

    // 3. The attribute.
    TNuSAXAttribute& attribute = attributes.next();
    attribute.set(reader_.depth_ + 1, text(start, nameEnd), text(localStart, nameEnd),
                  text(value, valueEnd), isVerbatim);
    if (mayBeMeaningful(*start)) [[unlikely]] {
        attribute.classify();
        hasMeaningfulAttribute_ = true;
    }
    return next;
}

/// Whoever is told of a declaration finds the source at its closing quote.
template <class Source>
void SaxScanner<Source>::applyPlainAttributes(const TNuSAXAttributes& attributes) {
    for (const TNuSAXAttribute& attribute : attributes.all()) {
        if (mayBeMeaningful(attribute.qNameSpan().front())) {
            if (attribute.IsNamespaceDecl()) {
                source_.moveTo(attribute.valueSpan().data() + attribute.valueSpan().size());
            }
            applyAttribute(attribute);
        }
    }
}

/// Takes the end tag at `less` and gives the place of its ">"; null where it is not plain.
template <class Source> inline PNuXmlChar SaxScanner<Source>::scanPlainEndTag(PNuXmlChar less) {
    const PNuXmlChar last = source_.LastPtr();
    if (last - less < 3 || less[2] < cNuSpace) {
        return nullptr;
    }
    Name name{less + 2, less + 2, less + 2};
    do {
        name.end = source_.template findFrom<StopSet::Name>(name.end + 1);
        if (name.end == last || *name.end == cNuEOF) {
            return nullptr;
        }
        if (*name.end == cNuColon) {
            name.localStart = name.end + 1;
        }
    } while (*name.end != cNuGt);
    if (reader_.depth_ < 1 || !isHarmless(name.start, name.end)) {
        return nullptr;
    }
    source_.releaseBefore(less + 1);
    source_.moveTo(name.end);
    reportElementEnd(name);
    return name.end;
}

} // namespace nu
