#include "nuXmlDOM/load/directLoader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <limits>

#include "common/simd/block.h"
#include "common/utf8.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/storage/escapedText.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/nodeMemory.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlSax/reader.h"

namespace nu {

namespace {

/// UTF-8 that is known to be well-formed.
NuXmlString widened(std::string_view bytes) {
    NuXmlString text(bytes.size(), u'\0');
    text.resize(NuDecodeUtf8Prefix(bytes, text.data()).Units);
    return text;
}

/// Whether a value that is unescaped and escaped again comes back as it was: where no references
/// stand in it but those that escaping itself writes.
bool isAsEscaped(std::string_view value) noexcept {
    static constexpr std::string_view references[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
    for (std::size_t place = value.find_first_of("&<>'"); place != value.npos;
         place = value.find_first_of("&<>'", place + 1)) {
        const std::string_view rest = value.substr(place);
        if (std::none_of(std::begin(references), std::end(references),
                         [rest](std::string_view known) { return rest.starts_with(known); })) {
            return false;
        }
    }
    return true;
}

} // namespace

/// What markup::PlainContent tells of the start tag of the root.
class DirectLoader::RootTag {
public:
    using Name = DirectLoader::Name;
    static constexpr bool isXml = false;

    explicit RootTag(DirectLoader& loader) noexcept : loader_(loader) {}

    [[nodiscard]] Name* nextElement() const noexcept { return nullptr; }
    [[nodiscard]] Name* element(std::string_view bytes) { return loader_.find(bytes); }
    [[nodiscard]] Name* attribute(Name& before, std::string_view bytes) {
        return loader_.attribute(before, bytes);
    }
    bool startTag(Name& name, const char* less) { return loader_.startTag(name, less); }
    [[nodiscard]] bool addNothing() const noexcept { return loader_.addNothing(); }
    bool addAttribute(Name& name, std::string_view value, const markup::PassedKinds& kinds) {
        return loader_.addAttribute(name, value, kinds);
    }
    void abandonStartTag() noexcept { loader_.abandonStartTag(); }
    bool endStartTag(bool isEmptyElement, const char* end);
    void endEmptyElement() noexcept {}

private:
    DirectLoader& loader_;
};

DirectLoader::DirectLoader(TNuSaxToDomHandler& handler, TNuDOMDocument& document, bool isHeard)
    : handler_(handler), document_(document), limits_(document.Limits().Reading), isHeard_(isHeard),
      wasEmpty_(document.get_firstChild() == nullptr),
      asksForEnds_(isHeard ||
                   limits_.NameLength < std::numeric_limits<decltype(limits_.NameLength)>::max()) {
    constexpr std::size_t usualDepth = 16;
    open_.reserve(usualDepth);
}

void DirectLoader::read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) {
    current_ = as<TNuDOMElement>(handler_.current_);
    const bool isAtRoot =
        scopes.depth == 0 && handler_.current_ == &document_ && document_.GetRootNode() == nullptr;
    if (!isAtRoot && (scopes.depth < 1 || current_ == nullptr)) {
        return;
    }
    scopes_ = &scopes;
    open_.clear();
    unknown_ = nullptr;
    guess_ = &unknown_;
    handler_.remember([&] {
        if (isAtRoot) {
            RootTag root(*this);
            if (!markup::PlainContent(root).readTag(bytes, passed)) {
                return;
            }
            bytes.remove_prefix(static_cast<std::size_t>(passed.end - bytes.data()));
            handler_.current_ = current_;
        }
        // With a stage nobody has checked these bytes before, so that they are checked here.
        if (scopes.stage != nullptr) {
            if (!checked_) {
                checked_.emplace(*this);
            }
            checked_->read(bytes, passed, *scopes.stage);
        } else {
            markup::PlainContent(*this).read(bytes, passed);
        }
        handler_.current_ = current_;
    });
}

void DirectLoader::undo() {
    handler_.startAnew(document_);
    document_.Clear();
}

// Names

DirectLoader::Name* DirectLoader::find(std::string_view bytes) {
    const std::uint64_t hash = names_.hashOf(bytes);
    if (Name* name = names_.find(bytes, hash)) {
        return name;
    }
    if (bytes.size() > limits_.NameLength && NuUtf16Length(bytes) > limits_.NameLength) {
        return nullptr;
    }
    // 1. Control characters would have to be dropped, and no space is in a name. Nearly all names
    // are ASCII, each unit a byte.
    std::array<char16_t, markup::ByteName::longestGuess> shortUnits;
    NuXmlString longUnits;
    char16_t* units = shortUnits.data();
    if (bytes.size() > shortUnits.size()) {
        longUnits.resize(bytes.size() + simd::blockSize);
        units = longUnits.data();
    }
    std::uint32_t colon = NodeName::noPrefix;
    unsigned beyondAscii = 0;
    for (std::size_t start = 0; start < bytes.size(); start += simd::blockSize) {
        const auto block = simd::Block::load(bytes.data() + start);
        const std::size_t left = bytes.size() - start;
        const unsigned own = left < simd::blockSize ? (1U << left) - 1 : 0xFFFFU;
        if ((block.isAtMost(cNuSpaceA).mask() & own) != 0) {
            return nullptr;
        }
        const unsigned colons = block.equals(simd::Block::all(cNuColonA)).mask() & own;
        if (colons != 0 && colon == NodeName::noPrefix) {
            colon = static_cast<std::uint32_t>(start) +
                    static_cast<std::uint32_t>(std::countr_zero(colons));
        }
        beyondAscii |= block.mask() & own;
        block.widen(units + start);
    }
    // 2. The others are decoded.
    std::size_t length = bytes.size();
    if (beyondAscii != 0) {
        length = NuDecodeUtf8Prefix(bytes, units).Units;
        colon = colon == NodeName::noPrefix
                    ? colon
                    : static_cast<std::uint32_t>(NuUtf16Length(bytes.substr(0, colon)));
    }
    return &names_.add(bytes, hash, *document_.parts().names.getRare({units, length}, bytes, colon),
                       scopes_->namespaces, handler_.Reader().IsBehindStage());
}

DirectLoader::Name* DirectLoader::element(std::string_view bytes) { return *guess_ = find(bytes); }

DirectLoader::Name* DirectLoader::attribute(Name& before, std::string_view bytes) {
    return before.followers[markup::ByteName::Attribute] = find(bytes);
}

/// The name of an element that stands in the scopes as they are now.
[[gnu::always_inline]] inline const NodeName* DirectLoader::resolve(Name& name) {
    const TNuSaxNamespace* const scope = name.scope->newest();
    const std::uint64_t number = scope != nullptr ? scope->Number : 0;
    if (name.scopeNumber != number) [[unlikely]] {
        resolveAnew(name, scope);
    }
    return name.element;
}

/// A long URI is looked at once for each declaration, however many names it is for.
void DirectLoader::resolveAnew(Name& name, const TNuSaxNamespace* scope) {
    if (scope == nullptr) {
        name.element = name.attribute;
        name.scopeNumber = 0;
        return;
    }
    if (uris_.size() <= scope->Number) {
        uris_.resize(scope->Number + 1);
    }
    const NameURI*& uri = uris_[scope->Number];
    if (uri == nullptr) {
        uri = &document_.parts().names.getURI(scope->URI);
    }
    name.element = document_.parts().names.getForm(*name.attribute, *uri);
    name.scopeNumber = scope->Number;
}

// Start tags

[[gnu::always_inline]] inline bool DirectLoader::startTag(Name& name, const char* /*less*/) {
    if (scopes_->depth >= limits_.Depth) [[unlikely]] {
        return false;
    }
    // Under the name that it had last: declarations in the tag count for it, too.
    element_ = &NodeMemory::make<TNuDOMElement>(document_, name.element);
    elementName_ = &name;
    lastAttribute_ = nullptr;
    ++elementNumber_;
    attributesLeft_ = limits_.Attributes;
    hasMeaning_ = false;
    return true;
}

[[gnu::always_inline]] inline bool DirectLoader::addAttribute(Name& name, std::string_view value,
                                                              const markup::PassedKinds& kinds) {
    if (attributesLeft_-- == 0) [[unlikely]] {
        return false;
    }
    if (name.meaning != ScopedName::Meaning::None) [[unlikely]] {
        apply(name, value);
    }
    if (!kinds.isVerbatim && !isAsEscaped(value)) [[unlikely]] {
        return addReplaced(name, value);
    }
    textFor(name).load(document_.parts().memory, value, kinds.isAscii);
    return true;
}

/// The text of an attribute that is new, unless the element already got one of that name.
[[gnu::always_inline]] inline StoredText& DirectLoader::textFor(Name& name) {
    if (name.loadedElement != elementNumber_) [[likely]] {
        auto& attribute = NodeMemory::make<TNuDOMAttribute>(document_, name.attribute);
        ElementLinks::append(*element_, lastAttribute_, attribute);
        lastAttribute_ = &attribute;
        name.loadedElement = elementNumber_;
        name.loadedAttribute = &attribute;
    }
    return NodeText::stored(*name.loadedAttribute);
}

/// References in the value are replaced, and what is kept is escaped again. False where one of them
/// is wrong: the tag is then not plain, and the handler finds out the same.
bool DirectLoader::addReplaced(Name& name, std::string_view value) {
    NuXmlString replaced;
    try {
        replaced = NuXMLToStr(widened(value));
    } catch (const host::Exception&) {
        return false;
    }
    assignEscaped(textFor(name), document_.parts().memory, replaced);
    return true;
}

/// Declarations open a scope; xml:space decides about the element's own white space.
void DirectLoader::apply(Name& name, std::string_view value) {
    const std::int32_t level = scopes_->depth + 1;
    hasMeaning_ = true;
    if (name.meaning == ScopedName::Meaning::Space) {
        if (value == "preserve" || value == "default") {
            scopes_->space.set(level, value == "preserve");
        }
        return;
    }
    // Often it declares what it did the last time.
    TNuSaxNamespaceList& namespaces = scopes_->namespaces;
    if (value == name.declaredValue &&
        namespaces.addAgain(level, *name.declared, name.declaredNumber)) {
        return;
    }
    uri_.resize(value.size());
    uri_.resize(NuDecodeUtf8Prefix(value, uri_.data()).Units);
    namespaces.AddNamespace(level, *name.declared, name.declaredPrefix, uri_);
    name.declaredValue = value;
    name.declaredNumber = name.declared->newest()->Number;
}

/// Takes back what the attributes of the tag have said of what is inside of it.
void DirectLoader::forgetMeaning() noexcept {
    scopes_->namespaces.RemoveLevel(scopes_->depth + 1);
    scopes_->space.close(scopes_->depth + 1);
}

/// Nobody will know that there was a tag.
void DirectLoader::abandonStartTag() noexcept {
    if (hasMeaning_) {
        forgetMeaning();
    }
    NodeMemory::destroySubtree(*element_);
}

/// The name of the element of the tag at hand, in the scopes that its attributes have made; false
/// where it draws a warning.
[[gnu::always_inline]] inline bool DirectLoader::settleName() {
    if (isHeard_ && elementName_->hasColon() && elementName_->scope->newest() == nullptr)
        [[unlikely]] {
        abandonStartTag();
        return false;
    }
    const NodeName* const former = elementName_->element;
    if (const NodeName* const resolved = resolve(*elementName_); resolved != former) [[unlikely]] {
        NodeContext::setName(*element_, resolved);
    }
    return true;
}

[[gnu::always_inline]] inline void DirectLoader::enterElement() {
    open_.push_back(elementName_);
    current_ = element_;
    ++scopes_->depth;
    guess_ = &elementName_->followers[markup::ByteName::Child];
}

[[gnu::always_inline]] inline bool DirectLoader::endStartTag(bool isEmptyElement,
                                                             const char* /*end*/) {
    if (!settleName()) [[unlikely]] {
        return false;
    }
    ElementLinks::append(*current_, *element_);
    if (isEmptyElement) {
        if (hasMeaning_) [[unlikely]] {
            forgetMeaning();
        }
        guess_ = &elementName_->followers[markup::ByteName::Sibling];
        return true;
    }
    enterElement();
    return true;
}

/// The root goes below the document. One without content ends outside of all elements, where the
/// handler goes on.
bool DirectLoader::RootTag::endStartTag(bool isEmptyElement, const char* /*end*/) {
    if (isEmptyElement) {
        abandonStartTag();
        return false;
    }
    if (!loader_.settleName()) {
        return false;
    }
    try {
        loader_.element_->_linkToParent(&loader_.document_, rdpLast, nullptr);
    } catch (...) {
        abandonStartTag();
        throw;
    }
    loader_.enterElement();
    return true;
}

// Ends and texts

[[gnu::always_inline]] inline bool DirectLoader::endElement(bool isInnermost, const char* /*end*/) {
    // The end of a root is for the handler to see.
    if (scopes_->depth <= 1 || (!isInnermost && asksForEnds_)) [[unlikely]] {
        return false;
    }
    closeScopes();
    return true;
}

[[gnu::always_inline]] inline void DirectLoader::closeScopes() noexcept {
    scopes_->namespaces.RemoveLevel(scopes_->depth);
    scopes_->space.close(scopes_->depth);
    --scopes_->depth;
    if (open_.empty()) [[unlikely]] {
        unknown_ = nullptr;
        guess_ = &unknown_;
    } else {
        guess_ = &open_.back()->followers[markup::ByteName::Sibling];
        open_.pop_back();
    }
    current_ = static_cast<TNuDOMElement*>(current_->get_parentNode());
}

template <class Node>
[[gnu::always_inline]] inline void DirectLoader::append(std::string_view text, bool isAscii) {
    auto& node = NodeMemory::make<Node>(document_, document_.parts().names.nameless());
    NodeText::stored(node).load(document_.parts().memory, text, isAscii);
    ElementLinks::append(*current_, node);
}

[[gnu::always_inline]] inline bool DirectLoader::addText(std::string_view text,
                                                         const markup::PassedKinds& kinds) {
    append<TNuDOMText>(text, kinds.isAscii);
    return true;
}

bool DirectLoader::addComment(std::string_view text, bool isAscii) {
    append<TNuDOMComment>(text, isAscii);
    return true;
}

} // namespace nu
