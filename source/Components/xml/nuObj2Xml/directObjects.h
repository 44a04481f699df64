#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "nuObj2Xml/objectBuilder.h"
#include "nuXmlParser/markup/plainContent.h"
#include "nuXmlSax/checkedContent.h"
#include "nuXmlSax/directContent.h"
#include "nuXmlSax/scopedName.h"

namespace nu {

class ObjectEvents;

/// Reads the plain parts of a document, nearly all of it, from its bytes into objects. What it
/// leaves comes to ObjectEvents, event by event; so does whatever is an error, because only there
/// its place is known.
class DirectObjects final : public DirectContent {
public:
    DirectObjects(ObjectEvents& events, ObjectBuilder& builder);

    void read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) override;
    /// What was read before a fault stays in the objects.
    [[nodiscard]] BeforeChecked beforeChecked() const override { return BeforeChecked::Everything; }

private:
    friend class markup::PlainContent<DirectObjects>;
    friend class CheckedContent<DirectObjects>;

    /// What an attribute of a name says.
    enum class Word : std::uint8_t { None, Type, Nil, Namespace, Space };

    struct Name : ScopedName, CheckedName, markup::LeafName {
        Name(std::string_view bytes, std::uint64_t hash, std::u16string_view units,
             TNuSaxNamespaceList& namespaces, bool isExact);

        [[nodiscard]] std::u16string_view prefix() const noexcept {
            return units.substr(0, hasColon() ? localStart - 1 : 0);
        }

        std::u16string_view local; ///< behind the last colon
        Word word = Word::None;
        // Of an element: the property that it is in objects of a class, where that is a leaf.
        const host::TClassInfo* owner = nullptr;
        const host::TPropInfo* leaf = nullptr;
        Name* followers[3]{};
    };

    /// What an attribute said, and how surely it is the one that counts.
    struct Found {
        std::string_view value;
        int certainty = 0;
    };

    // For markup::PlainContent, see there.
    static constexpr bool isXml = false;
    static constexpr auto classifyText = markup::classifyReferences;
    [[nodiscard]] Name* nextElement() const noexcept { return *guess_; }
    [[nodiscard]] Name* open() const noexcept { return open_.empty() ? nullptr : open_.back(); }
    [[nodiscard]] bool keepsSpace() const noexcept { return scopes_->space.isPreserved(); }
    [[nodiscard]] bool keepsInline() const noexcept { return scopes_->space.keepsInline(); }
    [[nodiscard]] Name* element(std::string_view bytes);
    [[nodiscard]] Name* attribute(Name& before, std::string_view bytes);
    [[nodiscard]] Name* nextLeaf() const noexcept;
    bool takeLeaf(Name& name, std::string_view text, const markup::PassedKinds& kinds);
    bool startTag(Name& name, const char* less);
    [[nodiscard]] static constexpr bool addNothing() noexcept { return true; }
    bool addAttribute(Name& name, std::string_view value, const markup::PassedKinds& kinds);
    void abandonStartTag();
    bool endStartTag(bool isEmptyElement, const char* end);
    void endEmptyElement() noexcept { closeScopes(); }
    bool endElement(bool isInnermost, const char* /*end*/);
    bool endOuterElement(std::string_view /*name*/) { return endElement(true, nullptr); }
    bool addText(std::string_view text, const markup::PassedKinds& kinds);
    static constexpr bool addComment(std::string_view /*text*/, bool /*isAscii*/) noexcept {
        return true;
    }

    [[nodiscard]] Name* find(std::string_view bytes);
    bool declare(Name& name, std::string_view value);
    [[nodiscard]] std::u16string_view className();
    void lookUp(Name& name) const noexcept;
    bool startElement();
    bool startOther();
    bool addLeafText(std::string_view text, bool isVerbatim);
    [[nodiscard]] bool readLeafText();
    bool endEmpty();
    bool endOther();
    void settle();
    void lookAround() noexcept;
    void closeScopes() noexcept;

    ObjectEvents& events_;
    ObjectBuilder& builder_;
    const ReaderScopes* scopes_ = nullptr;
    markup::ByteNames<Name> names_;
    std::deque<NuXmlString> nameTexts_;
    std::vector<Name*> open_; ///< the names of the innermost elements, as far as they are known
    Name** guess_ = &unknown_;
    Name* unknown_ = nullptr;

    // Of the tag at hand.
    Name* elementName_ = nullptr;
    const char* less_ = nullptr;
    Found type_;
    Found nil_;
    bool hasMeaning_ = false; ///< one of these was looked at
    bool hasDeclarations_ = false;
    bool dependsOnScopes_ = false; ///< prefixes, or nil, may make the same tag mean something else
    std::string_view classBytes_;  ///< the last type attribute
    NuXmlString className_;        ///< the class that it names

    // What the builder is in.
    host::Instance object_; ///< whose element is the innermost; none inside of anything else
    bool wantsText_ = false;
    bool notesProperties_ = false;

    /// A property of that object whose element is open, and of which the builder does not know.
    const host::TPropInfo* leaf_ = nullptr;
    Name* leafName_ = nullptr;
    std::string_view leafBytes_; ///< its text, or
    NuXmlString text_;           ///< the same with references replaced
    bool hasText_ = false;
    bool isReplaced_ = false;
    CheckedContent<DirectObjects> checked_{*this};
};

} // namespace nu
