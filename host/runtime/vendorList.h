#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What a registry of vendors keeps: who offers something, found by description, and which of them
/// an application gets that names none. `Vendor` has a Description().
///
/// The list does not own the vendors. It may be used by several threads, but a vendor that was
/// found is only good as long as its owner keeps it registered.
template <class Vendor> class VendorList {
public:
    VendorList() = default;
    VendorList(const VendorList&) = delete;
    VendorList& operator=(const VendorList&) = delete;

    /// Enters a vendor; entering it again changes nothing.
    void Add(Vendor& vendor) {
        const std::lock_guard lock(mutex_);
        if (std::find(vendors_.begin(), vendors_.end(), &vendor) == vendors_.end()) {
            vendors_.push_back(&vendor);
        }
    }

    /// Takes a vendor out; one that is not there is no fault. When no vendor with that description
    /// is left and it was the default, there is no default any more.
    void Remove(const Vendor& vendor) {
        const std::lock_guard lock(mutex_);
        const auto found = std::find(vendors_.begin(), vendors_.end(), &vendor);
        if (found == vendors_.end()) {
            return;
        }
        vendors_.erase(found);
        const std::u16string description = vendor.Description();
        if (description == default_ && findLocked(description) == nullptr) {
            default_.clear();
        }
    }

    /// The vendor with that description, or null. The latest entered wins.
    [[nodiscard]] Vendor* Find(std::u16string_view description) const {
        const std::lock_guard lock(mutex_);
        return findLocked(description);
    }

    /// The vendors, oldest first.
    [[nodiscard]] std::vector<Vendor*> All() const {
        const std::lock_guard lock(mutex_);
        return vendors_;
    }

    /// The description of the vendor for applications that name none; may be empty.
    [[nodiscard]] std::u16string Default() const {
        const std::lock_guard lock(mutex_);
        return default_;
    }
    /// Any description may be set, also that of a vendor that is yet to come.
    void SetDefault(std::u16string_view description) {
        const std::lock_guard lock(mutex_);
        default_ = description;
    }

private:
    Vendor* findLocked(std::u16string_view description) const {
        const auto found =
            std::find_if(vendors_.rbegin(), vendors_.rend(), [&](const Vendor* vendor) {
                return vendor->Description() == description;
            });
        return found == vendors_.rend() ? nullptr : *found;
    }

    mutable std::mutex mutex_;
    std::vector<Vendor*> vendors_;
    std::u16string default_;
};

} // namespace host
