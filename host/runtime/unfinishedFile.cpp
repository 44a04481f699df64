#include "host/runtime/unfinishedFile.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <string>

namespace host {

namespace {

/// Where a handler finds them: it may neither wait nor allocate. Whoever finds no place is not seen
/// by handlers, and loses nothing else.
auto& seenByHandlers() noexcept {
    static std::array<std::atomic<const UnfinishedFile*>, 32> places{};
    return places;
}
static_assert(std::atomic<const UnfinishedFile*>::is_always_lock_free);

void exchangePlace(const UnfinishedFile* from, const UnfinishedFile* to) noexcept {
    for (auto& place : seenByHandlers()) {
        const UnfinishedFile* expected = from;
        if (place.compare_exchange_strong(expected, to)) {
            return;
        }
    }
}

} // namespace

void UnfinishedFile::chooseName(int folder) {
    forget();
    static constexpr std::string_view digits = "0123456789abcdef";
    std::random_device random;
    // Its length does not depend on the name of the file that it is for, which may be as long as
    // the system allows.
    std::string name = ".nuxml-";
    for (int count = 0; count < 16; ++count) {
        name += digits[random() % digits.size()];
    }
    name += ".tmp";
    *std::copy(name.begin(), name.end(), name_.begin()) = '\0';
    folder_ = folder;
    isNamed_ = true;
    exchangePlace(nullptr, this);
}

void UnfinishedFile::forget() noexcept {
    if (isNamed_) {
        exchangePlace(this, nullptr);
        isNamed_ = false;
    }
}

void UnfinishedFile::remove() noexcept {
    if (isNamed_) {
        ::unlinkat(folder_, name_.data(), 0);
        forget();
    }
}

void removeUnfinishedFiles() noexcept {
    for (auto& place : seenByHandlers()) {
        if (const UnfinishedFile* const file = place.exchange(nullptr)) {
            ::unlinkat(file->folder_, file->name_.data(), 0);
        }
    }
}

} // namespace host
