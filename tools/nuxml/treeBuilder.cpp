#include "treeBuilder.h"

namespace tool {

namespace {

/// The clock is asked only once in so many elements, a power of two.
constexpr std::uint64_t elementsBetweenLooks = 1024;

/// The characters of a text if all of them are white space, as such or as references: a reference
/// is how the stage in front of the reader keeps white space that would go otherwise.
bool readBlanks(std::u16string_view text, std::u16string& blanks) {
    struct Reference {
        std::u16string_view text;
        char16_t character;
    };
    static constexpr Reference references[] = {
        {u"&#32;", u' '}, {u"&#10;", u'\n'}, {u"&#9;", u'\t'}};
    blanks.clear();
    while (!text.empty()) {
        std::size_t length = 0;
        if (text.front() == u' ' || text.front() == u'\n' || text.front() == u'\t') {
            blanks += text.front();
            length = 1;
        }
        for (const Reference& reference : references) {
            if (length == 0 && text.starts_with(reference.text)) {
                blanks += reference.character;
                length = reference.text.size();
            }
        }
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

} // namespace

void TreeBuilder::startElement(std::u16string_view uri, std::u16string_view localName,
                               std::u16string_view qName, host::IBufferedAttributes& attributes) {
    ++depth_;
    hasRoot_ = true;
    tree_->startElement(uri, localName, qName, attributes);
    if (++elementCount_ % elementsBetweenLooks == 0 && progress_.isDue()) {
        showProgress();
    }
}

void TreeBuilder::endElement(std::u16string_view uri, std::u16string_view localName,
                             std::u16string_view qName) {
    depth_ -= depth_ > 0 ? 1 : 0;
    tree_->endElement(uri, localName, qName);
}

void TreeBuilder::characters(std::u16string_view text) {
    tree_->characters(readBlanks(text, blanks_) ? std::u16string_view(blanks_) : text);
}

void TreeBuilder::processingInstruction(std::u16string_view target, std::u16string_view data) {
    noteTopLevel();
    tree_->processingInstruction(target, data);
}

void TreeBuilder::comment(std::u16string_view text) {
    noteTopLevel();
    tree_->comment(text);
}

void TreeBuilder::startDTD(std::u16string_view name, std::u16string_view publicId,
                           std::u16string_view systemId) {
    order_.hasDocumentType = true;
    order_.beforeDocumentType = order_.beforeRoot;
    tree_->startDTD(name, publicId, systemId);
}

void TreeBuilder::showProgress() {
    progress_.show("loading " + std::string(name_) + ": " + std::to_string(elementCount_) +
                   " elements, line " + std::to_string(locator_ ? locator_->getLineNumber() : 0));
}

void TreeBuilder::noteTopLevel() noexcept {
    if (depth_ == 0 && !hasRoot_) {
        ++order_.beforeRoot;
    }
}

} // namespace tool
