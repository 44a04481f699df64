#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/textHash.h"
#include "nuXmlDOM/storage/asciiText.h"
#include "nuXmlDOM/storage/documentMemory.h"
#include "nuXmlDOM/storage/objectContext.h"
#include "nuXmlParser/chars.h"

class TNuDOMAttribute;
class TNuDOMElement;

namespace nu {

/// The first and the last units of a text that is not empty; together with the length all of a text
/// of up to eight.
struct TextEnds {
    std::uint64_t first = 0;
    std::uint64_t last = 0;

    static TextEnds of(std::u16string_view text) noexcept {
        const NuXmlChar* const units = text.data();
        const std::size_t length = text.size();
        if (length >= 4) [[likely]] {
            return {loadFour(units), loadFour(units + length - 4)};
        }
        return {units[0] | std::uint64_t{units[length / 2]} << 16, units[length - 1]};
    }
    friend bool operator==(const TextEnds&, const TextEnds&) noexcept = default;
};

/// A namespace URI that nodes were created with. There is one object for each in a document: many
/// names can share a long one, which is then neither copied nor compared for each.
struct NameURI {
    const NuXmlChar* text;
    std::uint32_t length;
    std::uint32_t hash;

    [[nodiscard]] std::u16string_view view() const noexcept { return {text, length}; }
};

/// What comes behind a name while a document is read.
enum class NameFollower : std::uint8_t {
    Attribute, ///< behind an element's name its first attribute, behind that the next
    Child,     ///< behind an element's name its first child element
    Sibling,   ///< behind an element's name the next element on the same level
};

/// The name of nodes: prefix, local name and the namespace URI that was given at their creation.
/// There is one object for each such name in a document, so equal names are equal pointers.
class NodeName : public ObjectContext {
public:
    static constexpr std::uint32_t noPrefix = 0xFFFFFFFF;

    /// Prefix, colon and local name as far as they are there; empty without a local name.
    [[nodiscard]] std::u16string_view qualified() const noexcept {
        return hasLocal ? std::u16string_view(text, length) : std::u16string_view();
    }
    [[nodiscard]] bool hasPrefix() const noexcept { return prefixLength != noPrefix; }
    [[nodiscard]] std::u16string_view prefix() const noexcept {
        return {text, hasPrefix() ? prefixLength : 0};
    }
    [[nodiscard]] std::u16string_view local() const noexcept {
        const std::size_t start = hasPrefix() ? prefixLength + std::size_t{1} : 0;
        return hasLocal ? std::u16string_view(text + start, length - start) : std::u16string_view();
    }
    [[nodiscard]] bool isNamed() const noexcept { return hasLocal || hasPrefix(); }
    /// The qualified name in UTF-8, as it is written.
    [[nodiscard]] std::string_view utf8() const noexcept { return {utf8Text, utf8Length}; }
    [[nodiscard]] std::u16string_view creationURI() const noexcept { return uri->view(); }
    /// Whether an attribute of this name declares a namespace: "xmlns" or "xmlns:…".
    [[nodiscard]] bool declaresNamespace() const noexcept { return isDeclaration; }

    const NuXmlChar* text;
    const NameURI* uri;
    const char* utf8Text;
    /// The name that reads the same, split at the first colon and without a creation URI: two names
    /// read the same when these are equal.
    const NodeName* plain;
    std::uint32_t length;
    std::uint32_t prefixLength;
    std::uint32_t utf8Length;
    std::uint32_t hash;
    TextEnds ends;
    bool hasLocal;
    /// Whether the prefix is what stands before the first colon.
    bool isSplitAtColon;
    bool isDeclaration;
    /// Whether a space stands in it, which only a parser's name can have.
    bool hasSpace;

    /// While elements are loaded: the number of the last one that got an attribute of this name,
    /// and that attribute. A number, because later elements may stand where former ones stood.
    mutable std::uint64_t loadedElement = 0;
    mutable TNuDOMAttribute* loadedAttribute = nullptr;
    /// While nodes are loaded: for each kind of follower the name of the last one; null before the
    /// first.
    mutable std::array<const NodeName*, 3> loadedFollowers{};
};

/// The names of one document.
class NameTable {
public:
    NameTable(DocumentMemory& memory, TNuDOMDocument& document);
    NameTable(const NameTable&) = delete;
    NameTable& operator=(const NameTable&) = delete;

    /// The name of nodes that have none yet.
    [[nodiscard]] const NodeName* nameless() const noexcept { return nameless_; }
    [[nodiscard]] const NameURI& noURI() const noexcept { return *noURI_; }
    [[nodiscard]] const NameURI& getURI(std::u16string_view uri);
    /// The name that reads `qualified`, split at the first colon.
    [[nodiscard]] const NodeName* get(std::u16string_view qualified) {
        return get(qualified, *noURI_);
    }
    [[nodiscard]] const NodeName* get(std::u16string_view qualified, const NameURI& uri) {
        // Nearly every name of a document has just been asked for.
        if (qualified.empty()) {
            return getFromTable(qualified, uri);
        }
        const TextEnds ends = TextEnds::of(qualified);
        const std::size_t place = recentPlace(ends, qualified, uri);
        if (readsSame(*recent_[place], ends, qualified, uri)) [[likely]] {
            return recent_[place];
        }
        // The place beside it belongs to the name that was last turned out of this one.
        std::swap(recent_[place], recent_[place ^ 1]);
        if (!readsSame(*recent_[place], ends, qualified, uri)) [[unlikely]] {
            recent_[place] = getFromTable(qualified, uri);
        }
        return recent_[place];
    }
    /// The same while nodes are loaded, for one that comes behind the name `before`: often it is
    /// the one that came there last time. `qualified` is not empty.
    [[nodiscard]] const NodeName* getFollower(const NodeName& before, NameFollower kind,
                                              std::u16string_view qualified, const NameURI& uri) {
        const NodeName*& guess = before.loadedFollowers[static_cast<std::size_t>(kind)];
        if (guess == nullptr || !readsSame(*guess, TextEnds::of(qualified), qualified, uri))
            [[unlikely]] {
            guess = get(qualified, uri);
        }
        return guess;
    }
    /// The same for who asks once and keeps the answer.
    [[nodiscard]] const NodeName* getRare(std::u16string_view qualified) {
        return getFromTable(qualified, *noURI_);
    }
    /// The name of these parts.
    [[nodiscard]] const NodeName* get(bool hasPrefix, std::u16string_view prefix, bool hasLocal,
                                      std::u16string_view local, const NameURI& uri);
    /// The same name as one of another document.
    [[nodiscard]] const NodeName* get(const NodeName& other) {
        return lookUp({std::u16string_view(other.text, other.length), getURI(other.creationURI()),
                       other.prefixLength, other.hasLocal, other.isSplitAtColon});
    }
    /// The plain name that reads so, or null when no node of the document ever had such a name.
    [[nodiscard]] const NodeName* find(std::u16string_view qualified) const noexcept;
    /// The same for the name "prefix:local".
    [[nodiscard]] const NodeName* find(std::u16string_view prefix, std::u16string_view local) const;
    /// All names for which `test` holds, in the order of their addresses.
    template <class Test> [[nodiscard]] std::vector<const NodeName*> select(Test&& test) const {
        std::vector<const NodeName*> names;
        std::copy_if(places_.begin(), places_.end(), std::back_inserter(names),
                     [&test](const NodeName* name) { return name != nullptr && test(*name); });
        std::sort(names.begin(), names.end(), std::less<>());
        return names;
    }
    /// Whether a namespace declaration was ever made in the document.
    [[nodiscard]] bool hasDeclarations() const noexcept { return hasDeclarations_; }
    /// A number for an element that is loaded, see NodeName::loadedElement.
    [[nodiscard]] std::uint64_t nextLoadedElement() noexcept { return ++loadedElements_; }

private:
    static constexpr std::size_t recentCount = 128;

    /// A place among the recent names, by what is quick to get hold of.
    static std::size_t recentPlace(const TextEnds& ends, std::u16string_view text,
                                   const NameURI& uri) noexcept {
        std::uint64_t mixed = ends.first * 0x9E3779B97F4A7C15u +
                              (ends.last ^ text.size() ^ uri.hash) * 0xC2B2AE3D27D4EB4Fu;
        if (text.size() > 8) {
            mixed += loadFour(text.data() + text.size() / 2 - 2) * 0x165667B19E3779F9u;
        }
        return static_cast<std::size_t>(mixed >> (64 - std::bit_width(recentCount - 1)));
    }
    static bool areEqual(const NuXmlChar* left, const NuXmlChar* right,
                         std::size_t length) noexcept {
        return length == 0 || std::memcmp(left, right, length * sizeof *left) == 0;
    }
    /// For names split at the first colon, which the recent ones all are.
    static bool readsSame(const NodeName& name, const TextEnds& ends, std::u16string_view qualified,
                          const NameURI& uri) noexcept {
        const std::size_t length = qualified.size();
        return name.ends == ends && name.length == length && name.uri == &uri &&
               (length <= 8 || areEqual(name.text + 4, qualified.data() + 4, length - 8));
    }
    [[nodiscard]] const NodeName* getFromTable(std::u16string_view qualified, const NameURI& uri);

    struct Key {
        std::u16string_view text;
        const NameURI& uri;
        std::uint32_t prefixLength;
        bool hasLocal;
        bool isSplitAtColon;
    };

    [[nodiscard]] static bool matches(const NodeName& name, const Key& key) noexcept;
    [[nodiscard]] const NameURI& makeURI(std::u16string_view uri);
    [[nodiscard]] std::uint32_t hashOf(const Key& key) const noexcept;
    [[nodiscard]] const NodeName* find(const Key& key, std::uint32_t hash) const noexcept;
    /// The name, which is entered where it is not known yet.
    [[nodiscard]] const NodeName* lookUp(const Key& key);
    /// Enters a name that is not known; without `plain` it is the plain name itself.
    [[nodiscard]] const NodeName* add(const Key& key, std::uint32_t hash, const NodeName* plain);
    [[nodiscard]] NodeName* make(const Key& key, std::uint32_t hash);
    void grow();
    void enter(NodeName* name) noexcept;

    DocumentMemory& memory_;
    TNuDOMDocument& document_;
    const HashKeys& keys_;
    /// Open addressing, a power of two of places.
    std::vector<NodeName*> places_;
    std::unordered_map<std::u16string_view, const NameURI*, TextHash> uris_;
    const NameURI* noURI_;
    std::array<const NodeName*, recentCount> recent_;
    std::size_t count_ = 0;
    bool hasDeclarations_ = false;
    std::uint64_t loadedElements_ = 0;
    /// The first name that is made, so it stands behind everything that making needs.
    const NodeName* nameless_;
};

} // namespace nu
