#include "host/runtime/stringList.h"

#include <algorithm>

#include "host/runtime/exception.h"

namespace host {

TStringList::~TStringList() = default;

std::size_t TStringList::Add(std::u16string text) {
    strings_.push_back(std::move(text));
    return strings_.size() - 1;
}

void TStringList::Insert(std::size_t index, std::u16string text) {
    checkListIndex(static_cast<std::int64_t>(index), strings_.size() + 1);
    strings_.insert(strings_.begin() + static_cast<std::ptrdiff_t>(index), std::move(text));
}

void TStringList::Delete(std::size_t index) {
    checkListIndex(static_cast<std::int64_t>(index), strings_.size());
    strings_.erase(strings_.begin() + static_cast<std::ptrdiff_t>(index));
}

const std::u16string& TStringList::operator[](std::size_t index) const {
    checkListIndex(static_cast<std::int64_t>(index), strings_.size());
    return strings_[index];
}

std::u16string& TStringList::operator[](std::size_t index) {
    checkListIndex(static_cast<std::int64_t>(index), strings_.size());
    return strings_[index];
}

std::ptrdiff_t TStringList::IndexOf(std::u16string_view text) const noexcept {
    const auto place = std::find(strings_.begin(), strings_.end(), text);
    return place != strings_.end() ? place - strings_.begin() : -1;
}

std::u16string TStringList::GetText() const {
    std::size_t size = strings_.size();
    for (const std::u16string& line : strings_) {
        size += line.size();
    }
    std::u16string text;
    text.reserve(size);
    for (const std::u16string& line : strings_) {
        text.append(line).push_back(u'\n');
    }
    return text;
}

void TStringList::SetText(std::u16string_view text) {
    std::vector<std::u16string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
        text.remove_prefix(text.starts_with(u"\r\n") ? 2 : std::min<std::size_t>(text.size(), 1));
    }
    strings_ = std::move(lines);
}

} // namespace host
