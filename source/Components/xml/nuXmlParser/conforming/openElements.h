#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/sourceText.h"
#include "nuXmlParser/markup/tagName.h"

namespace nu {

/// The names of the open elements, and where their start tags stand.
class OpenElements {
public:
    [[nodiscard]] std::size_t depth() const noexcept { return elements_.size(); }
    /// An element begins whose start tag stands at `offset` of the source's text.
    void open(markup::TagName& name, std::int64_t offset) {
        const std::size_t blockSize = name.head.bytes.size();
        makeRoom(name.text.size() + blockSize);
        const bool isShort = name.text.size() <= blockSize;
        std::memcpy(names_.data() + used_, isShort ? name.head.bytes.data() : name.text.data(),
                    isShort ? blockSize : name.text.size());
        elements_.push_back({&name, used_, offset, inWindow});
        used_ += name.text.size();
    }
    /// The same where nothing but the name is known.
    void open(std::string_view name, std::int64_t offset) {
        makeRoom(name.size());
        name.copy(names_.data() + used_, name.size());
        elements_.push_back({nullptr, used_, offset, inWindow});
        used_ += name.size();
    }
    /// The name of the innermost element.
    [[nodiscard]] std::string_view innermost() const noexcept {
        const std::size_t start = elements_.back().nameStart;
        return {names_.data() + start, used_ - start};
    }
    /// What is known of it; null where that is nothing, or was forgotten.
    [[nodiscard]] markup::TagName* innermostKnown() const noexcept { return elements_.back().name; }
    /// The line of its start tag.
    [[nodiscard]] std::int64_t innermostLine(const SourceText& source) const noexcept {
        const Element& element = elements_.back();
        return element.line != inWindow ? element.line
                                        : source.placeOf(source.placeAt(element.offset)).line;
    }
    /// The names of all of them, from the root down, with "/" between them.
    [[nodiscard]] std::string path() const;
    void close() noexcept {
        used_ = elements_.back().nameStart;
        elements_.pop_back();
    }
    /// What is known of names is about to go.
    void forgetNames() noexcept {
        for (Element& element : elements_) {
            element.name = nullptr;
        }
    }
    /// The text before `offset` is about to go from the source's window: the lines of elements that
    /// begin in it are settled, each once.
    void settleLines(SourceText& source, std::int64_t offset);

private:
    struct Element {
        markup::TagName* name;
        std::size_t nameStart;
        std::int64_t offset;
        std::int64_t line; ///< inWindow while the start tag is there
    };
    /// No line: a source may count from any number.
    static constexpr std::int64_t inWindow = std::numeric_limits<std::int64_t>::min();

    void makeRoom(std::size_t count) {
        if (names_.size() - used_ < count) {
            names_.resize(2 * (used_ + count));
        }
    }

    std::vector<Element> elements_;
    std::vector<char> names_; ///< the first `used_` of it
    std::size_t used_ = 0;
};

} // namespace nu
