#include "nuXmlDOM/core/nameTable.h"

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

std::uint64_t mix(std::uint64_t value) noexcept {
    value *= 0x9E3779B97F4A7C15u;
    return value ^ value >> 32;
}

/// Four units at a time; names are short.
std::uint32_t hashOf(std::u16string_view text) noexcept {
    std::uint64_t hash = text.size();
    const NuXmlChar* unit = text.data();
    std::size_t left = text.size();
    std::uint64_t four = 0;
    for (; left > 4; left -= 4, unit += 4) {
        std::memcpy(&four, unit, sizeof four);
        hash = mix(hash ^ four);
    }
    four = 0;
    for (; left > 0; --left, ++unit) {
        four = four << 16 | *unit;
    }
    return static_cast<std::uint32_t>(mix(hash ^ four));
}

template <class Unit> const Unit* keep(DocumentMemory& memory, std::basic_string_view<Unit> text) {
    if (text.empty()) {
        return nullptr;
    }
    auto* copy = static_cast<Unit*>(memory.allocate(text.size() * sizeof(Unit)));
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

} // namespace

bool NameTable::matches(const NodeName& name, const Key& key) noexcept {
    return name.hash == key.hash && std::u16string_view(name.text, name.length) == key.text &&
           name.hasLocal == key.hasLocal &&
           (key.isSplitAtColon ? name.isSplitAtColon : name.prefixLength == key.prefixLength) &&
           name.creationURI() == key.uri;
}

const NodeName* NameTable::lookUp(const Key& key) {
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = key.hash & mask; places_[place] != nullptr;
         place = (place + 1) & mask) {
        if (matches(*places_[place], key)) {
            return places_[place];
        }
    }
    // The plain name is entered first; that may move the places.
    const NodeName* plain = nullptr;
    if (key.hasLocal && (!key.uri.empty() || !key.isSplitAtColon)) {
        plain = lookUp({key.text, {}, 0, key.hash, true, true});
    }
    if (count_ * 2 >= places_.size()) {
        grow();
    }
    NodeName* name = make(key);
    name->plain = plain != nullptr ? plain : name;
    enter(name);
    ++count_;
    hasDeclarations_ = hasDeclarations_ || name->isDeclaration;
    return name;
}

NodeName* NameTable::make(const Key& key) {
    if (std::max(key.text.size(), key.uri.size()) > std::numeric_limits<std::uint32_t>::max() / 4) {
        throw std::bad_alloc();
    }
    std::uint32_t prefixLength = key.prefixLength;
    if (key.isSplitAtColon) {
        const std::size_t colon = key.text.find(cNuColon);
        prefixLength = colon == std::u16string_view::npos ? NodeName::noPrefix
                                                          : static_cast<std::uint32_t>(colon);
    }
    const std::string utf8 = key.hasLocal ? NuToUtf8(key.text) : std::string();
    auto* name = static_cast<NodeName*>(memory_.allocate(sizeof(NodeName)));
    new (name) NodeName{};
    name->document = &document_;
    name->text = keep(memory_, key.text);
    name->length = static_cast<std::uint32_t>(key.text.size());
    name->prefixLength = prefixLength;
    name->uri = keep(memory_, key.uri);
    name->uriLength = static_cast<std::uint32_t>(key.uri.size());
    name->utf8Text = keep(memory_, std::string_view(utf8));
    name->utf8Length = static_cast<std::uint32_t>(utf8.size());
    name->hash = key.hash;
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
    : memory_(memory), document_(document), places_(32), nameless_(get(false, {}, false, {}, {})) {
    recent_.fill(nameless_);
}

const NodeName* NameTable::getFromTable(std::u16string_view qualified, std::u16string_view uri) {
    return lookUp({qualified, uri, 0, hashOf(qualified), true, true});
}

const NodeName* NameTable::get(bool hasPrefix, std::u16string_view prefix, bool hasLocal,
                               std::u16string_view local, std::u16string_view uri) {
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
    return lookUp({text, uri, prefixLength, hashOf(text), hasLocal, isSplitAtColon});
}

const NodeName* NameTable::find(std::u16string_view qualified) const noexcept {
    const std::uint32_t hash = hashOf(qualified);
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
