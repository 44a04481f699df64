#include "nuXmlParser/conforming/markupRules.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

const char* findByte(const char* from, const char* to, char byte) noexcept {
    const void* const found =
        from == to ? nullptr : std::memchr(from, byte, static_cast<std::size_t>(to - from));
    return found == nullptr ? to : static_cast<const char*>(found);
}

bool isReservedTarget(std::string_view target) noexcept {
    return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
           (target[2] | 0x20) == 'l';
}

} // namespace

void MarkupRules::passPiece() {
    switch (inside_) {
    case Inside::Comment:
        passComment();
        break;
    case Inside::Instruction:
        passInstruction();
        break;
    case Inside::CData:
        passCData();
        break;
    case Inside::Nothing:
        break;
    }
}

/// Passes text in which nothing but line ends can need a change: each becomes an LF.
void MarkupRules::passTo(const char* end) {
    if (!texts_.isInEntity()) {
        for (const char* cr = findByte(texts_.place, end, '\r'); cr != end;
             cr = findByte(cr + 1, end, '\r')) {
            const bool isPair = cr + 1 != texts_.end && cr[1] == '\n';
            texts_.change(cr, cr + 1, isPair ? "" : "\n");
        }
    }
    texts_.place = end;
}

void MarkupRules::showMoreOrFail(std::u16string_view message) {
    if (!texts_.showMore()) {
        texts_.fail(message, texts_.end);
    }
}

void MarkupRules::passComment() {
    for (;;) {
        const char* const dash = findByte(texts_.place, texts_.end, '-');
        // A CR at the end of the text at hand waits for what follows it.
        const bool isCut = dash == texts_.end && dash != texts_.place && dash[-1] == '\r';
        passTo(isCut ? dash - 1 : dash);
        if (dash == texts_.end) {
            showMoreOrFail(messages::commentNotClosed);
            return;
        }
        if (passDash()) {
            inside_ = Inside::Nothing;
            return;
        }
    }
}

/// Passes a dash; true if it ends the comment.
bool MarkupRules::passDash() {
    while (texts_.end - texts_.place < 2) {
        showMoreOrFail(messages::commentNotClosed);
    }
    // 1. Two dashes are the end.
    if (texts_.place[1] == '-') {
        while (texts_.end - texts_.place < 3) {
            showMoreOrFail(messages::commentNotClosed);
        }
        if (texts_.place[2] != '>') {
            texts_.fail(messages::dashesInComment, texts_.place);
        }
        texts_.place += 3;
        return true;
    }
    // 2. A reader by itself sees no control characters and takes a dash, some of them and "->" for
    //    the end.
    if (reader_ == ReaderForm::ByItself && texts_.place[1] < ' ' && isSpace(texts_.place[1])) {
        const char* next = texts_.findFrom(1, [](char c) { return !isSpace(c) || c == ' '; });
        while (next != nullptr && next + 1 == texts_.end) {
            const std::ptrdiff_t offset = next - texts_.place;
            next = texts_.showMore() ? texts_.place + offset : nullptr;
        }
        if (next != nullptr && next[0] == '-' && next[1] == '>') {
            texts_.keepBreaks(countBreaks({texts_.place + 1, next}));
            texts_.change(texts_.place + 1, next, " ");
            texts_.place = next;
            return false;
        }
    }
    ++texts_.place;
    return false;
}

void MarkupRules::beginInstruction() {
    // 1. The target.
    const auto endsTarget = [](char c) { return isSpace(c) || c == '?' || c == '<' || c == '>'; };
    const char* const stop = texts_.findFrom(2, endsTarget);
    if (stop == nullptr) {
        texts_.fail(messages::instructionNotClosed, texts_.end);
    }
    const char* const start = texts_.place + 2;
    const char* const nameEnd = skipName(start, stop);
    const std::string_view target(start, nameEnd);
    if (target.empty()) {
        texts_.fail(messages::notAName, "an instruction", start);
    }
    if (!limits_.allowsName(target)) {
        texts_.fail(messages::nameBeyondLimit, std::to_string(limits_.nameLength()), start);
    }
    if (isReservedTarget(target)) {
        texts_.fail(messages::reservedTarget, texts_.place);
    }
    if (nameEnd != stop || (*stop != '?' && !isSpace(*stop))) {
        texts_.fail(messages::targetSpace, target, nameEnd);
    }
    if (hasNamespaces_ && target.find(':') != target.npos) {
        texts_.fail(messages::colonInName, target, start);
    }
    const std::ptrdiff_t targetLength = nameEnd - texts_.place;
    inside_ = Inside::Instruction;
    if (*stop == '?') {
        const std::string name(target); // what is shown may move
        texts_.putBreaks(texts_.place + 1);
        texts_.place += targetLength;
        while (texts_.end - texts_.place < 2) {
            showMoreOrFail(messages::instructionNotClosed);
        }
        if (texts_.place[1] != '>') {
            texts_.fail(messages::targetSpace, name, texts_.place);
        }
        return;
    }

    // 2. One space behind it.
    const char* const data =
        texts_.findFrom(static_cast<std::size_t>(targetLength), [](char c) { return !isSpace(c); });
    if (data == nullptr) {
        texts_.fail(messages::instructionNotClosed, texts_.end);
    }
    texts_.putBreaks(texts_.place + 1);
    const std::string_view space(texts_.place + targetLength, data);
    if (space != " ") {
        texts_.change(space.data(), data, " ");
        texts_.keepBreaks(countBreaks(space));
    }
    texts_.place = data;
}

void MarkupRules::passInstruction() {
    for (;;) {
        const char* const mark = findByte(texts_.place, texts_.end, '?');
        const bool isCut = mark == texts_.end && mark != texts_.place && mark[-1] == '\r';
        passTo(isCut ? mark - 1 : mark);
        if (texts_.end - texts_.place < 2) {
            showMoreOrFail(messages::instructionNotClosed);
            return;
        }
        if (texts_.place[0] == '?' && texts_.place[1] == '>') {
            texts_.place += 2;
            inside_ = Inside::Nothing;
            return;
        }
        texts_.place += texts_.place[0] == '?' ? 1 : 0;
    }
}

void MarkupRules::passCData() {
    for (;;) {
        const char* const bracket = findByte(texts_.place, texts_.end, ']');
        const bool isCut = bracket == texts_.end && bracket != texts_.place && bracket[-1] == '\r';
        passTo(isCut ? bracket - 1 : bracket);
        if (bracket == texts_.end) {
            showMoreOrFail(messages::cdataNotClosed);
            return;
        }
        // 1. "]]>" is the end.
        while (texts_.end - texts_.place < 3) {
            showMoreOrFail(messages::cdataNotClosed);
        }
        if (std::string_view(texts_.place, 3) == "]]>") {
            texts_.place += 3;
            inside_ = Inside::Nothing;
            return;
        }
        // 2. The reader looks through control characters and would find the end behind them too: a
        //    second section keeps it from that.
        const char* next = texts_.findFrom(1, [](char c) { return !isSpace(c) || c == ' '; });
        while (next != nullptr && next + 1 == texts_.end) {
            const std::ptrdiff_t offset = next - texts_.place;
            next = texts_.showMore() ? texts_.place + offset : nullptr;
        }
        if (next != nullptr && next != texts_.place + 1 && next[0] == ']' && next[1] == '>') {
            texts_.insert(texts_.place + 1, "]]><![CDATA[");
        }
        ++texts_.place;
    }
}

} // namespace nu
