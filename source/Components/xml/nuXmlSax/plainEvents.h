#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "nuXmlSax/checkedContent.h"
#include "nuXmlSax/directContent.h"
#include "nuXmlSax/reader.h"
#include "nuXmlSax/scopedName.h"
#include "nuXmlSax/wideText.h"

namespace nu {

/// Tells the handlers of a reader of the plain parts of a document, nearly all of it, while they
/// are checked: names are widened when they are met first, values and texts when they are told.
///
/// What it leaves is for the step-by-step scanners. Both tell the same, event by event and place by
/// place.
class PlainEvents final : public DirectContent {
public:
    explicit PlainEvents(TNuSAXXMLReader& reader) : reader_(reader) {}

    /// Only where content has to be checked.
    void read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) override;

private:
    friend class CheckedContent<PlainEvents>;

    struct Name : ScopedName, CheckedName {
        Name(std::string_view bytes, std::uint64_t hash, std::u16string_view units,
             TNuSaxNamespaceList& namespaces)
            : ScopedName(bytes, hash, units, namespaces, true) {}

        [[nodiscard]] std::u16string_view local() const noexcept {
            return {units.data() + localStart, units.size() - localStart};
        }
        // Of a declaration: the last value and its number.
        std::string_view declaredValue;
        std::uint64_t declaredNumber = 0;
        Name* followers[3]{};
    };
    /// An attribute that means something to the scopes.
    struct Meaningful {
        std::size_t index;
        Name* name;
        std::string_view value; ///< as it stands
    };

    // For markup::PlainContent, see there.
    static constexpr auto classifyText = markup::classifyText;
    [[nodiscard]] Name* nextElement() const noexcept { return *guess_; }
    [[nodiscard]] Name* element(std::string_view bytes) { return *guess_ = find(bytes); }
    [[nodiscard]] Name* attribute(Name& before, std::string_view bytes) {
        return before.followers[markup::ByteName::Attribute] = find(bytes);
    }
    [[nodiscard]] bool keepsSpace() const noexcept { return scopes_->space.isPreserved(); }
    [[nodiscard]] bool keepsInline() const noexcept { return scopes_->space.keepsInline(); }
    bool startTag(Name& name, const char* less);
    bool addAttribute(Name& name, std::string_view value, const markup::PassedKinds& kinds);
    void abandonStartTag() noexcept;
    bool endStartTag(bool isEmptyElement, const char* end);
    void endEmptyElement();
    bool endElement(bool isInnermost, const char* /*end*/);
    bool endOuterElement(std::string_view name);
    bool addText(std::string_view text, const markup::PassedKinds& kinds);
    bool addComment(std::string_view text, bool isAscii);

    [[nodiscard]] Name* find(std::string_view bytes);
    void applyAttributes();
    void declare(std::int32_t level, Name& name, std::string_view value, std::u16string_view uri);
    void tellEnd(const Name& name);

    /// Names beyond these are left to the scanners, so that memory stays bounded whatever the
    /// document.
    static constexpr std::size_t mostNames = 16 * 1024;

    TNuSAXXMLReader& reader_;
    const ReaderScopes* scopes_ = nullptr;
    PassedBytes* passed_ = nullptr;
    markup::ByteNames<Name> names_;
    WideText nameTexts_;
    WideText texts_;          ///< of what is being told
    std::vector<Name*> open_; ///< the names of the innermost elements
    /// Where the name of the next element was kept last time: with that of the element that
    /// started or ended last.
    Name** guess_ = &unknown_;
    Name* unknown_ = nullptr;

    // Of the tag at hand.
    Name* element_ = nullptr;
    TNuSAXAttributes* attributes_ = nullptr;
    std::vector<Meaningful> meaningful_;
    CheckedContent<PlainEvents> checked_{*this};
};

} // namespace nu
