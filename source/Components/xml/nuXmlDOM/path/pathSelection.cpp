#include "nuXmlDOM/path/pathSelection.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/path/pathMessages.h"

namespace nu {

namespace {

bool isContext(const TNuDOMNode& node) noexcept {
    return node.get_nodeType() == host::ELEMENT_NODE || node.get_nodeType() == host::DOCUMENT_NODE;
}

/// The first element among a node and those behind it; null without one.
TNuDOMNode* elementFrom(TNuDOMNode* node) noexcept {
    while (node != nullptr && !NodeAccess::is<TNuDOMElement>(*node)) {
        node = NodeChain::next(*node);
    }
    return node;
}

/// The next element below `root` in the order of the document; null at the end.
TNuDOMNode* nextContext(TNuDOMNode& node, const TNuDOMNode& root) noexcept {
    // 1. Down.
    TNuDOMNode* next = elementFrom(firstPathChild(node));
    // 2. On, else up until it goes on.
    for (TNuDOMNode* from = &node; next == nullptr && from != &root;
         from = NodeAccess::parent(*from)) {
        next = elementFrom(NodeChain::next(*from));
    }
    return next;
}

/// One alternative of a path, run from its start node.
class AlternativeSelection {
public:
    AlternativeSelection(const PathProgram& program, const PathAlternative& alternative,
                         TNuDOMDocument& document)
        : program_(program), steps_(alternative.steps), document_(document),
          frames_(alternative.steps.size()) {}

    /// Depth first: what the first candidate of a step leads to comes before the second.
    void run(TNuDOMNode& start, PathNodes& result) {
        std::size_t depth = 0;
        enter(depth, start, result);
        for (;;) {
            Frame& frame = frames_[depth];
            // 1. The last step gives the results, if they are not there already.
            const bool isLast = depth + 1 == steps_.size();
            if (isLast && result.empty()) {
                result.swap(frame.candidates);
            } else if (isLast) {
                result.insert(result.end(), frame.candidates.begin(), frame.candidates.end());
            }
            // 2. A step that is done goes back to the one before.
            if (isLast || frame.next == frame.candidates.size()) {
                if (depth == 0) {
                    return;
                }
                --depth;
                continue;
            }
            // 3. The next candidate takes the next step; what can have no children takes none.
            TNuDOMNode& candidate = *frame.candidates[frame.next++];
            if (isContext(candidate)) {
                enter(++depth, candidate, result);
            }
        }
    }

private:
    struct Frame {
        PathNodes candidates;
        std::size_t next = 0;
        const NodeName* plainName = nullptr;
        bool isNameKnown = false;
    };

    void enter(std::size_t depth, TNuDOMNode& context, PathNodes& result) {
        Frame& frame = frames_[depth];
        const PathStep& step = steps_[depth];
        const bool isCreating = program_.options.has(soCreate);
        frame.candidates.clear();
        frame.next = 0;
        checkOptions(program_.options);
        failMistake(step.mistake);
        // What nothing is asked of any more is a result at once.
        const bool isResult = depth + 1 == steps_.size() && step.filters.empty() && !isCreating;
        match(step, frame, context, isResult ? result : frame.candidates);
        for (const PathFilter& filter : step.filters) {
            const bool mayRepeat =
                step.isDeep && (step.test == PathTest::parent || step.test == PathTest::self);
            applyFilter(program_, filter, mayRepeat, frame.candidates);
        }
        if (frame.candidates.empty() && isCreating) {
            frame.candidates.push_back(&create(step, context));
        }
    }

    static void failMistake(PathMistake mistake) {
        switch (mistake) {
        case PathMistake::none:
            return;
        case PathMistake::invalidPath:
            throw host::Exception(messages::invalidPathStep);
        case PathMistake::openQuote:
            throw host::Exception(messages::unterminatedFilterValue);
        case PathMistake::openBracket:
            throw host::Exception(messages::unterminatedFilter);
        }
    }

    void match(const PathStep& step, Frame& frame, TNuDOMNode& context, PathNodes& found) {
        if (step.test == PathTest::name && !prepareName(step, frame)) {
            return;
        }
        if (step.isDeep && step.test == PathTest::name &&
            matchInTreeOrder(step, frame, context, found)) {
            return;
        }
        matchHere(step, frame, context, found);
        if (step.isDeep) {
            for (TNuDOMNode* node = nextContext(context, context); node != nullptr;
                 node = nextContext(*node, context)) {
                matchHere(step, frame, *node, found);
            }
        }
    }

    /// Finds the nodes of a name below `context` in one walk, which takes half the time because
    /// nodes lie in memory in the order of the document. That order is the right one as long as no
    /// match follows one that lies deeper below the same parent; gives false, and adds nothing,
    /// when one does.
    bool matchInTreeOrder(const PathStep& step, const Frame& frame, TNuDOMNode& context,
                          PathNodes& found) {
        const std::size_t before = found.size();
        // The levels up to `closed` had a match below them since their parent was entered.
        std::size_t closed = 0;
        std::size_t level = 1;
        TNuDOMNode* node = firstPathChild(context);
        while (node != nullptr) {
            // 1. The node.
            if (isNamed(*node, step, frame)) {
                if (level <= closed) {
                    found.resize(before);
                    return false;
                }
                found.push_back(node);
                closed = level - 1;
            }
            // 2. Down, else on, else up until it goes on.
            TNuDOMNode* next =
                NodeAccess::is<TNuDOMElement>(*node) ? firstPathChild(*node) : nullptr;
            if (next != nullptr) {
                closed = std::min(closed, level);
                ++level;
            } else {
                while ((next = NodeChain::next(*node)) == nullptr) {
                    node = NodeAccess::parent(*node);
                    if (node == &context) {
                        return true;
                    }
                    --level;
                }
            }
            node = next;
        }
        return true;
    }

    /// Finds what a name test looks for; false when no node can have that name.
    bool prepareName(const PathStep& step, Frame& frame) {
        const bool isExact =
            !program_.options.has(soCaseInsensitive) && !program_.options.has(soIgnoreNamespace);
        if (!isExact || step.name.starts_with(u'#')) {
            return true;
        }
        // A name that soCreate makes becomes known only then.
        if (!frame.isNameKnown || frame.plainName == nullptr) {
            frame.plainName = document_.names().find(step.name);
            frame.isNameKnown = true;
        }
        return frame.plainName != nullptr;
    }

    void matchHere(const PathStep& step, const Frame& frame, TNuDOMNode& context,
                   PathNodes& found) {
        const auto addChildrenIf = [&](auto&& test) {
            forEachPathChild(context, [&](TNuDOMNode& child) {
                if (test(child)) {
                    found.push_back(&child);
                }
            });
        };
        switch (step.test) {
        case PathTest::everyAttribute:
        case PathTest::attribute:
            addAttributes(step, context, found);
            return;
        case PathTest::parent:
            if (TNuDOMNode* parent = NodeAccess::parent(context)) {
                found.push_back(parent);
            }
            return;
        case PathTest::self:
            found.push_back(&context);
            return;
        case PathTest::everyElement:
            addChildrenIf([](TNuDOMNode& child) { return NodeAccess::is<TNuDOMElement>(child); });
            return;
        case PathTest::everyNode:
            addChildrenIf([](TNuDOMNode&) { return true; });
            return;
        case PathTest::elementWithText:
            addChildrenIf(hasText);
            return;
        case PathTest::name:
            addChildrenIf([&](TNuDOMNode& child) { return isNamed(child, step, frame); });
            return;
        }
    }

    static void addAttributes(const PathStep& step, TNuDOMNode& context, PathNodes& found) {
        auto* element = NodeAccess::as<TNuDOMElement>(&context);
        if (element == nullptr) {
            return;
        }
        for (TNuDOMAttribute& attribute : element->Attributes()) {
            if (step.test == PathTest::everyAttribute ||
                NuEqualFolded(attribute.get_localName(), step.name)) {
                found.push_back(&attribute);
            }
        }
    }

    static bool hasText(TNuDOMNode& child) {
        auto* element = NodeAccess::as<TNuDOMElement>(&child);
        if (element == nullptr) {
            return false;
        }
        for (TNuDOMNode& node : element->ChildNodes()) {
            if (NodeAccess::is<TNuDOMText>(node) && !node.get_nodeValue().empty()) {
                return true;
            }
        }
        return false;
    }

    /// The same by the name as prepareName found it.
    [[nodiscard]] bool isNamed(TNuDOMNode& node, const PathStep& step, const Frame& frame) const {
        return frame.plainName != nullptr ? NodeAccess::name(node).plain == frame.plainName
                                          : hasName(node, step.name);
    }

    /// Whether a node has the name that a test looks for, by the options of the path.
    [[nodiscard]] bool hasName(TNuDOMNode& node, std::u16string_view name) const {
        const NodeName& own = NodeAccess::name(node);
        const bool isLocal = program_.options.has(soIgnoreNamespace);
        if (own.isNamed()) {
            return areEqual(isLocal ? own.local() : own.qualified(), name, program_.options);
        }
        // Texts and comments have no name of their own; their node name is a fixed one.
        return !isLocal && areEqual(node.get_nodeName(), name, program_.options);
    }

    TNuDOMNode& create(const PathStep& step, TNuDOMNode& context) {
        if (step.isDeep) {
            throw host::Exception(messages::noCreateInSearch);
        }
        const std::u16string_view name = step.nameToCreate;
        if (name.empty()) {
            throw host::Exception(messages::nothingToCreate);
        }
        if (name.front() == u'*' || name.front() == u'@') {
            throw host::Exception(messages::noCreateForPath);
        }
        auto* element = NodeAccess::as<TNuDOMElement>(&context);
        return element != nullptr ? element->AddElement(name) : document_.CreateRootNode(name);
    }

    const PathProgram& program_;
    const std::vector<PathStep>& steps_;
    TNuDOMDocument& document_;
    std::vector<Frame> frames_;
};

/// Where an alternative starts.
///
/// Deliberate: a leading "." starts at the parent and "..", at the grandparent, and the steps "."
/// and ".." come on top of that: both lead one level further up than in XPath.
TNuDOMNode& startOf(const PathAlternative& alternative, TNuDOMNode& context,
                    TNuDOMDocument& document) {
    const int levels = alternative.start == PathStart::parent        ? 1
                       : alternative.start == PathStart::grandparent ? 2
                                                                     : 0;
    if (alternative.start == PathStart::document) {
        return document;
    }
    TNuDOMNode* start = &context;
    for (int level = 0; level < levels; ++level) {
        start = NodeAccess::parent(*start);
        if (start == nullptr) {
            throw host::Exception(messages::noParentNode);
        }
    }
    return *start;
}

} // namespace

void selectNodes(const PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                 PathNodes& result) {
    TNuDOMDocument& document = *context.OwnerDocument();
    for (const PathAlternative& alternative : program.alternatives) {
        TNuDOMNode& start = startOf(alternative, context, document);
        AlternativeSelection(program, alternative, document).run(start, result);
    }
    if (elementsOnly) {
        const auto isOther = [](TNuDOMNode* node) { return !NodeAccess::is<TNuDOMElement>(*node); };
        result.erase(std::remove_if(result.begin(), result.end(), isOther), result.end());
    }
}

namespace {

void checkFound(std::u16string_view path, TNuDOMSelectOptions options, const TNuDOMNode* found) {
    if (found == nullptr && options.has(soRaise)) {
        throw ENuDomException(host::formatMessage(cNoNodeForPath, {path}));
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
        throw ENuDomException(host::formatMessage(cMoreThanOne, {path}));
    }
    TNuDOMNode* node = found.empty() ? nullptr : found.front();
    checkFound(path, options, node);
    return static_cast<TNuDOMElement*>(node);
}

} // namespace nu
