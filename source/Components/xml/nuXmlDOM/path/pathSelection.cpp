#include "nuXmlDOM/path/pathSelection.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/path/pathMessages.h"
#include "nuXmlDOM/path/pathTree.h"
#include "nuXmlDOM/path/stepSearch.h"

namespace nu {

namespace {

/// What of the nodes at a path somebody wants.
enum class Wanted : std::uint8_t { all, firstNode, firstElement };

bool isOther(const TNuDOMNode* node) { return !is<TNuDOMElement>(*node); }

/// One alternative of a path, run from its start node.
class AlternativeSelection {
public:
    AlternativeSelection(const PathProgram& program, const PathAlternative& alternative,
                         TNuDOMDocument& document, PathWork& work, Wanted wanted)
        : candidates_(alternative.steps.size()), work_(work), wanted_(wanted) {
        searches_.reserve(alternative.steps.size());
        for (const PathStep& step : alternative.steps) {
            searches_.emplace_back(program, step, document, work);
        }
    }

    /// Depth first: what the first candidate of a step leads to comes before the second.
    void run(TNuDOMNode& start, PathNodes& result) {
        const std::size_t last = searches_.size() - 1;
        if (last == 0) {
            findResults(start, result);
            return;
        }
        std::size_t depth = 0;
        candidates_[0].find(searches_[0], start);
        for (;;) {
            // 1. A step that is done goes back to the one before.
            TNuDOMNode* const candidate = candidates_[depth].take(searches_[depth]);
            if (candidate == nullptr) {
                if (depth == 0) {
                    return;
                }
                --depth;
                continue;
            }
            // 2. What can have no children takes no further step.
            if (!isPathContext(*candidate)) {
                continue;
            }
            // 3. The last step gives the results, every other one candidates.
            if (depth + 1 == last) {
                findResults(*candidate, result);
                if (isEnough(result)) {
                    return;
                }
            } else {
                ++depth;
                candidates_[depth].find(searches_[depth], *candidate);
            }
        }
    }

private:
    /// What a step found and has not yet taken the next step.
    struct Candidates {
        PathNodes nodes;
        std::size_t next = 0;
        /// For simple steps, which need not gather them.
        TNuDOMNode* upcoming = nullptr;

        void find(StepSearch& search, TNuDOMNode& context) {
            if (search.isSimple()) {
                upcoming = search.firstMatch(context);
                return;
            }
            nodes.clear();
            next = 0;
            search.find(context, nodes);
        }
        /// The next of them; null at the end.
        TNuDOMNode* take(StepSearch& search) {
            if (!search.isSimple()) {
                return next < nodes.size() ? nodes[next++] : nullptr;
            }
            TNuDOMNode* const node = upcoming;
            if (node != nullptr) {
                upcoming = search.nextMatch(*node);
            }
            return node;
        }
    };

    /// The last step. What it gives for one context is no more than the document, so this is often
    /// enough to look at the limit.
    void findResults(TNuDOMNode& context, PathNodes& result) {
        searches_.back().find(context, result);
        work_.checkResult(result.size());
    }

    [[nodiscard]] bool isEnough(const PathNodes& result) const noexcept {
        return (wanted_ == Wanted::firstNode && !result.empty()) ||
               (wanted_ == Wanted::firstElement &&
                !std::all_of(result.begin(), result.end(), isOther));
    }

    std::vector<StepSearch> searches_;
    std::vector<Candidates> candidates_;
    PathWork& work_;
    Wanted wanted_;
};

/// Where an alternative starts.
///
/// Deliberate: a leading "." starts at the parent and "..", at the grandparent, and the steps "."
/// and ".." come on top of that: both lead one level further up than in XPath.
TNuDOMNode& startOf(const PathAlternative& alternative, TNuDOMNode& context,
                    TNuDOMDocument& document) {
    int levels = 0;
    switch (alternative.start) {
    case PathStart::Document:
        return document;
    case PathStart::Context:
        break;
    case PathStart::Parent:
        levels = 1;
        break;
    case PathStart::Grandparent:
        levels = 2;
        break;
    }
    TNuDOMNode* start = &context;
    for (int level = 0; level < levels; ++level) {
        start = NodeLinks::parent(*start);
        if (start == nullptr) {
            throw host::Exception(messages::noParentNode);
        }
    }
    return *start;
}

} // namespace

void PathWork::failVisits() const {
    throw ENuDomException(host::formatMessage(messages::tooManyVisits, {mostVisits_}));
}

void PathWork::failResult() const {
    throw ENuDomException(host::formatMessage(messages::tooManyNodes, {mostNodes_}));
}

void selectNodes(const PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                 PathNodes& result, PathWork& work) {
    TNuDOMDocument& document = *context.OwnerDocument();
    for (const PathAlternative& alternative : program.alternatives) {
        TNuDOMNode& start = startOf(alternative, context, document);
        checkOptions(program.options);
        AlternativeSelection(program, alternative, document, work, Wanted::all).run(start, result);
    }
    if (elementsOnly) {
        result.erase(std::remove_if(result.begin(), result.end(), isOther), result.end());
    }
}

TNuDOMNode* firstSelected(const PathProgram& program, TNuDOMNode& context, bool elementsOnly) {
    TNuDOMDocument& document = *context.OwnerDocument();
    const Wanted wanted = elementsOnly ? Wanted::firstElement : Wanted::firstNode;
    PathWork work(document.Limits());
    for (const PathAlternative& alternative : program.alternatives) {
        TNuDOMNode& start = startOf(alternative, context, document);
        checkOptions(program.options);
        PathNodes found;
        AlternativeSelection(program, alternative, document, work, wanted).run(start, found);
        const auto first =
            elementsOnly ? std::find_if_not(found.begin(), found.end(), isOther) : found.begin();
        if (first != found.end()) {
            return *first;
        }
    }
    return nullptr;
}

namespace {

void checkFound(std::u16string_view path, TNuDOMSelectOptions options, const TNuDOMNode* found) {
    if (found == nullptr && options.has(soRaise)) {
        throw ENuDomException(host::formatMessage(messages::noNodeForPath, {path}));
    }
}

} // namespace

TNuDOMNode* singleNode(std::u16string_view path, TNuDOMSelectOptions options,
                       const PathNodes& found) {
    // Deliberate: more than one is as good as none.
    TNuDOMNode* node = found.size() == 1 ? found.front() : nullptr;
    checkFound(path, options, node);
    return node;
}

TNuDOMElement* singleElement(std::u16string_view path, TNuDOMSelectOptions options,
                             const PathNodes& found) {
    if (found.size() > 1) {
        throw ENuDomException(host::formatMessage(messages::moreThanOne, {path}));
    }
    TNuDOMNode* node = found.empty() ? nullptr : found.front();
    checkFound(path, options, node);
    return static_cast<TNuDOMElement*>(node);
}

} // namespace nu
