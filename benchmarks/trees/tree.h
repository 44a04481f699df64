#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Ours and the other libraries' document trees behind one small interface. Every file of this
/// folder registers one of them; a library that is not installed is not compiled in.
namespace bench {

/// A document in memory. Its destructor is measured: it frees the document and nothing else.
class Tree {
public:
    Tree() = default;
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    virtual ~Tree() = default;

    /// Elements, attributes, texts, CDATA sections, comments and instructions.
    [[nodiscard]] virtual std::size_t nodeCount() const = 0;
    /// Writes the document as UTF-8 into memory that is fresh and freed again, on one line or with
    /// line breaks and indentation; gives the number of bytes.
    [[nodiscard]] virtual std::size_t write(bool formatted) const = 0;
};

struct TreeLibrary {
    std::string name;
    /// Loads UTF-8 text, without the white space between tags where the library can leave it out.
    std::function<std::unique_ptr<Tree>(std::string_view text)> load;
    /// The inputs that are beyond a limit of the library.
    std::vector<std::string> leavesOut{};

    [[nodiscard]] bool canLoad(const std::string& input) const {
        return std::find(leavesOut.begin(), leavesOut.end(), input) == leavesOut.end();
    }
};

/// All registered libraries, ours first, then by name.
std::vector<TreeLibrary> treeLibraries();

/// Called while static objects are made; the result only gives them a value.
bool addTreeLibrary(TreeLibrary library);

/// The next node of a walk through everything below `root`, parents first; null at the end. The
/// functions lead from a node to its first child, its next sibling and its parent.
template <class Node, class FirstChild, class Next, class Parent>
Node nextInTree(Node node, Node root, FirstChild firstChild, Next next, Parent parent) {
    if (Node child = firstChild(node)) {
        return child;
    }
    while (node != root) {
        if (Node sibling = next(node)) {
            return sibling;
        }
        node = parent(node);
    }
    return nullptr;
}

} // namespace bench
