#pragma once

#include <cstddef>
#include <cstdint>

#include "nuXmlDOM/core/limits.h"

namespace nu {

/// What one selection has done so far, with the paths in its filters: ends what goes too far.
class PathWork {
public:
    /// Without an end.
    PathWork() = default;
    explicit PathWork(const TNuDOMLimits& limits) noexcept
        : mostNodes_(limits.SelectedNodes), mostVisits_(limits.VisitedNodes) {}
    PathWork(const PathWork&) = delete;
    PathWork& operator=(const PathWork&) = delete;

    /// So many more nodes were looked at. Throws ENuDomException when they are too many.
    void visit(std::uint64_t count) {
        visits_ += count;
        if (visits_ > mostVisits_) [[unlikely]] {
            failVisits();
        }
    }
    /// One path has given so many nodes. Throws ENuDomException when they are too many.
    void checkResult(std::size_t count) const {
        if (count > mostNodes_) [[unlikely]] {
            failResult();
        }
    }

private:
    [[noreturn]] void failVisits() const;
    [[noreturn]] void failResult() const;

    std::size_t mostNodes_ = TNuDOMLimits().SelectedNodes;
    std::uint64_t mostVisits_ = TNuDOMLimits().VisitedNodes;
    std::uint64_t visits_ = 0;
};

} // namespace nu
