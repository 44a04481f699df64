#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/markup/plainContent.h"
#include "nuXmlSax/checkedContent.h"
#include "nuXmlSax/directContent.h"
#include "nuXmlSax/scopedName.h"

namespace nu {

/// Builds the plain parts of a document, nearly all of it, from its bytes. What it leaves comes to
/// the handler, event by event; both build at the same place.
class DirectLoader final : public DirectContent {
public:
    /// \param isHeard whether somebody hears of what only draws a warning: it is left to the
    /// handler
    DirectLoader(TNuSaxToDomHandler& handler, TNuDOMDocument& document, bool isHeard);

    void read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) override;
    [[nodiscard]] BeforeChecked beforeChecked() const override {
        return wasEmpty_ ? BeforeChecked::Undoable : BeforeChecked::Nothing;
    }
    void undo() override;

private:
    friend class markup::PlainContent<DirectLoader>;
    friend class CheckedContent<DirectLoader>;
    class RootTag;

    struct Name : ScopedName, CheckedName {
        Name(std::string_view bytes, std::uint64_t hash, const NodeName& named,
             TNuSaxNamespaceList& namespaces, bool isExact)
            : ScopedName(bytes, hash, named.qualified(), namespaces, isExact), attribute(&named),
              element(&named) {}

        const NodeName* attribute; ///< the name without a creation URI
        // Of a declaration: the last value and its number.
        std::string_view declaredValue;
        std::uint64_t declaredNumber = 0;
        /// The name with the URI of the scope that has this number, the last one an element had.
        const NodeName* element;
        std::uint64_t scopeNumber = 0;
        std::uint64_t loadedElement = 0; ///< the last one that had an attribute of this name
        TNuDOMAttribute* loadedAttribute = nullptr;
        Name* followers[3]{};
    };

    // For markup::PlainContent, see there.
    static constexpr bool isXml = false;
    static constexpr auto classifyText = markup::classifyText;
    [[nodiscard]] Name* nextElement() const noexcept { return *guess_; }
    [[nodiscard]] Name* open() const noexcept { return open_.empty() ? nullptr : open_.back(); }
    [[nodiscard]] bool keepsSpace() const noexcept { return scopes_->space.isPreserved(); }
    [[nodiscard]] bool keepsInline() const noexcept { return scopes_->space.keepsInline(); }
    [[nodiscard]] Name* element(std::string_view bytes);
    [[nodiscard]] Name* attribute(Name& before, std::string_view bytes);
    bool startTag(Name& name, const char* less);
    [[nodiscard]] bool addNothing() const noexcept { return !isHeard_; }
    bool addAttribute(Name& name, std::string_view value, const markup::PassedKinds& kinds);
    void abandonStartTag() noexcept;
    bool endStartTag(bool isEmptyElement, const char* /*end*/);
    bool settleName();
    void enterElement();
    void endEmptyElement() noexcept {} // its start tag has done that
    bool endElement(bool isInnermost, const char* /*end*/);
    bool endOuterElement(std::string_view /*name*/) { return endElement(true, nullptr); }
    bool addText(std::string_view text, const markup::PassedKinds& kinds);
    bool addComment(std::string_view text, bool isAscii);
    template <class Node> void append(std::string_view text, bool isAscii);

    [[nodiscard]] Name* find(std::string_view bytes);
    [[nodiscard]] const NodeName* resolve(Name& name);
    void resolveAnew(Name& name, const TNuSaxNamespace* scope);
    [[nodiscard]] StoredText& textFor(Name& name);
    bool addReplaced(Name& name, std::string_view value);
    void apply(Name& name, std::string_view value);
    void closeScopes() noexcept;
    void forgetMeaning() noexcept;

    TNuSaxToDomHandler& handler_;
    TNuDOMDocument& document_;
    TNuSaxLimits limits_;
    bool isHeard_;
    bool wasEmpty_;
    bool asksForEnds_; ///< end tags that do not fit their elements draw warnings, or faults
    const ReaderScopes* scopes_ = nullptr;
    markup::ByteNames<Name> names_;

    TNuDOMElement* current_ = nullptr; ///< the innermost element
    std::vector<Name*> open_; ///< the names of the innermost elements, as far as they are known
    /// Where the name of the next element was kept last time: with that of the element that
    /// started or ended last.
    Name** guess_ = &unknown_;
    Name* unknown_ = nullptr;

    // Of the tag at hand.
    TNuDOMElement* element_ = nullptr;
    Name* elementName_ = nullptr;
    TNuDOMAttribute* lastAttribute_ = nullptr;
    std::uint64_t elementNumber_ = 0;
    std::size_t attributesLeft_ = 0;   ///< that the limits allow
    std::vector<const NameURI*> uris_; ///< by the numbers of their declarations
    NuXmlString uri_;         ///< of the last declaration; its memory serves again and again
    bool hasMeaning_ = false; ///< an attribute has changed the scopes
    std::optional<CheckedContent<DirectLoader>> checked_; ///< once it is asked for
};

} // namespace nu
