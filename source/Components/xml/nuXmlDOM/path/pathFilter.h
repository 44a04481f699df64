#pragma once

#include <string_view>

#include "nuXmlDOM/nodes/nameTest.h"
#include "nuXmlDOM/path/pathNodes.h"
#include "nuXmlDOM/path/pathProgram.h"
#include "nuXmlDOM/path/pathWork.h"

namespace nu {

/// A filter that asks something of each candidate by itself, not of its position.
class FilterTest {
public:
    FilterTest(const PathProgram& program, const PathFilter& filter, const TNuDOMDocument& document,
               PathWork& work)
        : program_(program), filter_(filter), name_(filter.name, program.options, document),
          work_(work) {}

    /// Whether a filter asks each candidate by itself, and it does not matter when and in which
    /// order: nothing is created, and all failures are alike.
    [[nodiscard]] static bool isPure(const PathProgram& program, const PathFilter& filter) noexcept;

    /// Whether the candidate is kept. Throws ENuDomTypeMismatch for one that is neither an element
    /// nor the document.
    bool operator()(TNuDOMNode& candidate) const;

private:
    bool testAttribute(TNuDOMElement& element) const;
    bool testChildValue(TNuDOMNode& candidate) const;
    bool findChild(TNuDOMNode& candidate) const;
    template <class Test> bool anyChild(TNuDOMNode& candidate, Test&& test) const;
    [[nodiscard]] PathNodes selectChildren(TNuDOMNode& candidate) const;
    bool compareContent(TNuDOMNode& node) const;

    const PathProgram& program_;
    const PathFilter& filter_;
    NameTest name_;
    PathWork& work_;
};

/// Leaves only those candidates that the filter keeps, among the nodes from `first` on.
/// `mayRepeat` says whether a candidate may be there more than once.
void applyFilter(const PathProgram& program, const PathFilter& filter, bool mayRepeat,
                 PathNodes& nodes, std::size_t first, PathWork& work);

/// Compares a value with the literal of a filter. Throws host::EConvertError where an integer is
/// meant and there is none.
[[nodiscard]] bool comparePathValue(const PathFilter& filter, std::u16string_view value);
/// The same for the text of a leaf, without unfolding it where that is not needed.
[[nodiscard]] bool comparePathValue(const PathFilter& filter, const TNuDOMNode& leaf);

} // namespace nu
