#pragma once

#include <cstdint>
#include <vector>

namespace nu {

/// Whether white space alone between tags is kept: what xml:space says for the innermost element,
/// inherited by its children. Only elements that change it are remembered.
class SpaceStack {
public:
    /// What is kept whatever elements say.
    enum class Always : std::uint8_t {
        Nothing,
        Inline, ///< what has no line break
        All,
    };

    /// A document begins, whatever was said before.
    void start(Always always) noexcept {
        isPreserved_ = always == Always::All;
        always_ = always;
        changes_.clear();
    }
    [[nodiscard]] bool isPreserved() const noexcept { return isPreserved_; }
    /// Whether white space that is not preserved is kept all the same where it has no line break.
    [[nodiscard]] bool keepsInline() const noexcept { return always_ == Always::Inline; }
    /// The element at `depth`, the innermost one, says so.
    void set(std::int32_t depth, bool isPreserved) {
        if (always_ == Always::All) {
            return;
        }
        if (changes_.empty() || changes_.back().depth != depth) {
            changes_.push_back({depth, isPreserved_});
        }
        isPreserved_ = isPreserved;
    }
    /// The element at `depth` ends. A surplus end tag finds nothing to take away.
    void close(std::int32_t depth) noexcept {
        if (!changes_.empty() && changes_.back().depth == depth) {
            isPreserved_ = changes_.back().wasPreserved;
            changes_.pop_back();
        }
    }

private:
    struct Change {
        std::int32_t depth;
        bool wasPreserved;
    };

    bool isPreserved_ = false;
    Always always_ = Always::Nothing;
    std::vector<Change> changes_;
};

} // namespace nu
