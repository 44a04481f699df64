#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// \file
/// What the standard demands of a tag whose names are all right, each by itself.

namespace nu::markup {

/// Whether two of a few names with prefixes differ in their prefixes alone.
template <class Name>
[[nodiscard]] bool haveEqualLocalNames(std::span<Name* const> names) noexcept {
    const auto localName = [](const Name* name) { return name->text.substr(name->prefixLength); };
    for (std::size_t index = 1; index < names.size(); ++index) {
        for (std::size_t before = 0; before < index; ++before) {
            if (localName(names[before]) == localName(names[index])) {
                return true;
            }
        }
    }
    return false;
}

/// Compares the names of each tag with each other.
///
/// `Name` is a ByteName with `prefixLength`, with the colon and 0 without a prefix, and
/// `std::uint64_t lastTag`, at first 0.
template <class Name> class TagChecks {
public:
    /// Tags that have more attributes with prefixes are not plain.
    static constexpr std::size_t mostPrefixed = 16;

    /// Another tag begins. Gives its number, which none had before.
    std::uint64_t begin() noexcept {
        prefixedCount_ = 0;
        return ++tag_;
    }
    /// The number of the tag at hand.
    [[nodiscard]] std::uint64_t number() const noexcept { return tag_; }
    /// It has an attribute of this name; false where it had one before.
    [[nodiscard]] bool add(Name& name) noexcept {
        const bool isFirst = name.lastTag != tag_;
        name.lastTag = tag_;
        return isFirst;
    }
    /// That name has a prefix, and does not declare one; false where there are too many.
    [[nodiscard]] bool addPrefixed(Name& name) noexcept {
        if (prefixedCount_ == mostPrefixed) {
            return false;
        }
        prefixed_[prefixedCount_++] = &name;
        return true;
    }
    /// Whether all prefixes in the tag of this element are declared, and no two attributes can have
    /// the same name in the same namespace.
    template <class IsDeclared>
    [[nodiscard]] [[gnu::always_inline]] bool arePrefixesPlain(Name& element,
                                                               IsDeclared&& isDeclared) {
        return (element.prefixLength == 0 || isDeclared(element)) &&
               (prefixedCount_ == 0 || areAttributesPlain(isDeclared));
    }

private:
    template <class IsDeclared> [[nodiscard]] bool areAttributesPlain(IsDeclared&& isDeclared) {
        const std::span<Name* const> names{prefixed_.data(), prefixedCount_};
        return std::all_of(names.begin(), names.end(),
                           [&](Name* name) { return isDeclared(*name); }) &&
               !haveEqualLocalNames(names);
    }

    std::uint64_t tag_ = 0;
    std::array<Name*, mostPrefixed> prefixed_{};
    std::size_t prefixedCount_ = 0;
};

} // namespace nu::markup
