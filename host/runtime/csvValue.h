#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/runtime/dataSet.h"

namespace host {

/// The value of that type that the text of a field stands for; nothing if it is none.
std::optional<Variant> csvValue(std::u16string_view text, TFieldType type);

/// The text of a field. Null gives an empty one.
std::u16string csvText(const Variant& value, TFieldType type);

/// A type for a column of texts, by what all of them are.
class CsvTypeGuess {
public:
    void see(std::u16string_view text);
    [[nodiscard]] TFieldType type() const noexcept;

private:
    std::size_t candidate_ = 0;
    bool hasSeen_ = false;
};

} // namespace host
