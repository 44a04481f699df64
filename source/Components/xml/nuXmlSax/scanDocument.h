#pragma once

#include "host/runtime/format.h"
#include "nuXmlParser/markup/byteBlock.h"
#include "nuXmlParser/textDecoder.h"
#include "nuXmlSax/contentHandler.h"
#include "nuXmlSax/directContent.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"

/// \file
/// The document as a whole: prolog, the choice of markup, character data.

namespace nu {

template <class Source> void SaxScanner<Source>::scanDocument() {
    // 1. The source is the locator.
    if (content() != nullptr) {
        content()->setDocumentLocator(source_);
    }
    // 2. Whatever stands before the first "<" means nothing, unless it is inside an element.
    if (reader_.isFragment_) {
        source_.ReadRawChar();
    } else {
        source_.template readUntil<StopSet::Less>();
    }
    if (content() != nullptr) {
        content()->startDocument();
    }
    // 3. The prolog, and word of its end to those who want it.
    if (!reader_.isFragment_) {
        scanProlog();
    }
    if (const auto extended = host::queryInterface<INuSaxContentHandler>(content())) {
        extended->EndProlog();
    }
    // 4. Everything else.
    scanContent();
    if (content() != nullptr) {
        content()->endDocument();
    }
}

/// Entered with "<" current, or at the end of the input.
template <class Source> void SaxScanner<Source>::scanProlog() {
    while (!source_.hasEnded()) {
        // 1. Only "<?" and "<!" belong to the prolog.
        source_.keepFromHere();
        const NuXmlChar next = *source_.PeekXmlChar();
        if (next != cNuExcl && next != cNuQuest) {
            return;
        }
        // 2. An instruction, a comment, or else a document type.
        source_.ReadXmlChar();
        if (source_.current() == cNuQuest) {
            scanProcessingInstruction();
        } else {
            source_.ReadXmlChar();
            if (source_.current() == cNuLine) {
                scanComment();
            } else {
                scanDocumentType();
            }
        }
        // 3. On to the next markup.
        skipTo(cNuLt);
    }
}

template <class Source> void SaxScanner<Source>::scanContent() {
    reader_.space_.start(reader_.spaceKept_);
    while (!source_.hasEnded()) {
        // 1. As far as it goes the plain way.
        if constexpr (Source::hasTextAtHand) {
            const bool isDirect = readsDirectly();
            if (isDirect) {
                readDirectly();
            }
            // What the conforming stage made of the bytes is as plain as any other text.
            if (!isDirect || reader_.stage_ != nullptr) {
                scanPlainContent();
            }
            if (needsMoreText() && extendsText(isDirect)) {
                continue;
            }
        }
        // 2. One step by the character that is current. The tags leave their ">" to this loop, and
        //    text counts inside elements only.
        const NuXmlChar current = source_.current();
        if (current == cNuLt) {
            scanMarkup();
        } else if (current == cNuGt) {
            source_.keepFromHere();
            source_.ReadRawChar();
        } else if (reader_.depth_ < 1) {
            skipOutsideText();
        } else {
            scanText();
        }
    }
}

template <class Source> bool SaxScanner<Source>::readsDirectly() const noexcept {
    if constexpr (Source::hasBytesAtHand) {
        return reader_.directContent_ != nullptr && source_.isUtf8();
    }
    return false;
}

/// Entered with any character current; leaves the first "<" or ">" current that is not plain. A tag
/// there can be scanned without reading the rest of the text.
template <class Source> void SaxScanner<Source>::readDirectly() {
    if constexpr (Source::hasBytesAtHand) {
        const NuXmlChar current = source_.current();
        if (current != cNuLt && current != cNuGt) {
            return;
        }
        // The root is for the conforming stage, if there is one.
        if (reader_.depth_ >= (reader_.stage_ != nullptr ? 1 : 0)) {
            static_assert(TextDecoder::paddingOfShortText >= markup::reach);
            const std::string_view bytes = source_.bytesFromHere();
            if (!bytes.empty()) {
                reader_.directContent_->read(
                    bytes, source_.startPassing(bytes),
                    {reader_.depth_, reader_.namespaces_, reader_.space_, reader_.stage_});
                source_.continueBehindPassed();
            }
        }
    }
}

/// Makes the tag at hand whole; true where there is something new to look at. Where bytes are read
/// directly the rest of the text is not decoded for a tag, and what a stage makes is not asked for
/// beyond it: a fault would come before what stands in front of it.
template <class Source> bool SaxScanner<Source>::extendsText(bool isDirect) {
    if constexpr (Source::hasBytesAtHand) {
        if (isDirect || reader_.stage_ != nullptr) {
            const bool isMore = !isDirect && source_.extendByTag();
            if (!isMore) {
                source_.stayInPlace();
            }
            return isMore;
        }
    }
    return source_.extendWindow();
}

/// A tag that is not plain, or not all there, is scanned with the whole rest of the text at hand,
/// because its scanner holds on to places in it.
template <class Source> bool SaxScanner<Source>::needsMoreText() {
    if (source_.current() != cNuLt) {
        return false;
    }
    source_.keepFromHere();
    const PNuXmlChar place = source_.currentPlace();
    return place == source_.LastPtr() || (place[1] != cNuExcl && place[1] != cNuQuest);
}

/// Entered with "<" current.
template <class Source> void SaxScanner<Source>::scanMarkup() {
    source_.keepFromHere();
    source_.ReadXmlChar();
    switch (source_.current()) {
    case cNuSlash:
        scanEndTag();
        return;
    case cNuQuest:
        scanProcessingInstruction();
        return;
    case cNuExcl:
        source_.ReadXmlChar();
        if (source_.current() == cNuLine) {
            scanComment();
        } else if (source_.current() == u'[') {
            scanCData();
        } else {
            fail(host::formatMessage(messages::invalidAfterLessExclamation,
                                     {source_.LineNumber(), source_.ColumnNumber()}));
        }
        return;
    case cNuSpace:
        warn(messages::spaceAfterLess);
        while (source_.current() == cNuSpace && !source_.hasEnded()) {
            source_.ReadXmlChar();
        }
        scanStartTag();
        return;
    default:
        scanStartTag();
    }
}

/// Text before, between and behind root elements is dropped.
template <class Source> void SaxScanner<Source>::skipOutsideText() {
    source_.keepFromHere();
    source_.template readUntil<StopSet::Less>();
}

/// Entered with a character other than "<" and ">" inside an element.
template <class Source> void SaxScanner<Source>::scanText() {
    source_.ResetBuffer();
    // 1. White space alone between tags is dropped unless it is to be kept.
    if (!reader_.space_.isPreserved()) {
        if (source_.current() <= cNuSpace) {
            source_.template readUntil<StopSet::Solid>();
        }
        if (source_.current() == cNuLt &&
            !isInlineSpace(source_.keptPlace(), source_.currentPlace())) {
            return;
        }
    }
    // 2. Everything up to the next markup is one run.
    if (source_.current() != cNuLt && !source_.hasEnded()) {
        source_.template readUntil<StopSet::Less>();
    }
    const std::u16string_view run = text(source_.keptPlace(), source_.currentPlace());
    if (!run.empty() && content() != nullptr) {
        content()->characters(run);
    }
}

} // namespace nu
