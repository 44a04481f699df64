#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "nuXmlParser/conforming/elementWatch.h"
#include "nuXmlParser/conforming/namespaceBindings.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/outputText.h"
#include "nuXmlParser/conforming/sourceText.h"
#include "nuXmlParser/conforming/textStack.h"

namespace nu {

/// Lets a watch take elements out: what they become is written, and nothing else.
class WatchRules {
public:
    WatchRules(SourceText& source, OutputText& output, TextStack& texts,
               const OpenElements& elements, const NamespaceBindings& bindings) noexcept
        : source_(source), output_(output), texts_(texts), elements_(elements),
          bindings_(bindings) {}

    void set(ElementWatch& watch) noexcept {
        watch_ = &watch;
        output_.discard();
    }
    /// Whether the element whose start tag stands at `less` has to be asked about. To be asked of
    /// each, before it is begun.
    [[nodiscard]] [[gnu::always_inline]] bool isSought(std::string_view name, const char* less) {
        return watch_ != nullptr &&
               watch_->seeks(name, elements_.depth() + 1, texts_.offsetOf(less));
    }
    /// Asks about it, the place of the text being that of its start tag.
    void use(std::string_view name);
    /// Whether nothing from there on is wanted.
    [[nodiscard]] bool hasStopped() const noexcept { return hasStopped_; }
    /// An element has ended right before `behind`: perhaps what was asked about.
    [[gnu::always_inline]] void endElement(const char* behind) {
        if (elements_.depth() < usedDepth_) [[unlikely]] {
            endUsed(behind);
        }
    }
    /// Whether an element that was taken has just ended.
    [[nodiscard]] bool isTaken() const noexcept { return isTaken_; }
    [[nodiscard]] bool takeTaken() noexcept { return std::exchange(isTaken_, false); }

private:
    void endUsed(const char* behind);

    SourceText& source_;
    OutputText& output_;
    TextStack& texts_;
    const OpenElements& elements_;
    const NamespaceBindings& bindings_;
    ElementWatch* watch_ = nullptr; ///< null inside of what it was asked about
    ElementWatch* owner_ = nullptr; ///< of the element that it was asked about
    std::size_t usedDepth_ = 0;     ///< of that element; 0 outside of any
    bool isTaken_ = false;
    bool hasStopped_ = false;
};

} // namespace nu
