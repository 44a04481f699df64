#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/runtime/persistent.h"

namespace host {

/// A list of strings as an object. Indexes count from 0; one outside throws EListError.
class NUXML_API TStringList : public Published<TStringList> {
public:
    TStringList() = default;
    TStringList(std::initializer_list<std::u16string_view> strings)
        : strings_(strings.begin(), strings.end()) {}
    TStringList(const TStringList&) = default;
    TStringList& operator=(const TStringList&) = default;
    ~TStringList() override;

    /// How many strings there are.
    [[nodiscard]] std::size_t Count() const noexcept { return strings_.size(); }
    /// Gives the index of the new string, which is the last.
    std::size_t Add(std::u16string text);
    /// Puts a string before the one at `index`, or behind all at Count().
    void Insert(std::size_t index, std::u16string text);
    /// Takes a string out; those behind it move up.
    void Delete(std::size_t index);
    /// Takes all strings out.
    void Clear() noexcept { strings_.clear(); }
    [[nodiscard]] const std::u16string& operator[](std::size_t index) const;
    [[nodiscard]] std::u16string& operator[](std::size_t index);
    /// The index of the first string that is equal, or -1.
    [[nodiscard]] std::ptrdiff_t IndexOf(std::u16string_view text) const noexcept;

    /// The strings as lines, a line feed behind each.
    [[nodiscard]] std::u16string GetText() const;
    /// Takes the lines of a text: they end with CR LF, LF or CR, the last one perhaps with nothing.
    void SetText(std::u16string_view text);

    /// For range-based for loops; valid until the list changes.
    [[nodiscard]] auto begin() const noexcept { return strings_.begin(); }
    /// Behind the last string.
    [[nodiscard]] auto end() const noexcept { return strings_.end(); }

    friend bool operator==(const TStringList& left, const TStringList& right) noexcept {
        return left.strings_ == right.strings_;
    }

    static constexpr auto published = publish<TStringList>(u"TStringList");

private:
    std::vector<std::u16string> strings_;
};

} // namespace host
