#include "nuXmlParser/conforming/normaliser.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/runtime/format.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlDeclaration.h"
#include "nuXmlParser/conforming/xmlNames.h"
#include "nuXmlParser/markup/plainTag.h"
#include "nuXmlParser/markup/textStop.h"

namespace nu {

Normaliser::Normaliser(SourceText& source, OutputText& output, const TNuConformingOptions& options,
                       ReaderForm reader, TNuSourceForm& form)
    : source_(source), output_(output), options_(options), reader_(reader), form_(form),
      limits_(options.limits), texts_(source, output, elements_, options.keepLines),
      entities_(texts_, {options.amplification, options.amplificationFrom}, !options.keepLines,
                options.namespaces),
      tags_(texts_, elements_, entities_, limits_, options.namespaces),
      markup_(texts_, limits_, reader, options.namespaces),
      documentType_(texts_, entities_, tags_.declarations, markup_, limits_, form,
                    options.namespaces) {}

bool Normaliser::run(std::size_t enough) {
    begin();
    while (!hasEnded_) {
        const auto waiting = static_cast<std::size_t>(texts_.place - texts_.notWritten());
        if (output_.text().size() + waiting >= enough) {
            return true;
        }
        passPlain();
        if (!isTaken_ && !hasEnded_) {
            step();
        }
        if (isTaken_) {
            isTaken_ = false;
            return true;
        }
    }
    return false;
}

void Normaliser::begin() {
    if (!hasBegun_) {
        hasBegun_ = true;
        passXmlDeclaration();
    }
}

bool Normaliser::runStep() {
    begin();
    do {
        step();
    } while (!hasEnded_ && !mayPassPlain());
    texts_.write();
    return !hasEnded_;
}

void Normaliser::setWatch(ElementWatch& watch) noexcept {
    watch_ = &watch;
    output_.discard();
}

/// Passes tags and text that need no change, as nearly all, one after the other; stops before
/// anything else. What it passes means the same to step().
void Normaliser::passPlain() {
    if (!mayPassPlain() ||
        texts_.end - texts_.place <= static_cast<std::ptrdiff_t>(markup::reach)) {
        return;
    }
    const char* const begin = texts_.place;
    const char* const limit = texts_.end - markup::reach;
    const char* behindMarkup = begin;
    const char* place = begin;
    for (;;) {
        // 1. Text up to the next "<".
        const char* passed = place;
        const char* const less = *place == '<' ? place : findPlainTextEnd(place, limit, passed);
        if (less == nullptr) {
            place = passed;
            break;
        }
        place = less;
        // 2. An end tag of the innermost element, or a start tag.
        if (less > limit) {
            break;
        }
        const bool isEnd = less[1] == '/';
        const char* tagEnd = nullptr;
        if (!isEnd) {
            tagEnd = tags_.readPlainStartTag(less, limit);
        } else if (elements_.depth() > 1) {
            tagEnd = tags_.passPlainEndTag(less);
        }
        if (tagEnd == nullptr) {
            break;
        }
        if (!isEnd) {
            if (watch_ != nullptr && isSought(tags_.plainName(), less)) [[unlikely]] {
                texts_.place = less;
                useElement(tags_.plainName());
                if (hasEnded_) {
                    break;
                }
            }
            tags_.enterPlain(less);
        }
        place = behindMarkup = tagEnd;
        // 3. It may have ended what somebody asked about.
        if (elements_.depth() < usedDepth_) [[unlikely]] {
            texts_.place = place;
            endElement();
            if (isTaken_) {
                break;
            }
        }
    }
    // 4. What stands before that, which is not plain, is text that was looked at.
    if (place != begin) {
        texts_.place = place;
        if (behindMarkup != begin) {
            beginText();
        }
        if (place != behindMarkup) {
            noteText();
        }
    }
}

/// The "<" behind text that goes out as it is; null where something else comes first. The first ">"
/// behind a tag, "]]>", CR, references but the five that need no declaration, and white space alone
/// that a reader would drop are for passText(), from `passed` on: what was looked at is not looked
/// at again for each reference in it.
const char* Normaliser::findPlainTextEnd(const char* place, const char* limit,
                                         const char*& passed) const noexcept {
    const char* stop = findTextStop(place, texts_.end);
    if (isSpace(*place) && !passesPlainText() && std::all_of(place, stop, isSpace)) {
        return nullptr;
    }
    while (stop <= limit && *stop == '&') {
        const char* const behind = markup::skipPlainReference(stop);
        if (behind == nullptr) {
            return nullptr;
        }
        passed = behind;
        stop = findTextStop(behind, texts_.end);
    }
    return stop != texts_.end && *stop == '<' ? stop : nullptr;
}

void Normaliser::step() {
    if (markup_.inside() != MarkupRules::Inside::Nothing) {
        markup_.passPiece();
        return;
    }
    if (texts_.place == texts_.end) {
        if (texts_.isInEntity()) {
            passEntityEnd();
        } else if (!texts_.showMore()) {
            finish();
        }
        return;
    }
    if (*texts_.place == '<') {
        passMarkup();
    } else if (elements_.depth() == 0) {
        passOutside();
    } else if (texts_.isInEntity()) {
        passTextInEntity();
    } else {
        passText();
    }
}

void Normaliser::finish() {
    if (elements_.depth() > 0) {
        texts_.fail(messages::elementNotClosed, elements_.innermost(), texts_.end);
    }
    if (!hasRoot_) {
        texts_.fail(messages::noRootElement, texts_.end);
    }
    hasEnded_ = true;
}

void Normaliser::passEntityEnd() {
    if (elements_.depth() != texts_.baseDepth()) {
        texts_.failEntity(messages::entityNotWhole);
    }
    texts_.leave();
}

void Normaliser::passXmlDeclaration() {
    // 1. "<?xml" with white space behind it; anything else is an instruction.
    if (!texts_.startsWith("<?xml")) {
        return;
    }
    const char* const behind = texts_.findFrom(5, [](char) { return true; });
    if (behind == nullptr || (!isSpace(*behind) && *behind != '?')) {
        return;
    }
    const char* const mark = texts_.findFrom(5, [](char c) { return c == '>' || c == '<'; });
    if (mark == nullptr || *mark == '<') {
        texts_.fail(messages::xmlDeclarationNotClosed, mark == nullptr ? texts_.end : mark);
    }

    // 2. What it says.
    const std::string_view text(texts_.place, mark + 1);
    const XmlDeclaration declaration = XmlDeclaration::read(text);
    if (declaration.fault != nullptr) {
        texts_.fail(declaration.fault, declaration.faultText, text.data() + declaration.faultAt);
    }
    form_.declaredEncoding = declaration.encoding;
    entities_.isStandalone = declaration.standalone == "yes";
    if (!declaration.encoding.empty() && options_.encoding.empty()) {
        const char* const at = declaration.encoding.data();
        switch (source_.judge(declaration.encoding)) {
        case DeclaredEncoding::Unknown:
            texts_.fail(messages::encodingUnknown, declaration.encoding, at);
        case DeclaredEncoding::Contradicts: {
            const std::u16string name = shortened(declaration.encoding);
            texts_.failWith(
                host::formatMessage(messages::encodingContradicts, {name, source_.foundEncoding()}),
                at);
        }
        case DeclaredEncoding::Fits:
            break;
        }
    }

    // 3. What the reader is told.
    const bool isRenamed = source_.isTranscoded() && !options_.keepEncodingName;
    const std::string_view name = isRenamed ? std::string_view("UTF-8") : declaration.encoding;
    if (!declaration.isPlain || (!declaration.encoding.empty() && name != declaration.encoding)) {
        texts_.change(texts_.place, mark + 1, declaration.write(name));
        texts_.keepBreaks(countBreaks(text));
    }
    texts_.place = mark + 1;
}

void Normaliser::passMarkup() {
    while (texts_.end - texts_.place < 2) {
        if (!texts_.showMore()) {
            texts_.fail(messages::tagNotClosed, texts_.end);
        }
    }
    switch (texts_.place[1]) {
    case '/':
        tags_.passEndTag();
        endElement();
        break;
    case '?':
        markup_.beginInstruction();
        break;
    case '!':
        passDeclarationMarkup();
        break;
    default:
        if (elements_.depth() == 0 && hasRoot_) {
            texts_.fail(messages::onlyMiscAfterRoot, texts_.place);
        }
        passStartTag();
        hasRoot_ = true;
    }
    beginText();
}

void Normaliser::passStartTag() {
    tags_.readStartTag();
    if (watch_ != nullptr && isSought(tags_.name(), texts_.place)) {
        useElement(tags_.name());
        if (hasEnded_) {
            return;
        }
    }
    tags_.passStartTag();
    endElement();
}

/// The start tag that was read at the place of the text is that of an element that is sought.
void Normaliser::useElement(std::string_view name) {
    const std::size_t depth = elements_.depth() + 1;
    const ElementUse use =
        watch_->use({depth, texts_.offsetOf(texts_.place), source_, tags_.bindings(), elements_});
    if (use == ElementUse::Stop) {
        hasEnded_ = true;
        return;
    }
    usedDepth_ = depth;
    texts_.write();
    if (use == ElementUse::Take) {
        output_.keep();
        texts_.insert(texts_.place + 1 + name.size(), watch_->insertion());
    }
    owner_ = std::exchange(watch_, nullptr);
}

/// What was asked about ends with the tag that was passed, if that is its own.
void Normaliser::endElement() {
    if (elements_.depth() >= usedDepth_) {
        return;
    }
    texts_.write();
    isTaken_ = !output_.isDiscarding();
    output_.discard();
    watch_ = std::exchange(owner_, nullptr);
    usedDepth_ = 0;
}

void Normaliser::passDeclarationMarkup() {
    if (texts_.startsWith("<!--")) {
        texts_.putBreaks(texts_.place + 1);
        texts_.place += 4;
        markup_.beginComment();
        return;
    }
    if (texts_.startsWith("<![CDATA[")) {
        if (elements_.depth() == 0) {
            texts_.fail(hasRoot_ ? messages::onlyMiscAfterRoot : messages::textBeforeRoot,
                        texts_.place);
        }
        texts_.putBreaks(texts_.place + 1);
        texts_.place += 9;
        markup_.beginCData();
        return;
    }
    if (!texts_.startsWith("<!DOCTYPE")) {
        texts_.fail(messages::unknownMarkup, texts_.place);
    }
    if (hasRoot_ || hasDocumentType_) {
        texts_.fail(hasRoot_ ? messages::documentTypeMisplaced : messages::secondDocumentType,
                    texts_.place);
    }
    hasDocumentType_ = true;
    documentType_.pass();
}

/// White space outside of the root element. A CR alone is no line to the reader.
void Normaliser::passOutside() {
    for (; texts_.place != texts_.end && *texts_.place != '<'; ++texts_.place) {
        if (!isSpace(*texts_.place)) {
            texts_.fail(hasRoot_ ? messages::onlyMiscAfterRoot : messages::textBeforeRoot,
                        texts_.place);
        }
        if (*texts_.place == '\r') {
            const char* const next = texts_.findFrom(1, [](char) { return true; });
            if (next == nullptr || *next != '\n') {
                texts_.change(texts_.place, texts_.place + 1, "\n");
            }
        }
    }
}

} // namespace nu
