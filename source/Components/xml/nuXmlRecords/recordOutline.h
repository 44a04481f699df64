#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace nu {

/// The elements of one record as views into its XML, children of one name together: what a line of
/// JSON or a row of columns needs, and less than a tree. Its memory serves one record after the
/// other.
class RecordOutline {
public:
    using Index = std::uint32_t;
    static constexpr Index none = std::numeric_limits<Index>::max();

    struct Attribute {
        std::string_view name;
        std::string_view value; ///< as it is written
    };
    /// A run of text without markup in it.
    struct Text {
        std::string_view text;
        bool isCData; ///< otherwise it may hold references
        Index next;
    };
    struct Element {
        std::string_view name;
        Index parent;
        Index firstAttribute;
        Index behindAttributes;
        Index firstText = none;
        Index lastText = none;
        Index firstChild = none; ///< the first one of the first name
        Index lastFirst = none;  ///< the first one of the last name
        Index nextName = none;   ///< of a first one: the first one of the next name in the parent
        Index nextSame = none;   ///< the next one of the same name in the parent
        Index lastSame = none;   ///< of a first one
        Index nameCount = 0;     ///< of different names among the children
        bool hasSolidText = false;
    };

    /// \param xml well-formed, attributes in double quotes; stays as long as the outline is used
    void read(std::string_view xml);

    [[nodiscard]] static constexpr Index root() noexcept { return 0; }
    [[nodiscard]] const Element& operator[](Index index) const noexcept { return elements_[index]; }
    [[nodiscard]] const Attribute& attribute(Index index) const noexcept {
        return attributes_[index];
    }
    [[nodiscard]] const Text& text(Index index) const noexcept { return texts_[index]; }
    /// Whether an element is no more than its text.
    [[nodiscard]] bool isText(Index index) const noexcept {
        const Element& element = elements_[index];
        return element.firstChild == none && element.firstAttribute == element.behindAttributes;
    }

private:
    /// So many names of children are compared with each other.
    static constexpr Index fewNames = 8;

    const char* readStartTag(const char* less, const char* end, Index& open);
    void enter(Index index, Index parentIndex);
    [[nodiscard]] Index findFirst(Index parent, std::string_view name) const noexcept;
    [[nodiscard]] std::size_t slotOf(Index parent, std::string_view name) const noexcept;
    void remember(Index first);
    void addText(Index element, std::string_view text, bool isCData);

    std::vector<Element> elements_;
    std::vector<Attribute> attributes_;
    std::vector<Text> texts_;
    std::vector<Index> remembered_; ///< first ones behind the few, by the hash of parent and name
    std::size_t rememberedCount_ = 0;
};

/// Appends what XML text means: references become characters.
void appendUnescaped(std::string& target, std::string_view text);

} // namespace nu
