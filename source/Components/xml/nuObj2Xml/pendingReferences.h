#pragma once

#include <cstddef>
#include <vector>

#include "host/runtime/classInfo.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// References that were read as names and wait for the objects of these names.
class PendingReferences {
public:
    struct Pending {
        host::Instance owner;
        const host::TPropInfo* property;
        NuXmlString name;
        NuXmlString place; ///< for messages
    };

    [[nodiscard]] bool empty() const noexcept { return pending_.empty(); }
    void add(Pending reference) { pending_.push_back(std::move(reference)); }
    void clear() noexcept { pending_.clear(); }
    /// The memory of `size` bytes at `former`, with the owners in it, is now at `place`.
    void move(const void* former, std::size_t size, const void* place) noexcept;
    /// Makes every reference lead to the first object below `root`, in the order in which objects
    /// are written, that has its name and a class that fits. One without such an object leads
    /// nowhere; with `isStrict` host::Exception is thrown for it.
    void resolve(host::Instance root, bool isStrict);

private:
    std::vector<Pending> pending_;
};

} // namespace nu
