#include "nuObj2Xml/directObjects.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuObj2Xml/instanceAttributes.h"
#include "nuObj2Xml/leafValue.h"
#include "nuObj2Xml/objectEvents.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

namespace {

/// A document may have any number of names. Those beyond are left to the events, so that reading
/// takes no more memory the longer it goes on.
constexpr std::size_t mostNames = 4096;

bool isTrue(std::string_view value) noexcept {
    const auto isSame = [](char letter, char byte) { return letter == (byte | 0x20); };
    constexpr std::string_view word = "true";
    return value == "1" || std::equal(word.begin(), word.end(), value.begin(), value.end(), isSame);
}

/// Tells the builder that nobody knows the place of an error for a while.
class WithoutPlaces {
public:
    explicit WithoutPlaces(ObjectBuilder& builder) noexcept : builder_(builder) {
        builder_.knowsPlaces(false);
    }
    WithoutPlaces(const WithoutPlaces&) = delete;
    WithoutPlaces& operator=(const WithoutPlaces&) = delete;
    ~WithoutPlaces() { builder_.knowsPlaces(true); }

private:
    ObjectBuilder& builder_;
};

/// Whether an operation of the builder is done; false where it needs a place.
template <class Operation> bool isDone(Operation operation) {
    try {
        operation();
        return true;
    } catch (const ObjectBuilder::PlaceUnknown&) {
        return false;
    }
}

} // namespace

DirectObjects::Name::Name(std::string_view bytes, std::uint64_t hash, std::u16string_view units,
                          TNuSaxNamespaceList& namespaces, bool isExact)
    : ScopedName(bytes, hash, units, namespaces, isExact), local(units.substr(localStart)) {
    if (meaning != Meaning::None) {
        word = meaning == Meaning::Namespace ? Word::Namespace : Word::Space;
    } else if (local == u"type" || local == u"nil") {
        word = local == u"type" ? Word::Type : Word::Nil;
    }
}

DirectObjects::DirectObjects(ObjectEvents& events, ObjectBuilder& builder)
    : events_(events), builder_(builder) {}

void DirectObjects::read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) {
    if (scopes.depth < 1) {
        return;
    }
    scopes_ = &scopes;
    open_.clear();
    unknown_ = nullptr;
    guess_ = &unknown_;
    lookAround();
    events_.guarded([&] {
        const WithoutPlaces withoutPlaces(builder_);
        if (scopes.stage != nullptr) {
            checked_.read(bytes, passed, *scopes.stage);
        } else {
            markup::PlainContent(*this).read(bytes, passed);
        }
        settle();
    });
}

// Names

DirectObjects::Name* DirectObjects::find(std::string_view bytes) {
    const std::uint64_t hash = names_.hashOf(bytes);
    if (Name* name = names_.find(bytes, hash)) {
        return name;
    }
    const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < ' '; };
    if (nameTexts_.size() == mostNames || std::any_of(bytes.begin(), bytes.end(), isControl)) {
        return nullptr;
    }
    assignUtf8(nameTexts_.emplace_back(), bytes);
    return &names_.add(bytes, hash, nameTexts_.back(), scopes_->namespaces,
                       events_.reader_->IsBehindStage());
}

DirectObjects::Name* DirectObjects::element(std::string_view bytes) {
    return *guess_ = find(bytes);
}

DirectObjects::Name* DirectObjects::attribute(Name& before, std::string_view bytes) {
    return before.followers[markup::ByteName::Attribute] = find(bytes);
}

// Start tags

[[gnu::always_inline]] inline bool DirectObjects::startTag(Name& name, const char* less) {
    elementName_ = &name;
    less_ = less;
    type_ = {};
    nil_ = {};
    hasMeaning_ = false;
    hasDeclarations_ = false;
    dependsOnScopes_ = name.hasColon();
    return true;
}

[[gnu::always_inline]] inline bool DirectObjects::addAttribute(Name& name, std::string_view value,
                                                               const markup::PassedKinds& kinds) {
    dependsOnScopes_ = dependsOnScopes_ || name.hasColon() || name.word > Word::Type;
    switch (name.word) {
    case Word::None:
        return true;
    case Word::Space:
        return false;
    case Word::Namespace:
        return kinds.isVerbatim && declare(name, value);
    case Word::Type:
    case Word::Nil:
        break;
    }
    hasMeaning_ = true;
    const TNuSaxNamespace* const scope = name.scope->newest();
    const int certainty =
        certaintyOf(name.prefix(), scope != nullptr ? scope->URI : std::u16string_view());
    Found& found = name.word == Word::Type ? type_ : nil_;
    if (certainty > found.certainty) {
        found = {value, certainty};
    }
    return kinds.isVerbatim;
}

/// A prefix counts for what stands before its declaration, too; the events know how.
bool DirectObjects::declare(Name& name, std::string_view value) {
    if (hasMeaning_) {
        return false;
    }
    hasDeclarations_ = true;
    assignUtf8(text_, value);
    scopes_->namespaces.AddNamespace(scopes_->depth + 1, *name.declared, name.declaredPrefix,
                                     text_);
    return true;
}

/// Nobody will know that there was a tag.
void DirectObjects::abandonStartTag() {
    if (hasDeclarations_) {
        scopes_->namespaces.RemoveLevel(scopes_->depth + 1);
    }
}

[[gnu::always_inline]] inline bool DirectObjects::endStartTag(bool isEmptyElement,
                                                              const char* end) {
    if (!startElement() || (isEmptyElement && !endEmpty())) [[unlikely]] {
        abandonStartTag();
        return false;
    }
    if (leaf_ != nullptr && !dependsOnScopes_ && !isEmptyElement) {
        const char* const behindName = less_ + 1 + elementName_->text.size();
        elementName_->setTag({behindName, static_cast<std::size_t>(end + 1 - behindName)});
    }
    open_.push_back(elementName_);
    ++scopes_->depth;
    guess_ = &elementName_->followers[markup::ByteName::Child];
    return true;
}

[[gnu::always_inline]] inline bool DirectObjects::startElement() {
    // 1. An element inside of a leaf makes it known.
    if (leaf_ != nullptr) [[unlikely]] {
        settle();
    }
    // 2. Nearly always it is a leaf of an object.
    if (object_ && nil_.certainty == 0) [[likely]] {
        if (elementName_->owner != object_.info) [[unlikely]] {
            lookUp(*elementName_);
        }
        leaf_ = elementName_->leaf;
        leafName_ = elementName_;
        hasText_ = false;
        isReplaced_ = false;
        if (leaf_ != nullptr) [[likely]] {
            return true;
        }
    }
    // 3. Anything else is the builder's.
    return startOther();
}

void DirectObjects::lookUp(Name& name) const noexcept {
    const host::TPropInfo* const property = object_.info->findProperty(name.local);
    name.leaf = property != nullptr && isLeaf(*property) ? property : nullptr;
    name.owner = object_.info;
}

bool DirectObjects::startOther() {
    const bool isNil = isTrue(nil_.value);
    if (isNil && builder_.isStrict()) {
        return false;
    }
    if (!isDone([&] { events_.begin({elementName_->local, className(), isNil}); })) {
        return false;
    }
    lookAround();
    // The events make a tree of it, from its very start tag on.
    if (builder_.wantsTree()) {
        events_.hasBegun_ = true;
        return false;
    }
    return true;
}

/// Often it is the class of the object before.
std::u16string_view DirectObjects::className() {
    if (type_.value != classBytes_) {
        classBytes_ = type_.value;
        assignUtf8(className_, type_.value.substr(type_.value.find(cNuColonA) + 1));
    }
    return className_;
}

// Leaves

[[gnu::always_inline]] inline DirectObjects::Name* DirectObjects::nextLeaf() const noexcept {
    Name* const name = *guess_;
    const bool isLeaf = name != nullptr && name->hasTag() && name->leaf != nullptr &&
                        name->owner == object_.info && leaf_ == nullptr;
    return isLeaf ? name : nullptr;
}

[[gnu::always_inline]] inline bool DirectObjects::takeLeaf(Name& name, std::string_view text,
                                                           const markup::PassedKinds& kinds) {
    leaf_ = name.leaf;
    leafName_ = &name;
    isReplaced_ = false;
    const bool isRead = addLeafText(text, kinds.isVerbatim) && readLeafText();
    leaf_ = nullptr;
    if (isRead) [[likely]] {
        guess_ = &name.followers[markup::ByteName::Sibling];
    }
    return isRead;
}

// Ends and texts

[[gnu::always_inline]] inline bool DirectObjects::endElement(bool /*isInnermost*/,
                                                             const char* /*end*/) {
    // The end of a root is for the events to see.
    if (scopes_->depth <= 1) [[unlikely]] {
        return false;
    }
    if (leaf_ == nullptr) {
        if (!endOther()) {
            return false;
        }
    } else if (readLeafText()) [[likely]] {
        leaf_ = nullptr;
    } else {
        settle();
        return false;
    }
    closeScopes();
    return true;
}

/// Ends an element at its start tag; what cannot end has not begun.
bool DirectObjects::endEmpty() {
    if (leaf_ != nullptr) {
        const bool isRead = readLeafText();
        leaf_ = nullptr;
        return isRead;
    }
    const bool isEnded = endOther();
    events_.hasBegun_ = !isEnded;
    return isEnded;
}

[[gnu::always_inline]] inline bool DirectObjects::readLeafText() {
    const bool isRead = isReplaced_ ? readLeaf(*leaf_, object_.object, text_)
                                    : readLeaf(*leaf_, object_.object,
                                               hasText_ ? leafBytes_ : std::string_view(), text_);
    if (isRead && notesProperties_) {
        builder_.noteRead(*leaf_);
    }
    return isRead;
}

bool DirectObjects::endOther() {
    const bool isEnded = isDone([&] { events_.end(nullptr); });
    lookAround();
    return isEnded;
}

[[gnu::always_inline]] inline bool DirectObjects::addText(std::string_view text,
                                                          const markup::PassedKinds& kinds) {
    if (leaf_ != nullptr && !hasText_) [[likely]] {
        return addLeafText(text, kinds.isVerbatim);
    }
    settle();
    if (!wantsText_) {
        return true;
    }
    assignUtf8(text_, text);
    return isDone([&] { builder_.characters(text_, kinds.isVerbatim); });
}

[[gnu::always_inline]] inline bool DirectObjects::addLeafText(std::string_view text,
                                                              bool isVerbatim) {
    if (!isVerbatim) [[unlikely]] {
        try {
            assignReplaced(text_, text);
        } catch (const host::EConvertError&) {
            return false;
        }
        isReplaced_ = true;
    }
    leafBytes_ = text;
    hasText_ = true;
    return true;
}

/// Lets the builder know of a leaf and its text, as far as it came.
void DirectObjects::settle() {
    if (leaf_ == nullptr) {
        return;
    }
    leaf_ = nullptr;
    builder_.startElement({leafName_->local, {}, false});
    lookAround();
    if (hasText_) {
        if (!isReplaced_) {
            assignUtf8(text_, leafBytes_);
        }
        builder_.takeText(text_);
    }
}

/// What the builder is in now.
void DirectObjects::lookAround() noexcept {
    object_ = builder_.innermostObject();
    wantsText_ = builder_.wantsText();
    notesProperties_ = builder_.notesProperties();
}

[[gnu::always_inline]] inline void DirectObjects::closeScopes() noexcept {
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
}

} // namespace nu
