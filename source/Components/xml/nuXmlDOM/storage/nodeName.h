#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "nuXmlDOM/storage/objectContext.h"
#include "nuXmlParser/chars.h"

class TNuDOMAttribute;

namespace nu {

/// The first and the last units of a text that is not empty; together with the length all of a text
/// of up to eight.
struct TextEnds {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
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
    const NodeName* canonical;
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

} // namespace nu
