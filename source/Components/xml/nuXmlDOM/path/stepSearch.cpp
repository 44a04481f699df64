#include "nuXmlDOM/path/stepSearch.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/path/pathComplaints.h"
#include "nuXmlDOM/path/pathMessages.h"
#include "nuXmlDOM/upkeep/documentParts.h"

namespace nu {

namespace {

bool hasText(TNuDOMNode& child, std::uint64_t& visits) {
    auto* element = as<TNuDOMElement>(&child);
    if (element == nullptr) {
        return false;
    }
    const auto children = element->ChildNodes();
    return std::any_of(children.begin(), children.end(), [&visits](const TNuDOMNode& node) {
        ++visits;
        return is<TNuDOMText>(node) && !node.get_nodeValue().empty();
    });
}

} // namespace

StepSearch::StepSearch(const PathProgram& program, const PathStep& step, TNuDOMDocument& document,
                       PathWork& work)
    : program_(program), step_(step), document_(document), work_(work),
      isCreating_(program.options.has(soCreate)),
      mayRepeat_(step.isDeep && (step.test == PathTest::Parent || step.test == PathTest::Self)),
      seeksNamed_(step.test == PathTest::Name && !step.name.starts_with(u'#')),
      isNameExact_(seeksNamed_ && !program.options.has(soCaseInsensitive) &&
                   !program.options.has(soIgnoreNamespace)),
      isSimple_((isNameExact_ || step.test == PathTest::EveryElement) && !step.isDeep &&
                step.filters.empty() && step.mistake == PathMistake::None && !isCreating_) {
    if (isNameExact_) {
        name_ = document.parts().names.find(step.name);
    }
    if (step.filters.empty()) {
        return;
    }
    const PathFilter& filter = step.filters.front();
    if (FilterTest::isPure(program, filter)) {
        test_.emplace(program, filter, document, work);
        keep_ = Keep::tested;
    } else if (filter.kind == TNuXPathFilter::ftLastChildElement && !mayRepeat_) {
        keep_ = Keep::last;
    }
}

void StepSearch::find(TNuDOMNode& context, PathNodes& found) {
    if (isSimple_) {
        for (TNuDOMNode* node = matchBelow(context); node != nullptr;
             node = matchFrom(NodeLinks::next(*node))) {
            found.push_back(node);
        }
        settleVisits();
        return;
    }
    if (step_.mistake != PathMistake::None) {
        throw host::Exception(textOf(step_.mistake));
    }
    first_ = found.size();
    // 1. What the step matches, by its first filter if possible.
    match(context, found);
    settleVisits();
    // 2. The filters that look at all candidates together.
    for (std::size_t index = keep_ == Keep::all ? 0 : 1; index < step_.filters.size(); ++index) {
        applyFilter(program_, step_.filters[index], mayRepeat_, found, first_, work_);
    }
    // 3. What is missing.
    if (isCreating_ && found.size() == first_) {
        found.push_back(&create(context));
    }
}

/// Whether a match is a candidate.
inline bool StepSearch::isKept(TNuDOMNode& node) const {
    return keep_ != Keep::tested || (*test_)(node);
}

[[gnu::always_inline]] inline void StepSearch::add(TNuDOMNode& node, PathNodes& found) const {
    if (keep_ == Keep::last) {
        found.resize(first_);
    }
    found.push_back(&node);
}

void StepSearch::match(TNuDOMNode& context, PathNodes& found) {
    if (isNameExact_ && name_ == nullptr) {
        // A name that soCreate makes becomes known only then.
        name_ = isCreating_ ? document_.parts().names.find(step_.name) : nullptr;
        if (name_ == nullptr) {
            return;
        }
    }
    if (!step_.isDeep) {
        matchHere(context, found);
    } else if (isNameExact_) {
        matchBelowNamed(context, found, [&](auto& node) { return isNamed(node); });
    } else if (seeksNamed_) {
        matchBelowNamed(context, found, [&](auto& node) { return hasName(node); });
    } else if (step_.test == PathTest::EveryElement) {
        matchByParents(context, found, [](auto& node) { return is<TNuDOMElement>(node); });
    } else {
        matchAtEach(context, found);
    }
}

/// Finds what the step gives from `context` and from each element below it.
void StepSearch::matchAtEach(TNuDOMNode& context, PathNodes& found) {
    std::uint64_t visits = 0;
    for (TNuDOMNode* node = &context; node != nullptr; node = nextElement(*node, context, visits)) {
        matchHere(*node, found);
    }
    visits_ += visits;
}

/// Finds the nodes of a name below `context`.
template <class Test>
void StepSearch::matchBelowNamed(TNuDOMNode& context, PathNodes& found, Test&& test) {
    if (!matchInTreeOrder(context, found, test)) {
        matchByParents(context, found, test);
    }
}

/// Finds the nodes of a name below `context` in one walk, which takes half the time because nodes
/// lie in memory in the order of the document. That order is the right one as long as no candidate
/// follows one that lies deeper below the same parent; gives false, and adds nothing, when one
/// does.
template <class Test>
bool StepSearch::matchInTreeOrder(TNuDOMNode& context, PathNodes& found, Test&& test) {
    // The levels up to `closed` had a candidate below them since their parent was entered.
    std::size_t closed = 0;
    std::size_t level = 1;
    TNuDOMNode* node = firstOfNamed(context);
    std::uint64_t visits = 0;
    while (node != nullptr) {
        fetchAhead(*node);
        ++visits;
        // 1. The node.
        if (test(*node) && isKept(*node)) {
            if (level <= closed) {
                found.resize(first_);
                visits_ += visits;
                return false;
            }
            add(*node, found);
            closed = level - 1;
        }
        // 2. Down, else on, else up until it goes on.
        TNuDOMNode* next = is<TNuDOMElement>(*node) ? firstOfNamed(*node) : nullptr;
        if (next != nullptr) {
            closed = std::min(closed, level);
            ++level;
        } else {
            while ((next = NodeLinks::next(*node)) == nullptr) {
                node = NodeLinks::parent(*node);
                if (node == &context) {
                    visits_ += visits;
                    return true;
                }
                --level;
            }
        }
        node = next;
    }
    return true;
}

/// Finds the nodes among the children of `context`, then among those of each element below it in
/// the order of the document.
template <class Test>
void StepSearch::matchByParents(TNuDOMNode& context, PathNodes& found, Test&& test) {
    std::uint64_t visits = 1;
    walkByParents(context, waiting_, [&](TNuDOMNode& child) {
        // Each counts for itself and for what it has.
        visits += is<TNuDOMElement>(child) ? 3 : 2;
        if (test(child) && isKept(child)) {
            add(child, found);
        }
        return true;
    });
    visits_ += visits;
}

void StepSearch::matchHere(TNuDOMNode& context, PathNodes& found) {
    const auto addIf = [&](TNuDOMNode* child, auto&& test) {
        for (; child != nullptr; child = NodeLinks::next(*child)) {
            fetchAhead(*child);
            ++visits_;
            if (test(*child) && isKept(*child)) {
                add(*child, found);
            }
        }
    };
    ++visits_;
    switch (step_.test) {
    case PathTest::EveryAttribute:
    case PathTest::Attribute:
        addAttributes(context, found);
        return;
    case PathTest::Parent:
        if (TNuDOMNode* parent = NodeLinks::parent(context)) {
            if (isKept(*parent)) {
                add(*parent, found);
            }
        }
        return;
    case PathTest::Self:
        if (isKept(context)) {
            add(context, found);
        }
        return;
    case PathTest::EveryNode:
        addIf(firstPathChild(context), [](TNuDOMNode&) { return true; });
        return;
    case PathTest::ElementWithText:
        addIf(firstOfNamed(context), [&](TNuDOMNode& child) { return hasText(child, visits_); });
        return;
    case PathTest::Name:
        if (!isNameExact_) {
            addIf(seeksNamed_ ? firstOfNamed(context) : firstPathChild(context),
                  [&](TNuDOMNode& child) { return hasName(child); });
            return;
        }
        [[fallthrough]];
    case PathTest::EveryElement:
        for (TNuDOMNode* child = matchBelow(context); child != nullptr;
             child = matchFrom(NodeLinks::next(*child))) {
            if (isKept(*child)) {
                add(*child, found);
            }
        }
        return;
    }
}

void StepSearch::addAttributes(TNuDOMNode& context, PathNodes& found) {
    auto* element = as<TNuDOMElement>(&context);
    if (element == nullptr) {
        return;
    }
    for (TNuDOMAttribute& attribute : element->Attributes()) {
        ++visits_;
        const bool isMatch = step_.test == PathTest::EveryAttribute ||
                             NuEqualFolded(attribute.get_localName(), step_.name);
        if (isMatch && isKept(attribute)) {
            add(attribute, found);
        }
    }
}

/// Whether a node has the name of the step by the options of the path. Many nodes have one name, so
/// what came out for it last is kept.
bool StepSearch::hasName(const TNuDOMNode& node) {
    const NodeName& own = NodeContext::name(node);
    const bool isLocal = program_.options.has(soIgnoreNamespace);
    if (own.isNamed()) {
        Verdict& verdict = verdicts_[reinterpret_cast<std::uintptr_t>(&own) / alignof(NodeName) %
                                     verdicts_.size()];
        if (verdict.name != &own) {
            verdict = {&own, areEqual(isLocal ? own.local() : own.qualified(), step_.name,
                                      program_.options)};
        }
        return verdict.isMatch;
    }
    // Texts and comments have no name of their own; their node name is a fixed one.
    return !isLocal && areEqual(node.get_nodeName(), step_.name, program_.options);
}

TNuDOMNode& StepSearch::create(TNuDOMNode& context) {
    if (step_.isDeep) {
        throw host::Exception(messages::noCreateInSearch);
    }
    const std::u16string_view name = step_.nameToCreate;
    if (name.empty()) {
        throw host::Exception(messages::nothingToCreate);
    }
    if (name.front() == u'*' || name.front() == u'@') {
        throw host::Exception(messages::noCreateForPath);
    }
    auto* element = as<TNuDOMElement>(&context);
    return element != nullptr ? element->AddElement(name) : document_.CreateRootNode(name);
}

} // namespace nu
