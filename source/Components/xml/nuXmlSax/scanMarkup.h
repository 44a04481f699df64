#pragma once

#include <algorithm>

#include "common/caseFolding.h"
#include "host/runtime/format.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"

/// \file
/// Comments, CDATA sections, processing instructions and the document type.

namespace nu {

/// Entered with the first "-" behind "<!" current. Two dashes inside are accepted; control
/// characters are dropped.
template <class Source> void SaxScanner<Source>::scanComment() {
    if (reader_.isBehindStage_) {
        scanExactComment();
        return;
    }
    constexpr std::u16string_view terminator = u"-->";

    // 1. The second dash, then the first character of the text.
    source_.ReadXmlChar();
    if (source_.current() != cNuLine) {
        warn(messages::commentStart);
    }
    source_.ReadXmlChar();

    // 2. The text up to and with its terminator. A dash that turns out to be text is put back.
    std::u16string& collected = emptyCollection();
    bool isClosed = false;
    while (!isClosed && !source_.hasEnded()) {
        collectTo(cNuLine, collected);
        if (source_.hasEnded()) {
            collected += cNuLine;
            break;
        }
        source_.ReadXmlChar();
        if (source_.current() != cNuLine || source_.hasEnded()) {
            collected += cNuLine;
            continue;
        }
        source_.ReadXmlChar();
        isClosed = source_.current() == cNuGt;
        collected += isClosed ? terminator : terminator.substr(0, 2);
    }

    // 3. Deliberate: the last three characters go whatever they are, so an unclosed comment loses
    //    text; and it is reported before the fault.
    if (!collected.ends_with(terminator)) {
        warn(messages::commentEnd);
    }
    collected.resize(collected.size() - std::min(collected.size(), terminator.size()));
    if (lexical() != nullptr) {
        lexical()->comment(collected);
    }
    if (!isClosed) {
        fail(messages::endInComment);
    }
}

/// Entered with the "[" behind "<!" current; leaves ">" current.
template <class Source> void SaxScanner<Source>::scanCData() {
    // 1. Deliberate: the word between the brackets is not looked at.
    source_.ResetBuffer();
    source_.ReadXmlChar();
    skipTo(u'[');
    if (source_.hasEnded()) {
        fail(messages::endInCData);
    }

    // 2. The content, from the very next character to the first "]" of "]]>".
    source_.ReadRawChar();
    source_.keepFromHere();
    for (;;) {
        skipTo(u']');
        if (source_.hasEnded()) {
            fail(messages::endInCData);
        }
        if (source_.peeksAt(u']', cNuGt)) {
            break;
        }
        // The look ahead may be what finds the end.
        if (source_.hasEnded()) {
            fail(messages::endInCData);
        }
        source_.ReadXmlChar();
    }
    const auto length = source_.currentPlace() - source_.keptPlace();

    // 3. The rest of the terminator, then the events.
    source_.ReadXmlChar();
    source_.ReadXmlChar();
    if (source_.hasEnded()) {
        fail(messages::endInCData);
    }
    if (lexical() != nullptr) {
        lexical()->startCDATA();
    }
    if (content() != nullptr) {
        content()->characters(text(source_.keptPlace(), source_.keptPlace() + length));
    }
    if (lexical() != nullptr) {
        lexical()->endCDATA();
    }
}

/// Entered with the "?" behind "<" current. The target ends at the first space, the data at the
/// first "?".
template <class Source> void SaxScanner<Source>::scanProcessingInstruction() {
    if (reader_.isBehindStage_) {
        scanExactInstruction();
        return;
    }
    // 1. The text; its first space divides it and belongs to neither part.
    std::u16string& collected = emptyCollection();
    source_.ReadXmlChar();
    collectTo(cNuQuest, collected);
    const std::u16string_view instruction = collected;
    const std::size_t space = instruction.find(cNuSpace);
    const auto target = instruction.substr(0, space);
    const auto data = space == instruction.npos ? u"" : instruction.substr(space + 1);
    checkName(target);
    if (content() != nullptr) {
        content()->processingInstruction(target, data);
    }

    // 2. The closing ">".
    source_.ReadXmlChar();
    if (source_.current() != cNuGt) {
        warn(messages::instructionEnd);
        if (source_.hasEnded()) {
            fail(messages::endOfDocument);
        }
    }
}

/// Behind the conforming stage: everything up to the terminator as it stands, control characters
/// included. Leaves the last character of the terminator current.
template <class Source>
void SaxScanner<Source>::collectExactly(std::u16string_view terminator, std::u16string& target) {
    const NuXmlChar last = terminator.back();
    do {
        if (source_.hasEnded()) {
            fail(messages::endOfDocument);
        }
        source_.ReadRawChar();
        source_.template copyUntil<true>(last, [&target](PNuXmlChar start, std::size_t length) {
            target.append(start, length);
        });
        target += source_.current();
    } while (!target.ends_with(terminator));
    target.resize(target.size() - terminator.size());
}

/// Entered with the first "-" behind "<!" current.
template <class Source> void SaxScanner<Source>::scanExactComment() {
    source_.ReadRawChar();
    std::u16string& collected = emptyCollection();
    collectExactly(u"-->", collected);
    if (lexical() != nullptr) {
        lexical()->comment(collected);
    }
}

/// Entered with the "?" behind "<" current.
template <class Source> void SaxScanner<Source>::scanExactInstruction() {
    std::u16string& collected = emptyCollection();
    collectExactly(u"?>", collected);
    const std::u16string_view instruction = collected;
    const std::size_t space = instruction.find(cNuSpace);
    if (content() != nullptr) {
        content()->processingInstruction(instruction.substr(0, space),
                                         space == instruction.npos ? u""
                                                                   : instruction.substr(space + 1));
    }
}

/// Entered with the character behind "<!" current, whatever it is. Only the name is read.
template <class Source> void SaxScanner<Source>::scanDocumentType() {
    // 1. Deliberate: the first three characters are taken for granted, so a fault is reported with
    //    a "D" that need not be there.
    std::u16string keyword = u"<!D";
    for (int count = 0; count < 6; ++count) {
        keyword += *source_.ReadXmlChar();
    }
    if (!NuEqualFolded(keyword, u"<!DOCTYPE")) {
        reader_.Error(source_, host::formatMessage(messages::documentTypeExpected, {keyword}));
    }

    // 2. Deliberate: only a space ends the name, not ">".
    do {
        source_.ReadXmlChar();
    } while (source_.current() <= cNuSpace && !source_.hasEnded());
    std::u16string name;
    collectTo(cNuSpace, name);
    checkName(name);
    if (lexical() != nullptr) {
        lexical()->startDTD(name, u"", u"");
    }
    if (source_.hasEnded()) {
        reader_.RaiseEOF(source_);
    }
}

} // namespace nu
