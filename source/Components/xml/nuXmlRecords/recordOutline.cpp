#include "nuXmlRecords/recordOutline.h"

#include <algorithm>
#include <cstring>

#include "common/textHash.h"
#include "nuXmlParser/conforming/entityRules.h"
#include "nuXmlParser/conforming/referenceText.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

namespace {

constexpr bool isBlank(char c) noexcept { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

const char* findByte(const char* from, const char* end, char c) noexcept {
    const void* const found = std::memchr(from, c, static_cast<std::size_t>(end - from));
    return found == nullptr ? end : static_cast<const char*>(found);
}

/// Behind the next `mark`; everything that is begun is also ended.
const char* behind(const char* from, const char* end, std::string_view mark) noexcept {
    const std::size_t place = std::string_view(from, end).find(mark);
    return place == std::string_view::npos ? end : from + place + mark.size();
}

} // namespace

void RecordOutline::read(std::string_view xml) {
    elements_.clear();
    attributes_.clear();
    texts_.clear();
    if (rememberedCount_ > 0) {
        std::fill(remembered_.begin(), remembered_.end(), none);
        rememberedCount_ = 0;
    }

    const char* place = xml.data();
    const char* const end = place + xml.size();
    Index open = none;
    while (place != end) {
        if (*place != '<') {
            const char* const less = findByte(place, end, '<');
            addText(open, {place, less}, false);
            place = less;
        } else if (place[1] == '/') {
            open = elements_[open].parent;
            place = behind(place, end, ">");
        } else if (place[1] == '!' && place[2] == '[') {
            const char* const start = place + std::string_view("<![CDATA[").size();
            place = behind(start, end, "]]>");
            addText(open, {start, place - 3}, true);
        } else if (place[1] == '!') {
            place = behind(place + 4, end, "-->");
        } else if (place[1] == '?') {
            place = behind(place, end, "?>");
        } else {
            place = readStartTag(place, end, open);
        }
    }
}

/// Gives the place behind the tag; `open` becomes its element unless that is empty.
const char* RecordOutline::readStartTag(const char* less, const char* end, Index& open) {
    const auto endsName = [](char c) { return isBlank(c) || c == '>' || c == '/' || c == '='; };
    const auto skipName = [endsName](const char* place) {
        while (!endsName(*place)) {
            ++place;
        }
        return place;
    };
    // 1. The element among those of its parent.
    const char* place = skipName(less + 1);
    const auto element = static_cast<Index>(elements_.size());
    const auto firstAttribute = static_cast<Index>(attributes_.size());
    elements_.push_back({{less + 1, place}, open, firstAttribute, firstAttribute});
    if (open != none) {
        enter(element, open);
    }
    // 2. Its attributes but for declarations.
    for (;;) {
        while (isBlank(*place)) {
            ++place;
        }
        if (*place == '>' || *place == '/') {
            break;
        }
        const char* const nameEnd = skipName(place);
        const char* const value = nameEnd + 2;
        const char* const valueEnd = findByte(value, end, '"');
        const std::string_view name(place, nameEnd);
        if (!isNamespaceDeclaration(name)) {
            attributes_.push_back({name, {value, valueEnd}});
        }
        place = valueEnd + 1;
    }
    elements_[element].behindAttributes = static_cast<Index>(attributes_.size());
    // 3. Its end, where it is empty.
    if (*place == '/') {
        return place + 2;
    }
    open = element;
    return place + 1;
}

/// Chains the element behind the last one of its name, or its name behind the last name.
void RecordOutline::enter(Index index, Index parentIndex) {
    const Index first = findFirst(parentIndex, elements_[index].name);
    if (first != none) {
        Element& head = elements_[first];
        elements_[head.lastSame].nextSame = index;
        head.lastSame = index;
        return;
    }
    Element& parent = elements_[parentIndex];
    elements_[index].lastSame = index;
    (parent.firstChild == none ? parent.firstChild : elements_[parent.lastFirst].nextName) = index;
    parent.lastFirst = index;
    if (++parent.nameCount > fewNames) {
        remember(index);
    }
}

/// The first element of that name in the parent: few names are compared, more are looked up.
RecordOutline::Index RecordOutline::findFirst(Index parentIndex,
                                              std::string_view name) const noexcept {
    const Element& parent = elements_[parentIndex];
    if (parent.lastFirst != none && elements_[parent.lastFirst].name == name) {
        return parent.lastFirst;
    }
    Index first = parent.firstChild;
    for (Index count = 0; first != none && count < fewNames; ++count) {
        if (elements_[first].name == name) {
            return first;
        }
        first = elements_[first].nextName;
    }
    return first == none ? none : remembered_[slotOf(parentIndex, name)];
}

/// Where the first element of that name in the parent is remembered, or would be.
std::size_t RecordOutline::slotOf(Index parent, std::string_view name) const noexcept {
    const std::size_t mask = remembered_.size() - 1;
    std::size_t slot = mixHash(hashKeys(), TextHash()(name) ^ parent) & mask;
    while (remembered_[slot] != none && (elements_[remembered_[slot]].parent != parent ||
                                         elements_[remembered_[slot]].name != name)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void RecordOutline::remember(Index first) {
    // Half of the slots stay free.
    if (2 * (rememberedCount_ + 1) > remembered_.size()) {
        constexpr std::size_t firstSize = 64;
        const std::vector<Index> former = std::move(remembered_);
        remembered_.assign(std::max(firstSize, 2 * former.size()), none);
        for (const Index known : former) {
            if (known != none) {
                remembered_[slotOf(elements_[known].parent, elements_[known].name)] = known;
            }
        }
    }
    remembered_[slotOf(elements_[first].parent, elements_[first].name)] = first;
    ++rememberedCount_;
}

void RecordOutline::addText(Index element, std::string_view text, bool isCData) {
    Element& parent = elements_[element];
    const auto added = static_cast<Index>(texts_.size());
    texts_.push_back({text, isCData, none});
    (parent.firstText == none ? parent.firstText : texts_[parent.lastText].next) = added;
    parent.lastText = added;
    parent.hasSolidText = parent.hasSolidText || !std::all_of(text.begin(), text.end(), isBlank);
}

void appendUnescaped(std::string& target, std::string_view text) {
    for (;;) {
        const std::size_t mark = text.find('&');
        target.append(text.substr(0, mark));
        if (mark == text.npos) {
            return;
        }
        text.remove_prefix(mark);
        ReferenceText reference;
        if (reference.read(text.data(), text.data() + text.size()) == TagText::Result::Complete &&
            reference.kind != ReferenceText::Kind::Entity) {
            appendUtf8(target, reference.codePoint);
            text.remove_prefix(static_cast<std::size_t>(reference.end - text.data()));
        } else {
            target += '&';
            text.remove_prefix(1);
        }
    }
}

} // namespace nu
