#pragma once

#include <cstdint>
#include <initializer_list>

/// \file
/// The options of lookups by name and path.

/// How something is looked up by name or path.
enum TNuDOMSelectOption : std::uint8_t {
    /// When nothing matches, make the missing node and give that.
    soCreate = 1,
    /// When nothing matches, throw; the message names what was looked for.
    soRaise = 2,
    /// Compare names without regard to letter case.
    soCaseInsensitive = 4,
    /// Compare local names: what stands before the first colon of the requested name is cut off.
    soIgnoreNamespace = 8,
};

/// A set of options: `{soRaise, soCaseInsensitive}` or `soRaise | soCaseInsensitive`.
///
/// soCreate together with soRaise is a mistake in the program; lookups then throw
/// host::EAssertionFailed.
class TNuDOMSelectOptions {
public:
    constexpr TNuDOMSelectOptions() noexcept = default;
    constexpr TNuDOMSelectOptions(TNuDOMSelectOption option) noexcept : bits_(option) {}
    constexpr TNuDOMSelectOptions(std::initializer_list<TNuDOMSelectOption> options) noexcept {
        for (const TNuDOMSelectOption option : options) {
            bits_ |= option;
        }
    }

    /// Whether the set holds that option.
    [[nodiscard]] constexpr bool has(TNuDOMSelectOption option) const noexcept {
        return (bits_ & option) != 0;
    }
    /// The set as a byte of flags.
    [[nodiscard]] constexpr std::uint8_t bits() const noexcept { return bits_; }

    friend constexpr bool operator==(TNuDOMSelectOptions, TNuDOMSelectOptions) noexcept = default;
    friend constexpr TNuDOMSelectOptions operator|(TNuDOMSelectOptions left,
                                                   TNuDOMSelectOptions right) noexcept {
        TNuDOMSelectOptions both;
        both.bits_ = left.bits_ | right.bits_;
        return both;
    }

private:
    std::uint8_t bits_ = 0;
};

/// The set of two options.
constexpr TNuDOMSelectOptions operator|(TNuDOMSelectOption left,
                                        TNuDOMSelectOption right) noexcept {
    return TNuDOMSelectOptions(left) | TNuDOMSelectOptions(right);
}
