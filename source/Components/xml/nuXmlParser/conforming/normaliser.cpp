#include "nuXmlParser/conforming/normaliser.h"

#include <cstddef>

#include "host/runtime/format.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlDeclaration.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

Normaliser::Normaliser(SourceText& source, OutputText& output, const TNuConformingOptions& options,
                       ReaderForm reader, TNuSourceForm& form)
    : source_(source), output_(output), options_(options), reader_(reader), form_(form),
      limits_(options.limits), texts_(source, output, elements_, options.keepLines),
      entities_(texts_, {options.amplification, options.amplificationFrom}, !options.keepLines,
                options.namespaces),
      tags_(texts_, elements_, entities_, limits_, options.namespaces),
      watch_(source, output, texts_, elements_, tags_.bindings()),
      plain_({texts_, output, elements_, entities_, tags_.memory(), watch_, limits_},
             options.namespaces, passesSpace()),
      markup_(texts_, limits_, reader, options.namespaces),
      documentType_(texts_, entities_, tags_.memory().declarations, markup_, limits_, form,
                    options.namespaces) {}

bool Normaliser::run(std::size_t enough) {
    begin();
    while (!hasEnded_) {
        const auto waiting = static_cast<std::size_t>(texts_.place - texts_.notWritten());
        if (output_.text().size() + waiting >= enough) {
            return true;
        }
        passPlain();
        if (!watch_.isTaken() && !hasEnded_) {
            step();
        }
        if (watch_.takeTaken()) {
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

bool Normaliser::runBlock(std::size_t enough) {
    const bool isMore = run(enough);
    texts_.write();
    return isMore;
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
        watch_.endElement(texts_.place);
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
    if (watch_.isSought(tags_.name(), texts_.place)) {
        watch_.use(tags_.name());
        if (watch_.hasStopped()) {
            hasEnded_ = true;
            return;
        }
    }
    tags_.passStartTag();
    watch_.endElement(texts_.place);
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
