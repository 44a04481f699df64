#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/path/pathFilter.h"
#include "nuXmlDOM/path/pathTree.h"

namespace nu {

/// What one step of a path finds from a context. Made once for a selection, used for every context
/// that the step before gives.
class StepSearch {
public:
    StepSearch(const PathProgram& program, const PathStep& step, TNuDOMDocument& document,
               PathWork& work);

    /// Appends the nodes that the step gives from `context`; with soCreate the one that it makes
    /// when there is none. Throws host::Exception for the mistake of the step.
    void find(TNuDOMNode& context, PathNodes& found);

    /// Whether the step gives all children of one name, or all child elements. These may then be
    /// taken one by one, because nothing fails or changes on the way.
    [[nodiscard]] bool isSimple() const noexcept { return isSimple_; }
    /// The first of them; null for none.
    [[nodiscard]] TNuDOMNode* firstMatch(TNuDOMNode& context) {
        TNuDOMNode* const node = matchBelow(context);
        settleVisits();
        return node;
    }
    /// The one after `node`.
    [[nodiscard]] TNuDOMNode* nextMatch(const TNuDOMNode& node) {
        TNuDOMNode* const next = matchFrom(NodeLinks::next(node));
        settleVisits();
        return next;
    }

private:
    /// Which of the nodes that the step matches are kept at once, as far as its first filter can
    /// be followed while they are found.
    enum class Keep : std::uint8_t { all, tested, last };

    [[nodiscard]] TNuDOMNode* matchBelow(TNuDOMNode& context) noexcept {
        const bool isUnknown = isNameExact_ && name_ == nullptr;
        return isUnknown ? nullptr : matchFrom(firstOfNamed(context));
    }
    [[nodiscard]] TNuDOMNode* matchFrom(TNuDOMNode* child) noexcept;
    /// Tells of the nodes that were looked at since the last time.
    void settleVisits() {
        work_.visit(visits_);
        visits_ = 0;
    }
    void match(TNuDOMNode& context, PathNodes& found);
    template <class Test> void matchBelowNamed(TNuDOMNode& context, PathNodes& found, Test&& test);
    template <class Test> bool matchInTreeOrder(TNuDOMNode& context, PathNodes& found, Test&& test);
    template <class Test> void matchByParents(TNuDOMNode& context, PathNodes& found, Test&& test);
    void matchAtEach(TNuDOMNode& context, PathNodes& found);
    void matchHere(TNuDOMNode& context, PathNodes& found);
    void addAttributes(TNuDOMNode& context, PathNodes& found);
    [[nodiscard]] bool isKept(TNuDOMNode& node) const;
    void add(TNuDOMNode& node, PathNodes& found) const;
    [[nodiscard]] bool isNamed(const TNuDOMNode& node) const noexcept;
    [[nodiscard]] bool hasName(const TNuDOMNode& node);
    TNuDOMNode& create(TNuDOMNode& context);

    const PathProgram& program_;
    const PathStep& step_;
    TNuDOMDocument& document_;
    PathWork& work_;
    std::uint64_t visits_ = 0;
    bool isCreating_;
    /// A candidate may be found more than once.
    bool mayRepeat_;
    /// Nodes that have names are looked for, by that; texts and comments have none.
    bool seeksNamed_;
    /// Nodes of exactly one name are looked for: name_, which is null when there is none such.
    bool isNameExact_;
    bool isSimple_;
    const NodeName* name_ = nullptr;
    /// What hasName found out last, by the place of the name.
    struct Verdict {
        const NodeName* name = nullptr;
        bool isMatch = false;
    };
    std::array<Verdict, 8> verdicts_{};
    Keep keep_ = Keep::all;
    /// The first filter; for Keep::tested.
    std::optional<FilterTest> test_;
    /// Where in the found nodes those of the current context begin.
    std::size_t first_ = 0;
    /// First children that wait until it is their turn.
    PathNodes waiting_;
};

/// Whether a node has exactly the name that is looked for.
inline bool StepSearch::isNamed(const TNuDOMNode& node) const noexcept {
    return NodeContext::name(node).canonical == name_;
}

inline TNuDOMNode* StepSearch::matchFrom(TNuDOMNode* child) noexcept {
    std::uint64_t visits = 0;
    for (; child != nullptr; child = NodeLinks::next(*child)) {
        fetchAhead(*child);
        ++visits;
        if (isNameExact_ ? isNamed(*child) : is<TNuDOMElement>(*child)) {
            break;
        }
    }
    visits_ += visits;
    return child;
}

} // namespace nu
