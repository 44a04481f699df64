#include "nuXmlRecords/recordColumns.h"

#include <algorithm>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlRecords/recordMessages.h"
#include "nuXmlRecords/recordOutline.h"
#include "nuXmlRecords/recordPath.h"

namespace nu {

namespace {

using Index = RecordOutline::Index;

bool isOf(std::string_view name, std::string_view sought) noexcept {
    return name == sought || localNameIn(name) == sought;
}

/// Appends the child elements of that name.
void addChildren(std::vector<Index>& target, const RecordOutline& outline, Index parent,
                 std::string_view name) {
    for (Index first = outline[parent].firstChild; first != RecordOutline::none;
         first = outline[first].nextName) {
        if (isOf(outline[first].name, name)) {
            for (Index at = first; at != RecordOutline::none; at = outline[at].nextSame) {
                target.push_back(at);
            }
        }
    }
}

/// False where there is no attribute of that name.
bool appendAttribute(std::string& target, const RecordOutline& outline, Index element,
                     std::string_view name) {
    for (Index at = outline[element].firstAttribute; at != outline[element].behindAttributes;
         ++at) {
        if (isOf(outline.attribute(at).name, name)) {
            appendUnescaped(target, outline.attribute(at).value);
            return true;
        }
    }
    return false;
}

void appendTexts(std::string& target, const RecordOutline& outline, Index element) {
    const bool isSpaceLeftOut =
        outline[element].firstChild != RecordOutline::none && !outline[element].hasSolidText;
    for (Index at = outline[element].firstText; at != RecordOutline::none && !isSpaceLeftOut;
         at = outline.text(at).next) {
        if (outline.text(at).isCData) {
            target.append(outline.text(at).text);
        } else {
            appendUnescaped(target, outline.text(at).text);
        }
    }
}

/// Appends the attributes of elements or, without a name, their texts.
void appendValues(std::string& target, const RecordOutline& outline,
                  const std::vector<Index>& elements, std::string_view attribute) {
    constexpr std::string_view separator = "; ";
    bool isFirst = true;
    for (const Index element : elements) {
        const std::size_t before = target.size();
        target += isFirst ? std::string_view() : separator;
        if (attribute.empty()) {
            appendTexts(target, outline, element);
        } else if (!appendAttribute(target, outline, element, attribute)) {
            target.resize(before);
            continue;
        }
        isFirst = false;
    }
}

/// Makes a value that stands in `target` from `start` on one that a cell can hold.
void protectCell(std::string& target, std::size_t start, RowForm form) {
    const std::string_view stops = form == RowForm::Csv ? ",\"\r\n" : "\t\r\n\\";
    if (target.find_first_of(stops, start) == target.npos) {
        return;
    }
    const std::string value = target.substr(start);
    target.resize(start);
    if (form == RowForm::Csv) {
        target += '"';
        for (const char c : value) {
            target.append(c == '"' ? 2 : 1, c);
        }
        target += '"';
        return;
    }
    for (const char c : value) {
        switch (c) {
        case '\t':
            target += "\\t";
            break;
        case '\n':
            target += "\\n";
            break;
        case '\r':
            target += "\\r";
            break;
        case '\\':
            target += "\\\\";
            break;
        default:
            target += c;
        }
    }
}

char separatorOf(RowForm form) noexcept { return form == RowForm::Csv ? ',' : '\t'; }

} // namespace

RecordColumns::RecordColumns(std::u16string_view list) {
    const std::string text = NuToUtf8(list);
    const auto check = [list](bool isRight) {
        if (!isRight) {
            throw host::Exception(host::formatMessage(messages::noColumns, {list}));
        }
    };
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        Column column{text.substr(start, comma - start), {}, {}};
        start = comma + 1;
        std::string_view rest = column.text == "." ? std::string_view() : column.text;
        check(!column.text.empty());
        while (!rest.empty()) {
            const std::size_t slash = rest.find('/');
            const std::string_view step = rest.substr(0, slash);
            const std::string_view name = localNameIn(step.substr(step.starts_with('@') ? 1 : 0));
            check(!name.empty() && name.find_first_of(" @*[]()") == name.npos &&
                  (slash == rest.npos || (!step.starts_with('@') && slash + 1 < rest.size())));
            (step.starts_with('@') ? column.attribute : column.elements.emplace_back()) = name;
            rest.remove_prefix(slash == rest.npos ? rest.size() : slash + 1);
        }
        columns_.push_back(std::move(column));
    }
}

void RecordColumns::AppendHeader(std::string& target, RowForm form) const {
    for (const Column& column : columns_) {
        if (&column != &columns_.front()) {
            target += separatorOf(form);
        }
        const std::size_t start = target.size();
        target += column.text;
        protectCell(target, start, form);
    }
    target += '\n';
}

void RecordColumns::appendRow(std::string& target, RowForm form,
                              const RecordOutline& outline) const {
    std::vector<Index> found;
    std::vector<Index> inside;
    for (const Column& column : columns_) {
        if (&column != &columns_.front()) {
            target += separatorOf(form);
        }
        const std::size_t start = target.size();
        found.assign(1, RecordOutline::root());
        for (const std::string& name : column.elements) {
            inside.clear();
            for (const Index element : found) {
                addChildren(inside, outline, element, name);
            }
            found.swap(inside);
        }
        appendValues(target, outline, found, column.attribute);
        protectCell(target, start, form);
    }
    target += '\n';
}

} // namespace nu
