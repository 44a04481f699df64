#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// The hash of texts that strangers may choose.

namespace nu {

/// What a hash depends on. Whoever does not know it cannot choose texts that collide.
struct HashKeys {
    std::uint64_t start;
    std::uint64_t factor; ///< odd
};

/// The keys of this process, drawn when they are first asked for.
[[nodiscard]] NUXML_API const HashKeys& hashKeys() noexcept;

/// A step of the hash: both halves of a product, so that no difference between two values is sure
/// to be seen in it, or not to be, whatever the factor.
[[nodiscard]] inline std::uint64_t mixHash(const HashKeys& keys, std::uint64_t value) noexcept {
    __extension__ using Product = unsigned __int128;
    const Product product = static_cast<Product>(value) * keys.factor;
    return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}

/// The hash of what `unit` makes of each unit of a text; four at a time, as most texts are short.
template <class Unit>
[[nodiscard]] std::uint64_t hashText(const HashKeys& keys, std::u16string_view text,
                                     Unit&& unit) noexcept {
    std::uint64_t hash = keys.start ^ text.size();
    const auto at = [&unit](const char16_t* units, std::size_t index) {
        return std::uint64_t{unit(units[index])};
    };
    const auto four = [&at](const char16_t* units) {
        return at(units, 0) | at(units, 1) << 16 | at(units, 2) << 32 | at(units, 3) << 48;
    };
    const char16_t* units = text.data();
    if (text.size() < 4) {
        std::uint64_t all = 0;
        for (std::size_t index = 0; index < text.size(); ++index) {
            all = all << 16 ^ at(units, index);
        }
        return mixHash(keys, hash ^ all);
    }
    // Of the last four some may have been looked at before.
    const char16_t* const last = units + text.size() - 4;
    for (; units < last; units += 4) {
        hash = mixHash(keys, hash ^ four(units));
    }
    return mixHash(keys, hash ^ four(last));
}

/// The hash of a text as it is.
[[nodiscard]] inline std::uint64_t hashText(const HashKeys& keys,
                                            std::u16string_view text) noexcept {
    return hashText(keys, text, [](char16_t unit) { return unit; });
}

/// The hash of bytes, eight at a time.
[[nodiscard]] inline std::uint64_t hashText(const HashKeys& keys, std::string_view text) noexcept {
    std::uint64_t hash = keys.start ^ text.size();
    std::uint64_t eight = 0;
    for (; text.size() >= sizeof eight; text.remove_prefix(sizeof eight)) {
        std::memcpy(&eight, text.data(), sizeof eight);
        hash = mixHash(keys, hash ^ eight);
    }
    eight = 0;
    text.copy(reinterpret_cast<char*>(&eight), text.size());
    return mixHash(keys, hash ^ eight);
}

/// For the containers of the standard library, which can then be asked by views.
struct TextHash {
    using is_transparent = void;

    [[nodiscard]] std::size_t operator()(std::string_view text) const noexcept {
        return static_cast<std::size_t>(hashText(hashKeys(), text));
    }
    [[nodiscard]] std::size_t operator()(std::u16string_view text) const noexcept {
        return static_cast<std::size_t>(hashText(hashKeys(), text));
    }
};

} // namespace nu
