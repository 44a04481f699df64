#include "nuXmlDOM/storage/nameTable.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "common/utf8.h"

namespace nu {

namespace {

constexpr std::u16string_view declarationName = u"xmlns";

void checkLength(std::u16string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max() / 4) {
        throw std::bad_alloc();
    }
}

template <class Unit> const Unit* keep(DocumentMemory& memory, std::basic_string_view<Unit> text) {
    if (text.empty()) {
        return nullptr;
    }
    auto* copy = static_cast<Unit*>(memory.allocate(text.size() * sizeof(Unit)));
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

std::string_view keepUtf8(DocumentMemory& memory, std::u16string_view text) {
    // Nearly all names are ASCII.
    if (text.empty() || !isAsciiText(text)) {
        const std::string utf8 = NuToUtf8(text);
        return {keep(memory, std::string_view(utf8)), utf8.size()};
    }
    auto* bytes = static_cast<char*>(memory.allocate(text.size()));
    static_cast<void>(narrowAscii(text, bytes));
    return {bytes, text.size()};
}

} // namespace

/// Names that read the same come in many forms, too: whatever tells two apart is hashed.
std::uint32_t NameTable::hashOf(const Key& key) const noexcept {
    std::uint64_t hash = hashText(keys_, key.text);
    if (&key.uri != noURI_) {
        hash = mixHash(keys_, hash ^ key.uri.hash);
    }
    if (!key.isSplitAtColon) {
        hash = mixHash(keys_, hash ^ key.prefixLength);
    }
    return static_cast<std::uint32_t>(hash);
}

bool NameTable::matches(const NodeName& name, const Key& key) noexcept {
    return std::u16string_view(name.text, name.length) == key.text &&
           name.hasLocal == key.hasLocal &&
           (key.isSplitAtColon ? name.isSplitAtColon : name.prefixLength == key.prefixLength) &&
           name.uri == &key.uri;
}

const NodeName* NameTable::find(const Key& key, std::uint32_t hash) const noexcept {
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = hash & mask; places_[place] != nullptr; place = (place + 1) & mask) {
        if (places_[place]->hash == hash && matches(*places_[place], key)) {
            return places_[place];
        }
    }
    return nullptr;
}

const NodeName* NameTable::lookUp(const Key& key) {
    const std::uint32_t hash = hashOf(key);
    if (const NodeName* known = find(key, hash)) {
        return known;
    }
    if (!key.hasLocal || (&key.uri == noURI_ && key.isSplitAtColon)) {
        return add(key, hash, nullptr);
    }
    // The plain name comes first: names refer to it.
    const Key plain{key.text, *noURI_, 0, true, true};
    const std::uint32_t plainHash = hashOf(plain);
    const NodeName* known = find(plain, plainHash);
    return add(key, hash, known != nullptr ? known : add(plain, plainHash, nullptr));
}

const NodeName* NameTable::add(const Key& key, std::uint32_t hash, const NodeName* plain) {
    if (count_ * 2 >= places_.size()) {
        grow();
    }
    NodeName* name = make(key, hash);
    name->plain = plain != nullptr ? plain : name;
    enter(name);
    ++count_;
    hasDeclarations_ = hasDeclarations_ || name->isDeclaration;
    return name;
}

NodeName* NameTable::make(const Key& key, std::uint32_t hash) {
    checkLength(key.text);
    std::uint32_t prefixLength = key.prefixLength;
    if (key.isSplitAtColon) {
        const std::size_t colon = key.text.find(cNuColon);
        prefixLength = colon == std::u16string_view::npos ? NodeName::noPrefix
                                                          : static_cast<std::uint32_t>(colon);
    }
    const std::string_view utf8 = key.hasLocal ? keepUtf8(memory_, key.text) : std::string_view();
    auto* name = static_cast<NodeName*>(memory_.allocate(sizeof(NodeName)));
    new (name) NodeName{};
    name->document = &document_;
    name->text = keep(memory_, key.text);
    name->length = static_cast<std::uint32_t>(key.text.size());
    name->prefixLength = prefixLength;
    name->uri = &key.uri;
    name->utf8Text = utf8.data();
    name->utf8Length = static_cast<std::uint32_t>(utf8.size());
    name->hash = hash;
    name->ends = key.text.empty() ? TextEnds() : TextEnds::of(key.text);
    name->hasLocal = key.hasLocal;
    name->isSplitAtColon = key.isSplitAtColon;
    name->hasSpace = key.text.find(cNuSpace) != std::u16string_view::npos;
    name->isDeclaration =
        name->hasPrefix() ? name->prefix() == declarationName : name->local() == declarationName;
    return name;
}

void NameTable::grow() {
    std::vector<NodeName*> places(places_.size() * 2);
    places.swap(places_);
    for (NodeName* name : places) {
        if (name != nullptr) {
            enter(name);
        }
    }
}

void NameTable::enter(NodeName* name) noexcept {
    const std::size_t mask = places_.size() - 1;
    std::size_t place = name->hash & mask;
    while (places_[place] != nullptr) {
        place = (place + 1) & mask;
    }
    places_[place] = name;
}

NameTable::NameTable(DocumentMemory& memory, TNuDOMDocument& document)
    : memory_(memory), document_(document), keys_(hashKeys()), places_(32), noURI_(&makeURI({})),
      nameless_(get(false, {}, false, {}, *noURI_)) {
    recent_.fill(nameless_);
}

const NameURI& NameTable::getURI(std::u16string_view uri) {
    if (uri.empty()) {
        return *noURI_;
    }
    const auto found = uris_.find(uri);
    if (found != uris_.end()) {
        return *found->second;
    }
    const NameURI& made = makeURI(uri);
    uris_.emplace(made.view(), &made);
    return made;
}

const NameURI& NameTable::makeURI(std::u16string_view uri) {
    checkLength(uri);
    auto* place = static_cast<NameURI*>(memory_.allocate(sizeof(NameURI)));
    return *new (place) NameURI{keep(memory_, uri), static_cast<std::uint32_t>(uri.size()),
                                static_cast<std::uint32_t>(hashText(keys_, uri))};
}

const NodeName* NameTable::getFromTable(std::u16string_view qualified, const NameURI& uri) {
    return lookUp({qualified, uri, 0, true, true});
}

const NodeName* NameTable::get(bool hasPrefix, std::u16string_view prefix, bool hasLocal,
                               std::u16string_view local, const NameURI& uri) {
    NuXmlString text(prefix);
    if (hasPrefix && hasLocal) {
        text += cNuColon;
    }
    text += local;
    const std::size_t colon = text.find(cNuColon);
    const auto prefixLength =
        hasPrefix ? static_cast<std::uint32_t>(prefix.size()) : NodeName::noPrefix;
    const bool isSplitAtColon =
        hasLocal &&
        prefixLength ==
            (colon == NuXmlString::npos ? NodeName::noPrefix : static_cast<std::uint32_t>(colon));
    return lookUp({text, uri, prefixLength, hasLocal, isSplitAtColon});
}

const NodeName* NameTable::find(std::u16string_view qualified) const noexcept {
    const std::uint32_t hash = hashOf({qualified, *noURI_, 0, true, true});
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = hash & mask; places_[place] != nullptr; place = (place + 1) & mask) {
        const NodeName& name = *places_[place];
        if (name.hash == hash && name.hasLocal && name.plain == &name &&
            name.qualified() == qualified) {
            return &name;
        }
    }
    return nullptr;
}

const NodeName* NameTable::find(std::u16string_view prefix, std::u16string_view local) const {
    NuXmlString qualified(prefix);
    qualified += cNuColon;
    qualified += local;
    return find(qualified);
}

} // namespace nu
