#pragma once

#include "nuXmlSax/scanner.h"

/// \file
/// Tags as nearly all documents have them, scanned with one pointer in a register.
///
/// The step-by-step scanners move their source with every read. A tag that is written as the
/// standard wants it, and is not cut off by the end of the input, needs no such care: these
/// scanners look at it without moving, and give up, with nothing done, at the first thing that is
/// not plain. What they take means the same to the step-by-step scanners.

namespace nu {

/// Looks at a start tag whose name begins at `name.start`. On success the attributes are in the
/// list and the result is the place of the "/" or ">" that ends the tag; otherwise null.
template <class Source>
inline PNuXmlChar SaxScanner<Source>::scanPlainStartTag(Name& name, TNuSAXAttributes& attributes) {
    // 1. The name ends at a space or at the end of the tag.
    if (source_.hasEnded()) {
        return nullptr;
    }
    name.localStart = name.start;
    PNuXmlChar place = name.start + 1;
    for (;; ++place) {
        place = source_.template findFrom<StopSet::Name>(place);
        if (place == source_.LastPtr()) {
            return nullptr;
        }
        if (*place == cNuColon && place[1] >= cNuSpace && place[1] != cNuColon) {
            name.localStart = place + 1;
        } else if (*place == cNuSpace || *place == cNuGt || isPlainTagEnd(place)) {
            break;
        } else if (*place != cNuEqual) {
            return nullptr;
        }
    }
    name.end = place;
    if (*place != cNuSpace) {
        return place;
    }

    // 2. The attributes.
    place = source_.template findFrom<StopSet::Solid>(place);
    if (place == source_.LastPtr()) {
        return nullptr;
    }
    while (place != nullptr && *place != cNuSlash && *place != cNuGt) {
        place = scanPlainAttribute(place, attributes);
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
    PNuXmlChar nameEnd = start + 1;
    if (start == last || *start == cNuEOF) {
        return nullptr;
    }
    for (;; ++nameEnd) {
        nameEnd = source_.template findFrom<StopSet::Name>(nameEnd);
        if (*nameEnd == cNuEqual) {
            break;
        }
        if (*nameEnd != cNuColon || nameEnd == last) {
            return nullptr;
        }
        localStart = nameEnd + 1;
    }
    if (last - nameEnd < 3 || nameEnd[1] != cNuQuote || nameEnd[2] < cNuSpace) {
        return nullptr;
    }

    // 2. The value, and what comes after it.
    const PNuXmlChar value = nameEnd + 2;
    const PNuXmlChar valueEnd = source_.template findFrom<StopSet::Quote>(value);
    if (valueEnd == last || *valueEnd != cNuQuote) {
        return nullptr;
    }
    PNuXmlChar next = valueEnd + 1;
    if (*next <= cNuSpace) {
        next = source_.template findFrom<StopSet::Solid>(next);
    }
    if (next == last) {
        return nullptr;
    }
    TNuSAXAttribute& attribute = attributes.CreateAttribute();
    attribute.SetLevel(reader_.depth_);
    attribute.SetQName(start, nameEnd - start);
    attribute.SetLocalName(localStart, nameEnd - localStart);
    attribute.SetValue(value, valueEnd - value);
    return next;
}

/// Looks at an end tag whose "/" stands at `slash`. Null where it is not plain, else the place of
/// its ">".
template <class Source>
inline PNuXmlChar SaxScanner<Source>::scanPlainEndTag(PNuXmlChar slash, Name& name) {
    const PNuXmlChar last = source_.LastPtr();
    if (last - slash < 2 || slash[1] < cNuSpace) {
        return nullptr;
    }
    name.start = slash + 1;
    name.localStart = name.start;
    for (PNuXmlChar place = name.start + 1;; ++place) {
        place = source_.template findFrom<StopSet::Name>(place);
        if (place == last || *place == cNuEOF) {
            return nullptr;
        }
        if (*place == cNuGt) {
            name.end = place;
            return place;
        }
        if (*place == cNuColon) {
            name.localStart = place + 1;
        }
    }
}

} // namespace nu
