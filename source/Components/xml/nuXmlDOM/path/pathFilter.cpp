#include <algorithm>
#include <unordered_map>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/path/pathMessages.h"
#include "nuXmlDOM/path/pathSelection.h"

namespace nu {

namespace {

std::u16string_view mismatchOf(TNuXPathFilter kind) noexcept {
    switch (kind) {
    case TNuXPathFilter::ftHasAttribute:
    case TNuXPathFilter::ftAttributeValue:
        return messages::attributeFilterMismatch;
    case TNuXPathFilter::ftNodeValue:
        return messages::valueFilterMismatch;
    default:
        return messages::childFilterMismatch;
    }
}

/// One filter that asks something of each candidate by itself.
class CandidateTest {
public:
    CandidateTest(const PathProgram& program, const PathFilter& filter,
                  const TNuDOMDocument& document)
        : program_(program), filter_(filter), name_(filter.name, program.options, document) {}

    bool operator()(TNuDOMNode& candidate) const {
        const bool isElement = NodeAccess::is<TNuDOMElement>(candidate);
        if (!isElement && !NodeAccess::is<TNuDOMDocument>(candidate)) {
            throw ENuDomTypeMismatch(mismatchOf(filter_.kind));
        }
        switch (filter_.kind) {
        case TNuXPathFilter::ftHasAttribute:
        case TNuXPathFilter::ftAttributeValue:
            return isElement && testAttribute(static_cast<TNuDOMElement&>(candidate));
        case TNuXPathFilter::ftChildValue:
            return testChildValue(candidate);
        case TNuXPathFilter::ftChildName:
            return findChild(candidate);
        default:
            return compareContent(candidate);
        }
    }

private:
    bool testAttribute(TNuDOMElement& element) const {
        TNuDOMAttribute* found = nullptr;
        for (TNuDOMAttribute& attribute : element.Attributes()) {
            if (name_(attribute)) {
                found = &attribute;
                break;
            }
        }
        if (found == nullptr && (program_.options.has(soCreate) || program_.options.has(soRaise))) {
            // Deliberate: the options go for the lookup too: soCreate makes the attribute on every
            // candidate, and soRaise throws for the first one without it.
            found = element.getAttributeNodeObj(filter_.name, program_.options);
        }
        return found != nullptr && (filter_.kind == TNuXPathFilter::ftHasAttribute ||
                                    comparePathValue(filter_, *found));
    }

    bool testChildValue(TNuDOMNode& candidate) const {
        if (isSimple()) {
            return anyChild(candidate, [this](TNuDOMNode& child) { return compareContent(child); });
        }
        const PathNodes found = selectChildren(candidate);
        return std::any_of(found.begin(), found.end(),
                           [this](TNuDOMNode* child) { return compareContent(*child); });
    }

    bool findChild(TNuDOMNode& candidate) const {
        PathNodes found;
        if (isSimple()) {
            static_cast<void>(anyChild(candidate, [&found](TNuDOMNode& child) {
                found.push_back(&child);
                return found.size() > 1;
            }));
        } else {
            found = selectChildren(candidate);
        }
        return singleElement(filter_.name, program_.options, found) != nullptr;
    }

    /// Whether the children can be found by name alone.
    [[nodiscard]] bool isSimple() const noexcept {
        return filter_.isPlainName && !program_.options.has(soCreate);
    }

    template <class Test> bool anyChild(TNuDOMNode& candidate, Test&& test) const {
        bool isFound = false;
        forEachPathChild(candidate, [&](TNuDOMNode& child) {
            isFound =
                isFound || (NodeAccess::is<TNuDOMElement>(child) && name_(child) && test(child));
        });
        return isFound;
    }

    [[nodiscard]] PathNodes selectChildren(TNuDOMNode& candidate) const {
        std::shared_ptr<const PathProgram> program = filter_.child;
        if (program == nullptr) {
            if (!filter_.isPlainName) {
                throw host::Exception(messages::invalidPathStep); // brackets too deep
            }
            program = readPath(filter_.name, program_.options);
        }
        PathNodes found;
        selectNodes(*program, candidate, true, found);
        return found;
    }

    /// Compares the text of an element; that of the document is empty.
    bool compareContent(TNuDOMNode& node) const {
        // Nearly always there is one text, which can be compared where it stands.
        const TNuDOMNode* only = nullptr;
        int count = 0;
        if (const auto* element = NodeAccess::as<TNuDOMElement>(&node)) {
            for (const TNuDOMNode& child : element->ChildNodes()) {
                if (NodeAccess::is<TNuDOMText>(child)) {
                    only = &child;
                    ++count;
                }
            }
        }
        return count == 1
                   ? comparePathValue(filter_, *only)
                   : comparePathValue(filter_, count == 0 ? NuXmlString() : node.get_nodeValue());
    }

    const PathProgram& program_;
    const PathFilter& filter_;
    NameTest name_;
};

/// Keeps the candidate at a position counted from 1. A candidate that is there more than once
/// counts where it stands first, and is kept as often as it is there.
void keepPosition(std::int64_t position, bool mayRepeat, PathNodes& candidates) {
    if (position < 1 || position > static_cast<std::int64_t>(candidates.size())) {
        candidates.clear();
        return;
    }
    TNuDOMNode* const wanted = candidates[static_cast<std::size_t>(position - 1)];
    std::size_t count = 1;
    if (mayRepeat) {
        const auto first = std::find(candidates.begin(), candidates.end(), wanted);
        const bool isFirst = first - candidates.begin() == position - 1;
        count =
            isFirst
                ? static_cast<std::size_t>(std::count(candidates.begin(), candidates.end(), wanted))
                : 0;
    }
    candidates.assign(count, wanted);
}

void keepOnly(TNuDOMNode* wanted, PathNodes& candidates) {
    const auto count = std::count(candidates.begin(), candidates.end(), wanted);
    candidates.assign(static_cast<std::size_t>(count), wanted);
}

template <class Value>
bool compareOrdered(PathOperator comparison, const Value& left, const Value& right) {
    switch (comparison) {
    case PathOperator::equal:
        return left == right;
    case PathOperator::greater:
        return left > right;
    case PathOperator::greaterOrEqual:
        return left >= right;
    case PathOperator::less:
        return left < right;
    case PathOperator::lessOrEqual:
        return left <= right;
    case PathOperator::none:
        break;
    }
    return false;
}

std::int64_t integerOrFail(std::optional<std::int64_t> integer, std::u16string_view text) {
    if (!integer) {
        throw host::EConvertError(
            host::formatMessage(u"'%s' is not a valid integer value", {text}));
    }
    return *integer;
}

} // namespace

void applyFilter(const PathProgram& program, const PathFilter& filter, bool mayRepeat,
                 PathNodes& candidates) {
    if (candidates.empty()) {
        return;
    }
    switch (filter.kind) {
    case TNuXPathFilter::ftChildElementX:
        keepPosition(filter.position, mayRepeat, candidates);
        return;
    case TNuXPathFilter::ftFirstChildElement:
        keepOnly(candidates.front(), candidates);
        return;
    case TNuXPathFilter::ftLastChildElement:
        keepOnly(candidates.back(), candidates);
        return;
    default:
        break;
    }
    const CandidateTest test(program, filter, *candidates.front()->OwnerDocument());
    const auto isDropped = [&test](TNuDOMNode* node) { return !test(*node); };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isDropped),
                     candidates.end());
}

bool comparePathValue(const PathFilter& filter, std::u16string_view value) {
    const PathLiteral& literal = filter.literal;
    if (!literal.isText) {
        const std::int64_t right = integerOrFail(literal.integer, literal.text);
        return compareOrdered(filter.comparison, integerOrFail(readPathInteger(value), value),
                              right);
    }
    // Deliberate: letter case counts for the order but not for "=".
    return filter.comparison == PathOperator::equal
               ? NuEqualFolded(value, literal.text)
               : compareOrdered(filter.comparison, value, std::u16string_view(literal.text));
}

bool comparePathValue(const PathFilter& filter, const TNuDOMNode& leaf) {
    const StoredText& stored = *NodeAccess::text(leaf);
    const bool isEqualTest = filter.literal.isText && filter.comparison == PathOperator::equal;
    if (!isEqualTest || !stored.isNarrow() || stored.contains(cNuAmp)) {
        NuXmlString value;
        NodeAccess::appendValue(leaf, value);
        return comparePathValue(filter, value);
    }
    const std::string_view text = stored.narrow();
    const NuXmlString& folded = filter.literal.folded;
    return text.size() == folded.size() &&
           std::equal(text.begin(), text.end(), folded.begin(), [](char byte, NuXmlChar unit) {
               return NuLowerAscii(static_cast<unsigned char>(byte)) == unit;
           });
}

} // namespace nu
