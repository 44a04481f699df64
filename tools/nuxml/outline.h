#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "console.h"
#include "documentHandler.h"

namespace tool {

/// The first few different texts of something, cut where they are long.
class Examples {
public:
    /// Takes a text unless there are enough.
    void add(std::u16string_view text);
    [[nodiscard]] bool isFull() const noexcept { return texts_.size() == most; }
    [[nodiscard]] const std::vector<std::u16string>& texts() const noexcept { return texts_; }

    static constexpr std::size_t longest = 32; ///< units of an example

private:
    static constexpr std::size_t most = 3;

    std::vector<std::u16string> texts_;
};

/// All elements that have the same names from the document element down to them.
struct OutlineNode {
    struct Attribute {
        std::u16string name;
        std::uint64_t count = 0;
        Examples values{};
    };

    std::u16string name;
    std::size_t depth = 0;
    std::uint64_t count = 0;
    std::vector<Attribute> attributes{};
    Examples texts{};
    std::vector<std::size_t> children{}; ///< as they came
    std::map<std::u16string, std::size_t, std::less<>> childOf{};
    std::uint64_t hiddenChildren = 0; ///< elements below that are only counted
};

/// Sums up a document while it is read. However long that is, the memory stays within bounds: of
/// documents with very many different paths the later ones are only counted.
class Outline final : public DocumentHandler<> {
public:
    Outline(std::string_view name, Progress& progress) : title_(name), progress_(progress) {}

    /// The nodes, a parent before its children; the first one is the document element.
    [[nodiscard]] const std::vector<OutlineNode>& nodes() const noexcept { return nodes_; }
    [[nodiscard]] std::uint64_t elementCount() const noexcept { return elementCount_; }
    [[nodiscard]] std::uint64_t attributeCount() const noexcept { return attributeCount_; }
    [[nodiscard]] std::size_t depth() const noexcept { return greatestDepth_; }

    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;

private:
    static constexpr std::size_t mostNodes = 20'000;
    static constexpr std::size_t mostAttributes = 64; ///< of a node

    std::size_t enter(std::u16string_view qName);
    void endText();
    void addAttributes(OutlineNode& node, host::IBufferedAttributes& attributes);

    std::string title_;
    Progress& progress_;
    std::vector<OutlineNode> nodes_;
    std::vector<std::size_t> open_;
    std::size_t uncounted_ = 0; ///< open elements below one that is not told apart any more
    std::u16string text_;       ///< of the innermost element, as far as it is an example
    std::uint64_t elementCount_ = 0;
    std::uint64_t attributeCount_ = 0;
    std::size_t greatestDepth_ = 0;
};

} // namespace tool
