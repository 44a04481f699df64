#include "trees/tree.h"

#include <algorithm>

#include "peers/peer.h"

namespace bench {

namespace {

std::vector<TreeLibrary>& registered() {
    static std::vector<TreeLibrary> list;
    return list;
}

} // namespace

std::vector<TreeLibrary> treeLibraries() {
    std::vector<TreeLibrary> list = registered();
    std::sort(list.begin(), list.end(), [](const TreeLibrary& left, const TreeLibrary& right) {
        return std::pair(left.name != oursName, left.name) <
               std::pair(right.name != oursName, right.name);
    });
    return list;
}

bool addTreeLibrary(TreeLibrary library) {
    registered().push_back(std::move(library));
    return true;
}

} // namespace bench
