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
#include <vector>

#include "common/hashSlots.h"
#include "common/textHash.h"
#include "nuXmlDOM/storage/asciiWord.h"
#include "nuXmlDOM/storage/documentMemory.h"
#include "nuXmlDOM/storage/nodeName.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The ends of a text that is not empty.
inline TextEnds endsOf(std::u16string_view text) noexcept {
    const NuXmlChar* const units = text.data();
    const std::size_t length = text.size();
    if (length >= 4) [[likely]] {
        return {loadFour(units), loadFour(units + length - 4)};
    }
    return {units[0] | std::uint64_t{units[length / 2]} << 16, units[length - 1]};
}

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
        const TextEnds ends = endsOf(qualified);
        const std::size_t place = recentPlace(ends, qualified, uri);
        if (isRecent(place, ends, qualified, uri)) [[likely]] {
            return recent_[place];
        }
        // The place beside it belongs to the name that was last turned out of this one.
        std::swap(recent_[place], recent_[place ^ 1]);
        if (!isRecent(place, ends, qualified, uri)) [[unlikely]] {
            recent_[place] = getFromTable(qualified, uri);
        }
        return recent_[place];
    }
    /// The same while nodes are loaded, for one that comes behind the name `before`: often it is
    /// the one that came there last time. `qualified` is not empty.
    [[nodiscard]] const NodeName* getFollower(const NodeName& before, NameFollower kind,
                                              std::u16string_view qualified, const NameURI& uri) {
        const NodeName*& guess = before.loadedFollowers[static_cast<std::size_t>(kind)];
        if (guess == nullptr || !readsSame(*guess, endsOf(qualified), qualified, uri))
            [[unlikely]] {
            guess = get(qualified, uri);
        }
        return guess;
    }
    /// The same for who asks once and keeps the answer, and knows the name in UTF-8, that there is
    /// no space in it, and the place of its first colon, or NodeName::noPrefix.
    [[nodiscard]] const NodeName* getRare(std::u16string_view qualified, std::string_view utf8,
                                          std::uint32_t colon) {
        return lookUp({qualified, *noURI_, 0, true, true, utf8, colon});
    }
    /// The name with a creation URI that reads as `canonical`, which has none.
    [[nodiscard]] const NodeName* getForm(const NodeName& canonical, const NameURI& uri);
    /// The name of these parts.
    [[nodiscard]] const NodeName* get(bool hasPrefix, std::u16string_view prefix, bool hasLocal,
                                      std::u16string_view local, const NameURI& uri);
    /// The same name as one of another document.
    [[nodiscard]] const NodeName* get(const NodeName& other) {
        return lookUp({std::u16string_view(other.text, other.length), getURI(other.creationURI()),
                       other.prefixLength, other.hasLocal, other.isSplitAtColon});
    }
    /// The canonical name that reads so, or null when no node of the document ever had such a name.
    [[nodiscard]] const NodeName* find(std::u16string_view qualified) const noexcept;
    /// The same for the name "prefix:local".
    [[nodiscard]] const NodeName* find(std::u16string_view prefix, std::u16string_view local) const;
    /// All names for which `test` holds, in the order of their addresses.
    template <class Test> [[nodiscard]] std::vector<const NodeName*> select(Test&& test) const {
        std::vector<const NodeName*> names;
        const auto slots = names_.slots();
        std::copy_if(slots.begin(), slots.end(), std::back_inserter(names),
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
    [[nodiscard]] bool isRecent(std::size_t place, const TextEnds& ends,
                                std::u16string_view qualified, const NameURI& uri) const noexcept {
        return recent_[place] != nullptr && readsSame(*recent_[place], ends, qualified, uri);
    }
    [[nodiscard]] const NodeName* getFromTable(std::u16string_view qualified, const NameURI& uri);

    struct Key {
        std::u16string_view text;
        const NameURI& uri;
        std::uint32_t prefixLength;
        bool hasLocal;
        bool isSplitAtColon;
        std::string_view utf8{}; ///< the text in UTF-8; empty where that is not at hand
        std::uint32_t colon = 0; ///< with utf8: the place of the first one, or noPrefix
    };

    [[nodiscard]] static bool matches(const NodeName& name, const Key& key) noexcept;
    [[nodiscard]] static bool isForm(const NodeName& name, const Key& key) noexcept;
    [[nodiscard]] NameURI& makeURI(std::u16string_view uri, std::uint32_t hash);
    /// The hash of the canonical name that reads so.
    [[nodiscard]] std::uint32_t hashOf(std::u16string_view text) const noexcept;
    [[nodiscard]] std::uint32_t hashOf(const Key& key, std::uint32_t textHash) const noexcept;
    /// The name, which is entered where it is not known yet.
    [[nodiscard]] const NodeName* lookUp(const Key& key);
    [[nodiscard]] const NodeName* add(const Key& key, std::uint32_t hash);
    [[nodiscard]] const NodeName* addForm(const NodeName& canonical, const Key& key,
                                          std::uint32_t hash);
    [[nodiscard]] NodeName& make(const Key& key, std::uint32_t hash);
    static void noteDeclaration(NodeName& name) noexcept;
    void enter(NodeName& name) noexcept;

    DocumentMemory& memory_;
    TNuDOMDocument& document_;
    const HashKeys& keys_;
    HashSlots<NodeName, 64> names_;
    HashSlots<NameURI, 16> uris_;
    const NameURI* noURI_;
    std::array<const NodeName*, recentCount> recent_{};
    bool hasDeclarations_ = false;
    std::uint64_t loadedElements_ = 0;
    /// The first name that is made, so it stands behind everything that making needs.
    const NodeName* nameless_;
};

} // namespace nu
