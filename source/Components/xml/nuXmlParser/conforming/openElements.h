#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/sourceText.h"

namespace nu {

/// The names of the open elements, and where their start tags stand.
class OpenElements {
public:
    [[nodiscard]] std::size_t depth() const noexcept { return elements_.size(); }
    /// An element begins whose start tag stands at `offset` of the source's text.
    void open(std::string_view name, std::int64_t offset) {
        elements_.push_back({names_.size(), offset, 0});
        names_.insert(names_.end(), name.begin(), name.end());
    }
    /// The name of the innermost element.
    [[nodiscard]] std::string_view innermost() const noexcept {
        const std::size_t start = elements_.back().nameStart;
        return {names_.data() + start, names_.size() - start};
    }
    /// The line of its start tag.
    [[nodiscard]] std::int64_t innermostLine(const SourceText& source) const noexcept {
        const Element& element = elements_.back();
        return element.line != 0 ? element.line
                                 : source.placeOf(source.placeAt(element.offset)).line;
    }
    void close() noexcept {
        names_.resize(elements_.back().nameStart);
        elements_.pop_back();
    }
    /// The text before `offset` is about to go from the source's window: the lines of elements that
    /// begin in it are settled, each once.
    void settleLines(const SourceText& source, std::int64_t offset);

private:
    struct Element {
        std::size_t nameStart;
        std::int64_t offset;
        std::int64_t line; ///< 0 while the start tag is in the window
    };

    std::vector<Element> elements_;
    std::vector<char> names_;
};

} // namespace nu
