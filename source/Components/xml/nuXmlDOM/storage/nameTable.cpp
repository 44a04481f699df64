#include "nuXmlDOM/storage/nameTable.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "common/utf8.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

namespace {

void checkLength(std::u16string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max() / 4) {
        throw std::bad_alloc();
    }
}

const NuXmlChar* keep(DocumentMemory& memory, std::u16string_view text) {
    if (text.empty()) {
        return nullptr;
    }
    auto* copy = static_cast<NuXmlChar*>(memory.allocate(text.size() * sizeof(NuXmlChar)));
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

/// What making a name has to know of its text.
struct NameText {
    explicit NameText(std::u16string_view text) noexcept {
        unsigned all = 0;
        for (std::size_t index = 0; index < text.size(); ++index) {
            const NuXmlChar unit = text[index];
            all |= unit;
            hasSpace |= unit == cNuSpace;
            if (unit == cNuColon && colon == NodeName::noPrefix) {
                colon = static_cast<std::uint32_t>(index);
            }
        }
        isAscii = all < 0x80;
    }

    bool isAscii = true;
    bool hasSpace = false;
    std::uint32_t colon = NodeName::noPrefix; ///< the first one
};

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
    // The canonical name comes first: names refer to it.
    const Key canonical{key.text, *noURI_, 0, true, true};
    const std::uint32_t canonicalHash = hashOf(canonical);
    const NodeName* known = find(canonical, canonicalHash);
    return add(key, hash, known != nullptr ? known : add(canonical, canonicalHash, nullptr));
}

const NodeName* NameTable::add(const Key& key, std::uint32_t hash, const NodeName* canonical) {
    if (count_ * 2 >= places_.size()) {
        grow();
    }
    NodeName* name = make(key, hash);
    name->canonical = canonical != nullptr ? canonical : name;
    enter(name);
    ++count_;
    hasDeclarations_ = hasDeclarations_ || name->isDeclaration;
    return name;
}

NodeName* NameTable::make(const Key& key, std::uint32_t hash) {
    checkLength(key.text);
    // 1. Nearly all names are ASCII: as UTF-8 they have as many bytes as units.
    const NameText known(key.text);
    const std::string utf8 = known.isAscii ? std::string() : NuToUtf8(key.text);
    const std::size_t utf8Length = !key.hasLocal   ? 0
                                   : known.isAscii ? key.text.size()
                                                   : utf8.size();

    // 2. The name and its texts are one piece of memory.
    const std::size_t textSize = key.text.size() * sizeof(NuXmlChar);
    auto* name = static_cast<NodeName*>(memory_.allocate(sizeof(NodeName) + textSize + utf8Length));
    new (name) NodeName{};
    auto* const units = reinterpret_cast<NuXmlChar*>(name + 1);
    auto* const bytes = reinterpret_cast<char*>(units + key.text.size());
    std::copy(key.text.begin(), key.text.end(), units);
    if (known.isAscii && key.hasLocal) {
        std::transform(key.text.begin(), key.text.end(), bytes,
                       [](NuXmlChar unit) { return static_cast<char>(unit); });
    } else {
        utf8.copy(bytes, utf8Length);
    }

    // 3. What is known of it.
    name->document = &document_;
    name->text = units;
    name->length = static_cast<std::uint32_t>(key.text.size());
    name->prefixLength = key.isSplitAtColon ? known.colon : key.prefixLength;
    name->uri = &key.uri;
    name->utf8Text = bytes;
    name->utf8Length = static_cast<std::uint32_t>(utf8Length);
    name->hash = hash;
    name->ends = key.text.empty() ? TextEnds() : endsOf(key.text);
    name->hasLocal = key.hasLocal;
    name->isSplitAtColon = key.isSplitAtColon;
    name->hasSpace = known.hasSpace;
    name->isDeclaration = name->hasPrefix() ? name->prefix() == declarationPrefix
                                            : name->local() == declarationPrefix;
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
        if (name.hash == hash && name.hasLocal && name.canonical == &name &&
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
