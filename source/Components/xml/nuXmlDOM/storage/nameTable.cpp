#include "nuXmlDOM/storage/nameTable.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "common/utf8.h"
#include "nuXmlDOM/storage/asciiText.h"
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

bool mayHave(const TextEnds& ends, NuXmlChar unit) noexcept {
    return hasZeroOfFour(ends.first ^ eachOfFour * unit) ||
           hasZeroOfFour(ends.last ^ eachOfFour * unit);
}

/// What making a name has to know of its text beside its ends.
struct NameText {
    bool hasSpace = false;
    std::uint32_t colon = NodeName::noPrefix; ///< the first one
};

NameText lookAt(std::u16string_view text, const TextEnds& ends) noexcept {
    // 1. Most names are so short that their ends are all of them, and have neither.
    constexpr std::size_t shortLength = 8;
    if (text.size() <= shortLength && !mayHave(ends, cNuSpace) && !mayHave(ends, cNuColon)) {
        return {};
    }
    // 2. The others unit by unit.
    const std::size_t colon = text.find(cNuColon);
    return {text.find(cNuSpace) != text.npos,
            colon == text.npos ? NodeName::noPrefix : static_cast<std::uint32_t>(colon)};
}

} // namespace

std::uint32_t NameTable::hashOf(std::u16string_view text) const noexcept {
    return static_cast<std::uint32_t>(hashText(keys_, text));
}

/// Names that read the same come in many forms, too: whatever tells two apart is hashed.
std::uint32_t NameTable::hashOf(const Key& key, std::uint32_t textHash) const noexcept {
    std::uint64_t hash = textHash;
    if (&key.uri != noURI_) {
        hash = mixHash(keys_, hash ^ std::uint64_t{key.uri.hash} << 32);
    }
    if (!key.isSplitAtColon) {
        hash = mixHash(keys_, hash ^ key.prefixLength);
    }
    return static_cast<std::uint32_t>(hash);
}

bool NameTable::matches(const NodeName& name, const Key& key) noexcept {
    return std::u16string_view(name.text, name.length) == key.text &&
           name.hasLocal == key.hasLocal && isForm(name, key);
}

/// The same for who knows already that they read the same.
bool NameTable::isForm(const NodeName& name, const Key& key) noexcept {
    return (key.isSplitAtColon ? name.isSplitAtColon : name.prefixLength == key.prefixLength) &&
           name.uri == &key.uri;
}

const NodeName* NameTable::lookUp(const Key& key) {
    const std::uint32_t textHash = hashOf(key.text);
    const std::uint32_t hash = hashOf(key, textHash);
    const auto find = [this](const Key& wanted, std::uint32_t itsHash) {
        return names_.find(itsHash, [&](const NodeName& name) { return matches(name, wanted); });
    };
    if (const NodeName* known = find(key, hash)) {
        return known;
    }
    if (!key.hasLocal || (&key.uri == noURI_ && key.isSplitAtColon)) {
        return add(key, hash);
    }
    // The canonical name comes first: names refer to it.
    const Key canonical{key.text, *noURI_, 0, true, true, key.utf8, key.colon};
    const NodeName* known = find(canonical, textHash);
    return addForm(known != nullptr ? *known : *add(canonical, textHash), key, hash);
}

const NodeName* NameTable::getForm(const NodeName& canonical, const NameURI& uri) {
    const Key key{canonical.qualified(), uri, 0, true, true};
    const std::uint32_t hash = hashOf(key, canonical.hash);
    const NodeName* known = names_.find(hash, [&](const NodeName& name) {
        return name.canonical == &canonical && isForm(name, key);
    });
    return known != nullptr ? known : addForm(canonical, key, hash);
}

void NameTable::noteDeclaration(NodeName& name) noexcept {
    name.isDeclaration =
        name.hasPrefix() ? name.prefix() == declarationPrefix : name.local() == declarationPrefix;
}

[[gnu::always_inline]] inline NodeName& NameTable::make(const Key& key, std::uint32_t hash) {
    checkLength(key.text);
    const std::size_t length = key.text.size();
    const std::size_t textSize = length * sizeof(NuXmlChar);
    const auto allocate = [&](std::size_t utf8Length) {
        return new (memory_.allocate(sizeof(NodeName) + textSize + utf8Length)) NodeName{};
    };
    const auto utf8Of = [textSize](NodeName* name) {
        return reinterpret_cast<char*>(name + 1) + textSize;
    };

    // 1. The name and its texts are one piece of memory. Nearly all names are ASCII: as UTF-8 they
    //    have as many bytes as units.
    std::string_view utf8 = key.utf8;
    std::size_t utf8Length = !key.hasLocal ? 0 : utf8.empty() ? length : utf8.size();
    NodeName* name = allocate(utf8Length);
    std::string encoded;
    if (utf8.empty() && key.hasLocal && !narrowAscii(key.text, utf8Of(name))) [[unlikely]] {
        memory_.release(name, sizeof(NodeName) + textSize + utf8Length);
        encoded = NuToUtf8(key.text);
        utf8 = encoded;
        utf8Length = utf8.size();
        name = allocate(utf8Length);
    }
    utf8.copy(utf8Of(name), utf8.size());
    auto* const units = reinterpret_cast<NuXmlChar*>(name + 1);
    std::copy(key.text.begin(), key.text.end(), units);

    // 2. What is known of it.
    name->ends = key.text.empty() ? TextEnds() : endsOf(key.text);
    const NameText known =
        key.utf8.empty() ? lookAt(key.text, name->ends) : NameText{false, key.colon};
    name->document = &document_;
    name->text = units;
    name->length = static_cast<std::uint32_t>(length);
    name->prefixLength = key.isSplitAtColon ? known.colon : key.prefixLength;
    name->uri = &key.uri;
    name->utf8Text = utf8Of(name);
    name->utf8Length = static_cast<std::uint32_t>(utf8Length);
    name->hash = hash;
    name->hasLocal = key.hasLocal;
    name->isSplitAtColon = key.isSplitAtColon;
    name->hasSpace = known.hasSpace;
    noteDeclaration(*name);
    return *name;
}

/// Enters a name that is not known and is the canonical name itself.
const NodeName* NameTable::add(const Key& key, std::uint32_t hash) {
    names_.reserve();
    NodeName& name = make(key, hash);
    name.canonical = &name;
    enter(name);
    return &name;
}

/// Enters another form of a name: it reads the same, so it has the same texts.
const NodeName* NameTable::addForm(const NodeName& canonical, const Key& key, std::uint32_t hash) {
    names_.reserve();
    auto& name = *new (memory_.allocate(sizeof(NodeName))) NodeName(canonical);
    name.uri = &key.uri;
    name.hash = hash;
    name.loadedElement = 0;
    name.loadedAttribute = nullptr;
    name.loadedFollowers = {};
    if (!key.isSplitAtColon) {
        name.isSplitAtColon = false;
        name.prefixLength = key.prefixLength;
        noteDeclaration(name);
    }
    enter(name);
    return &name;
}

void NameTable::enter(NodeName& name) noexcept {
    names_.enter(name);
    hasDeclarations_ = hasDeclarations_ || name.isDeclaration;
}

NameTable::NameTable(DocumentMemory& memory, TNuDOMDocument& document)
    : memory_(memory), document_(document), keys_(hashKeys()), noURI_(&makeURI({}, 0)),
      nameless_(lookUp({{}, *noURI_, NodeName::noPrefix, false, false})) {}

const NameURI& NameTable::getURI(std::u16string_view uri) {
    if (uri.empty()) {
        return *noURI_;
    }
    const auto hash = static_cast<std::uint32_t>(hashText(keys_, uri));
    NameURI* known = uris_.find(hash, [uri](const NameURI& made) { return made.view() == uri; });
    if (known == nullptr) {
        uris_.reserve();
        known = &makeURI(uri, hash);
        uris_.enter(*known);
    }
    return *known;
}

NameURI& NameTable::makeURI(std::u16string_view uri, std::uint32_t hash) {
    checkLength(uri);
    auto* place = static_cast<NameURI*>(memory_.allocate(sizeof(NameURI)));
    return *new (place) NameURI{keep(memory_, uri), static_cast<std::uint32_t>(uri.size()), hash};
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
    return names_.find(hashOf(qualified), [&](const NodeName& name) {
        return name.hasLocal && name.canonical == &name && name.qualified() == qualified;
    });
}

const NodeName* NameTable::find(std::u16string_view prefix, std::u16string_view local) const {
    NuXmlString qualified(prefix);
    qualified += cNuColon;
    qualified += local;
    return find(qualified);
}

} // namespace nu
