#include "nuXmlDOM/path/pathFilter.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/path/pathMessages.h"
#include "nuXmlDOM/path/pathSelection.h"
#include "nuXmlDOM/path/pathTree.h"
#include "nuXmlParser/conversionErrors.h"

namespace nu {

namespace {

std::u16string_view mismatchOf(TNuXPathFilter kind) noexcept {
    switch (kind) {
    case TNuXPathFilter::ftHasAttribute:
    case TNuXPathFilter::ftAttributeValue:
        return messages::attributeFilterMismatch;
    case TNuXPathFilter::ftNodeValue:
        return messages::valueFilterMismatch;
    case TNuXPathFilter::ftChildElementX:
    case TNuXPathFilter::ftLastChildElement:
    case TNuXPathFilter::ftFirstChildElement:
    case TNuXPathFilter::ftChildValue:
    case TNuXPathFilter::ftChildName:
        break;
    }
    return messages::childFilterMismatch;
}

/// Whether the children that a filter means can be found by name alone.
bool isByName(const PathProgram& program, const PathFilter& filter) noexcept {
    return filter.isChildName && !program.options.has(soCreate);
}

/// Keeps the candidate at a position counted from 1. A candidate that is there more than once
/// counts where it stands first, and is kept as often as it is there.
void keepPosition(std::int64_t position, bool mayRepeat, PathNodes& nodes, std::size_t first) {
    if (position < 1 || position > static_cast<std::int64_t>(nodes.size() - first)) {
        nodes.resize(first);
        return;
    }
    const auto begin = nodes.begin() + static_cast<std::ptrdiff_t>(first);
    const auto place = begin + (position - 1);
    TNuDOMNode* const wanted = *place;
    std::ptrdiff_t count = 1;
    if (mayRepeat) {
        const bool isFirst = std::find(begin, place, wanted) == place;
        count = isFirst ? std::count(place, nodes.end(), wanted) : 0;
    }
    nodes.resize(first);
    nodes.insert(nodes.end(), static_cast<std::size_t>(count), wanted);
}

void keepOnly(TNuDOMNode* wanted, PathNodes& nodes, std::size_t first) {
    const auto count =
        std::count(nodes.begin() + static_cast<std::ptrdiff_t>(first), nodes.end(), wanted);
    nodes.resize(first);
    nodes.insert(nodes.end(), static_cast<std::size_t>(count), wanted);
}

template <class Value>
bool compareOrdered(PathOperator comparison, const Value& left, const Value& right) {
    switch (comparison) {
    case PathOperator::Equal:
        return left == right;
    case PathOperator::Greater:
        return left > right;
    case PathOperator::GreaterOrEqual:
        return left >= right;
    case PathOperator::Less:
        return left < right;
    case PathOperator::LessOrEqual:
        return left <= right;
    case PathOperator::None:
        break;
    }
    return false;
}

std::int64_t integerOrFail(std::optional<std::int64_t> integer, std::u16string_view text) {
    if (!integer) {
        failConversion(messages::noInteger, text);
    }
    return *integer;
}

} // namespace

bool FilterTest::isPure(const PathProgram& program, const PathFilter& filter) noexcept {
    if (program.options.has(soCreate) || program.options.has(soRaise)) {
        return false;
    }
    switch (filter.kind) {
    case TNuXPathFilter::ftHasAttribute:
        return true;
    case TNuXPathFilter::ftAttributeValue:
    case TNuXPathFilter::ftNodeValue:
        return filter.literal.isText;
    case TNuXPathFilter::ftChildValue:
        return filter.literal.isText && isByName(program, filter);
    case TNuXPathFilter::ftChildElementX:
    case TNuXPathFilter::ftLastChildElement:
    case TNuXPathFilter::ftFirstChildElement:
    case TNuXPathFilter::ftChildName:
        break;
    }
    return false;
}

bool FilterTest::operator()(TNuDOMNode& candidate) const {
    const bool isElement = is<TNuDOMElement>(candidate);
    if (!isElement && !is<TNuDOMDocument>(candidate)) {
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
    case TNuXPathFilter::ftChildElementX:
    case TNuXPathFilter::ftLastChildElement:
    case TNuXPathFilter::ftFirstChildElement:
    case TNuXPathFilter::ftNodeValue:
        break;
    }
    return compareContent(candidate);
}

bool FilterTest::testAttribute(TNuDOMElement& element) const {
    TNuDOMAttribute* found = nullptr;
    std::uint64_t visits = 0;
    for (TNuDOMAttribute& attribute : element.Attributes()) {
        ++visits;
        if (name_(attribute)) {
            found = &attribute;
            break;
        }
    }
    work_.visit(visits);
    if (found == nullptr && (program_.options.has(soCreate) || program_.options.has(soRaise))) {
        // Deliberate: the options go for the lookup too: soCreate makes the attribute on every
        // candidate, and soRaise throws for the first one without it.
        found = element.getAttributeNodeObj(filter_.name, program_.options);
    }
    return found != nullptr &&
           (filter_.kind == TNuXPathFilter::ftHasAttribute || comparePathValue(filter_, *found));
}

bool FilterTest::testChildValue(TNuDOMNode& candidate) const {
    if (isByName(program_, filter_)) {
        return anyChild(candidate, [this](TNuDOMNode& child) { return compareContent(child); });
    }
    const PathNodes found = selectChildren(candidate);
    return std::any_of(found.begin(), found.end(),
                       [this](TNuDOMNode* child) { return compareContent(*child); });
}

bool FilterTest::findChild(TNuDOMNode& candidate) const {
    PathNodes found;
    if (isByName(program_, filter_)) {
        static_cast<void>(anyChild(candidate, [&found](TNuDOMNode& child) {
            found.push_back(&child);
            return found.size() > 1;
        }));
    } else {
        found = selectChildren(candidate);
    }
    return singleElement(filter_.name, program_.options, found) != nullptr;
}

template <class Test> bool FilterTest::anyChild(TNuDOMNode& candidate, Test&& test) const {
    std::uint64_t visits = 0;
    TNuDOMNode* child = elementFrom(firstOfNamed(candidate), visits);
    while (child != nullptr && !(name_(*child) && test(*child))) {
        child = elementFrom(NodeLinks::next(*child), visits);
    }
    work_.visit(visits);
    return child != nullptr;
}

PathNodes FilterTest::selectChildren(TNuDOMNode& candidate) const {
    std::shared_ptr<const PathProgram> program = filter_.child;
    if (program == nullptr) {
        if (!filter_.isChildName) {
            throw host::Exception(messages::invalidPathStep); // brackets too deep
        }
        program = readPath(filter_.name, program_.options);
    }
    PathNodes found;
    selectNodes(*program, candidate, true, found, work_);
    return found;
}

/// Compares the text of an element; that of the document is empty.
bool FilterTest::compareContent(TNuDOMNode& node) const {
    // Nearly always there is one text, which can be compared where it stands.
    const TNuDOMNode* only = nullptr;
    int count = 0;
    if (const auto* element = as<TNuDOMElement>(&node)) {
        std::uint64_t visits = 0;
        for (const TNuDOMNode& child : element->ChildNodes()) {
            ++visits;
            if (is<TNuDOMText>(child)) {
                only = &child;
                ++count;
            }
        }
        work_.visit(visits);
    }
    return count == 1
               ? comparePathValue(filter_, *only)
               : comparePathValue(filter_, count == 0 ? NuXmlString() : node.get_nodeValue());
}

void applyFilter(const PathProgram& program, const PathFilter& filter, bool mayRepeat,
                 PathNodes& nodes, std::size_t first, PathWork& work) {
    if (nodes.size() == first) {
        return;
    }
    switch (filter.kind) {
    case TNuXPathFilter::ftChildElementX:
        keepPosition(filter.position, mayRepeat, nodes, first);
        return;
    case TNuXPathFilter::ftFirstChildElement:
        keepOnly(nodes[first], nodes, first);
        return;
    case TNuXPathFilter::ftLastChildElement:
        keepOnly(nodes.back(), nodes, first);
        return;
    case TNuXPathFilter::ftHasAttribute:
    case TNuXPathFilter::ftAttributeValue:
    case TNuXPathFilter::ftChildValue:
    case TNuXPathFilter::ftChildName:
    case TNuXPathFilter::ftNodeValue:
        break;
    }
    const FilterTest test(program, filter, *nodes[first]->OwnerDocument(), work);
    const auto isDropped = [&test](TNuDOMNode* node) { return !test(*node); };
    nodes.erase(
        std::remove_if(nodes.begin() + static_cast<std::ptrdiff_t>(first), nodes.end(), isDropped),
        nodes.end());
}

bool comparePathValue(const PathFilter& filter, std::u16string_view value) {
    const PathLiteral& literal = filter.literal;
    if (!literal.isText) {
        const std::int64_t right = integerOrFail(literal.integer, literal.text);
        return compareOrdered(filter.comparison, integerOrFail(readPathInteger(value), value),
                              right);
    }
    // Deliberate: letter case counts for the order but not for "=".
    return filter.comparison == PathOperator::Equal
               ? NuEqualFolded(value, literal.text)
               : compareOrdered(filter.comparison, value, std::u16string_view(literal.text));
}

bool comparePathValue(const PathFilter& filter, const TNuDOMNode& leaf) {
    const StoredText& stored = *NodeText::storedIfAny(leaf);
    const bool isEqualTest = filter.literal.isText && filter.comparison == PathOperator::Equal;
    // Without a reference what is stored is the value. Whether one is wrong must not depend on what
    // the value is compared with.
    if (isEqualTest && stored.isNarrow() && !stored.contains(cNuAmp)) {
        const std::string_view text = stored.bytes();
        const NuXmlString& folded = filter.literal.folded;
        return std::equal(text.begin(), text.end(), folded.begin(), folded.end(),
                          [](char byte, NuXmlChar unit) {
                              return NuLowerAscii(static_cast<unsigned char>(byte)) == unit;
                          });
    }
    NuXmlString value;
    NodeText::appendValue(leaf, value);
    return comparePathValue(filter, value);
}

} // namespace nu
