#include "host/runtime/variant.h"

#include <algorithm>

#include "host/runtime/decimalText.h"
#include "host/runtime/numberText.h"
#include "host/runtime/variantNumber.h"

namespace host {

namespace {

enum Rank { rankMissing, rankValue, rankArray };

Rank rankOf(const Variant& value) noexcept {
    if (value.IsEmpty() || value.IsNull()) {
        return rankMissing;
    }
    return value.IsArray() ? rankArray : rankValue;
}

template <class Value> int sign(const Value& left, const Value& right) noexcept {
    if (left < right) {
        return -1;
    }
    return right < left ? 1 : 0;
}

int compareNumbers(long double left, long double right) noexcept {
    const bool leftIsNumber = left == left;
    const bool rightIsNumber = right == right;
    return leftIsNumber && rightIsNumber ? sign(left, right) : sign(leftIsNumber, rightIsNumber);
}

/// The number of a variant on a scale that orders its kind.
std::optional<long double> positionOf(const Variant& value) noexcept {
    if (const auto* const moment = value.If<TDateTime>()) {
        return toLinearDays(*moment);
    }
    return numberOf(value);
}

/// The text of a variant that stands beside text.
std::u16string sortedText(const Variant& value) {
    if (const auto* const moment = value.If<TDateTime>()) {
        return NumberText(toLinearDays(*moment)).string();
    }
    return textOf(value).value_or(std::u16string());
}

int compareTexts(std::u16string_view left, std::u16string_view right) noexcept {
    const auto leftNumber = parseDecimal(left);
    const auto rightNumber = leftNumber ? parseDecimal(right) : std::nullopt;
    return rightNumber ? compareDecimals(*leftNumber, *rightNumber) : left.compare(right);
}

bool elementLess(const WideString& left, const WideString& right) noexcept {
    return left.text < right.text;
}
template <class Element> bool elementLess(const Element& left, const Element& right) noexcept {
    return left < right;
}

/// Arrays of one kind element by element, others by their type codes.
int compareArrays(const Variant& left, const Variant& right) noexcept {
    return std::visit(
        [&](const auto& leftArray) {
            using Array = std::remove_cvref_t<decltype(leftArray)>;
            const auto* const rightArray = right.If<Array>();
            if constexpr (requires { leftArray.data(); }) {
                if (rightArray != nullptr) {
                    const auto isLess = [](const Array& one, const Array& other) {
                        return std::lexicographical_compare(
                            one.begin(), one.end(), other.begin(), other.end(),
                            [](const auto& a, const auto& b) { return elementLess(a, b); });
                    };
                    return isLess(*rightArray, leftArray) - isLess(leftArray, *rightArray);
                }
            }
            return sign(left.Type(), right.Type());
        },
        left.Held());
}

} // namespace

int Variant::Compare(const Variant& left, const Variant& right) {
    // 1. By what they are.
    const Rank rank = rankOf(left);
    if (rank != rankOf(right) || rank == rankMissing) {
        return sign(rank, rankOf(right));
    }
    if (rank == rankArray) {
        return compareArrays(left, right);
    }
    // 2. Exactly, where both count ten-thousandths.
    const auto* const leftAmount = left.If<Currency>();
    const auto* const rightAmount = right.If<Currency>();
    if (leftAmount != nullptr && rightAmount != nullptr) {
        return sign(*leftAmount, *rightAmount);
    }
    // 3. As numbers, or as texts.
    const auto leftNumber = positionOf(left);
    const auto rightNumber = positionOf(right);
    if (leftNumber && rightNumber) {
        return compareNumbers(*leftNumber, *rightNumber);
    }
    return compareTexts(sortedText(left), sortedText(right));
}

} // namespace host
