#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/documentTypeRules.h"
#include "nuXmlParser/conforming/elementWatch.h"
#include "nuXmlParser/conforming/entityRules.h"
#include "nuXmlParser/conforming/limitRules.h"
#include "nuXmlParser/conforming/markupRules.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/plainRules.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/sourceText.h"
#include "nuXmlParser/conforming/tagRules.h"
#include "nuXmlParser/conforming/textStack.h"
#include "nuXmlParser/conforming/watchRules.h"

namespace nu {

/// The loop of the conforming stage: goes through a document, checks it and writes what the reader
/// is to read.
///
/// Every construct has its rules in a class of its own; here is their order, and character data.
class Normaliser {
public:
    /// \param source opened
    Normaliser(SourceText& source, OutputText& output, const TNuConformingOptions& options,
               ReaderForm reader, TNuSourceForm& form);

    /// Goes on until so many bytes are ready to go out, or to the end of the document, and says by
    /// false that there it is. Throws ENuXmlFault where the document is not well-formed.
    bool run(std::size_t enough);
    /// Writes from now on only what `watch` takes, and run() comes back as well at the end of each
    /// element that is taken: all of it is written then, and nothing else.
    void setWatch(ElementWatch& watch) noexcept { watch_.set(watch); }
    [[nodiscard]] TextStack& texts() noexcept { return texts_; }
    [[nodiscard]] const TextStack& texts() const noexcept { return texts_; }

    // For a reader that passes plain content by itself, see ConformingSupply

    /// Goes on, mostly by one step, to where plain content may follow, and writes it; false at the
    /// end of the document.
    bool runStep();
    /// Goes on until about so many bytes are written, whatever may follow then; false at the end.
    bool runBlock(std::size_t enough);
    /// Whether what follows may be passed by.
    [[nodiscard]] bool mayPassPlain() const noexcept {
        return elements_.depth() > 0 && !texts_.isInEntity() && !texts_.hasBreaks() &&
               markup_.inside() == MarkupRules::Inside::Nothing;
    }
    /// Plain content was passed up to a place, which is one of markup or right behind it.
    void passTo(const char* place) noexcept {
        texts_.passTo(place);
        beginText();
    }
    [[nodiscard]] std::string_view innermost() const noexcept { return elements_.innermost(); }
    [[nodiscard]] TagRules& tags() noexcept { return tags_; }
    [[nodiscard]] EntityRules& entities() noexcept { return entities_; }
    [[nodiscard]] const LimitRules& limits() const noexcept { return limits_; }
    /// How many elements are open.
    [[nodiscard]] std::size_t depth() const noexcept { return elements_.depth(); }

private:
    void begin();
    void step();
    /// Goes over what needs no change, as nearly all.
    void passPlain() {
        // Behind a part of a text the rest goes step by step.
        const bool isAtMarkup = texts_.place != texts_.end && *texts_.place == '<';
        if (mayPassPlain() && (isTextFirst_ || isAtMarkup) && plain_.pass()) {
            beginText();
        }
        hasEnded_ = watch_.hasStopped();
    }
    void finish();
    void passXmlDeclaration();
    void passMarkup();
    void passStartTag();
    void passDeclarationMarkup();
    void passOutside();
    void passEntityEnd();

    // Character data: textRules.cpp
    void passText();
    void passTextInEntity();
    bool passTextEnd(const char* end);
    bool passCarriageReturn(const char*& at);
    void passReference();
    /// Whether white space alone goes out as it is.
    [[nodiscard]] bool passesSpace() const noexcept {
        return reader_ == ReaderForm::Told || options_.whiteSpace == cwReader;
    }
    bool passSpaceRun();
    [[nodiscard]] bool isKept(std::string_view space) const noexcept;
    [[nodiscard]] bool mayVanish(const char* mark);
    void protect(std::string_view space);
    void beginText() noexcept {
        isTextFirst_ = true;
        isTextSolid_ = false;
    }
    void noteText() noexcept {
        isTextFirst_ = false;
        isTextSolid_ = true;
    }

    SourceText& source_;
    OutputText& output_;
    const TNuConformingOptions& options_;
    ReaderForm reader_;
    TNuSourceForm& form_;

    LimitRules limits_;
    OpenElements elements_;
    TextStack texts_;
    EntityRules entities_;
    TagRules tags_;
    WatchRules watch_;
    PlainRules plain_;
    MarkupRules markup_;
    DocumentTypeRules documentType_;

    bool hasBegun_ = false;
    bool hasEnded_ = false;
    bool hasRoot_ = false;
    bool hasDocumentType_ = false;
    bool isTextFirst_ = true;  ///< nothing came out behind the last markup
    bool isTextSolid_ = false; ///< something came out behind it that is not white space
};

} // namespace nu
