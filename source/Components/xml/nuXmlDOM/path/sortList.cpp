#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include "host/runtime/exception.h"
#include "host/runtime/variant.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/path/path.h"

namespace {

/// What a member is ordered by.
struct Key {
    bool isElement = false;
    host::Variant value;
    NuXmlString text;
};

Key keyOf(TNuDOMNode* member, const TNuDOMPath& path) {
    Key key;
    if (member == nullptr) {
        return key;
    }
    TNuDOMNode& node = *path.SelectSingleNode(*member);
    if (auto* element = nu::as<TNuDOMElement>(&node)) {
        key.isElement = true;
        key.value = element->GetVarValue();
    }
    key.text = node.get_nodeValue();
    return key;
}

bool isGreater(const Key& left, const Key& right) {
    return left.isElement && right.isElement ? host::Variant::Compare(left.value, right.value) > 0
                                             : left.text > right.text;
}

/// Sorts indexes by merging runs that double. Keys of different kinds can contradict each other,
/// which the standard algorithms do not allow; here it costs the order and nothing else.
void mergeSort(std::vector<std::size_t>& order, const std::vector<Key>& keys) {
    std::vector<std::size_t> merged(order.size());
    for (std::size_t run = 1; run < order.size(); run *= 2) {
        for (std::size_t start = 0; start < order.size(); start += 2 * run) {
            std::size_t left = start;
            const std::size_t middle = std::min(start + run, order.size());
            std::size_t right = middle;
            const std::size_t end = std::min(start + 2 * run, order.size());
            for (std::size_t target = start; target < end; ++target) {
                const bool takesRight =
                    left == middle ||
                    (right < end && isGreater(keys[order[left]], keys[order[right]]));
                merged[target] = order[takesRight ? right++ : left++];
            }
        }
        order.swap(merged);
    }
}

} // namespace

void TNuDOMNodeList::Sort(std::u16string_view path) {
    const std::size_t count = Count();
    if (count < 2) {
        return;
    }
    // 1. The keys, each once; what cannot be found leaves the list as it is.
    const TNuDOMPath keyPath(path, soRaise);
    std::vector<TNuDOMNode*> members;
    std::vector<Key> keys;
    members.reserve(count);
    keys.reserve(count);
    for (TNuDOMNode* member : *this) {
        members.push_back(member);
        keys.push_back(keyOf(member, keyPath));
    }
    // 2. The order of the keys, then the members in that order.
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), std::size_t{0});
    mergeSort(order, keys);
    std::vector<TNuDOMNode*> sorted;
    sorted.reserve(count);
    for (const std::size_t index : order) {
        sorted.push_back(members[index]);
    }
    reorder(std::move(sorted));
}
