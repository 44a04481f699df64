#include "common/textHash.h"

#include <chrono>
#include <exception>
#include <random>

namespace nu {

namespace {

HashKeys drawKeys() noexcept {
    HashKeys keys{};
    try {
        std::random_device random;
        for (std::uint64_t* key : {&keys.start, &keys.factor}) {
            *key = std::uint64_t{random()} << 32 ^ random();
        }
    } catch (const std::exception&) {
        // A system without a source of chance: where it has put us, and when, is the next best.
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        keys.start = static_cast<std::uint64_t>(now) * 0x9E3779B97F4A7C15u;
        keys.factor = reinterpret_cast<std::uintptr_t>(&keys) * 0xC2B2AE3D27D4EB4Fu ^ keys.start;
    }
    keys.factor |= 1;
    return keys;
}

} // namespace

const HashKeys& hashKeys() noexcept {
    static const HashKeys keys = drawKeys();
    return keys;
}

} // namespace nu
