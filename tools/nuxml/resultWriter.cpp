#include "resultWriter.h"

#include "arguments.h"
#include "common/utf8.h"
#include "pathText.h"

namespace tool {

namespace {

/// What stands between several values in one cell.
constexpr std::u16string_view valueSeparator = u"; ";

std::u16string textOf(const TNuDOMNode& node) {
    return node.get_nodeType() == host::DOCUMENT_NODE ? std::u16string() : node.get_nodeValue();
}

} // namespace

Columns::Columns(std::u16string_view list, TNuDOMSelectOptions options) {
    for (;;) {
        const std::size_t comma = findOutside(list, u',');
        const std::u16string_view path = list.substr(0, comma);
        if (path.empty()) {
            throw UsageError("a column without a path");
        }
        checkPath(path);
        names_.emplace_back(path);
        paths_.emplace_back(path, options);
        if (comma == list.npos) {
            return;
        }
        list.remove_prefix(comma + 1);
    }
}

std::vector<std::u16string> Columns::cells(TNuDOMNode& node, std::size_t index) const {
    // A path that begins with "." leads further up; alone it is what everybody means by it.
    if (names_[index] == u".") {
        return {textOf(node)};
    }
    const auto type = node.get_nodeType();
    std::vector<std::u16string> texts;
    if (type == host::ELEMENT_NODE || type == host::DOCUMENT_NODE) {
        const auto found = paths_[index].CreateNodeList(node);
        for (TNuDOMNode* cell : *found) {
            texts.push_back(textOf(*cell));
        }
    }
    return texts;
}

ResultWriter::ResultWriter(Output& output, const ResultOptions& options)
    : output_(output), options_(options), json_(output, {false, options.hasNumbers, false}) {}

void ResultWriter::beginDocument(std::string_view place) {
    place_ = place;
    paths_ = NodePaths();
}

void ResultWriter::write(TNuDOMNode& node) {
    switch (options_.form) {
    case ResultForm::Xml:
        writeXml(node);
        break;
    case ResultForm::Value:
        output_.writeText(textOf(node), Escapes::Visible);
        break;
    case ResultForm::Path:
        output_.write(place_);
        output_.writeText(paths_.pathOf(node), Escapes::Visible);
        break;
    case ResultForm::Count:
        return;
    case ResultForm::Json:
        output_.write(hasRows_ ? ",\n" : "[\n");
        hasRows_ = true;
        options_.columns == nullptr ? json_.write(node) : writeJsonRow(node);
        return;
    case ResultForm::Tsv:
    case ResultForm::Csv:
        writeHeader();
        writeRow(node);
        break;
    }
    output_.write('\n');
}

void ResultWriter::writeCount(std::size_t count) {
    if (options_.form == ResultForm::Count) {
        output_.write(place_);
        output_.writeNumber(static_cast<std::int64_t>(count));
        output_.write('\n');
    }
}

void ResultWriter::end() {
    if (options_.form == ResultForm::Json) {
        output_.write(hasRows_ ? "\n]\n" : "[]\n");
    } else if (options_.columns != nullptr) {
        writeHeader();
    }
}

void ResultWriter::writeXml(const TNuDOMNode& node) {
    const std::u16string xml = node.get_xml();
    // An attribute is written with the blank that separates it from what is before it.
    const bool isAttribute = node.get_nodeType() == host::ATTRIBUTE_NODE;
    output_.writeText(std::u16string_view(xml).substr(isAttribute ? 1 : 0), Escapes::None);
}

void ResultWriter::writeJsonRow(TNuDOMNode& node) {
    const Columns& columns = *options_.columns;
    for (std::size_t index = 0; index < columns.count(); ++index) {
        output_.write(index == 0 ? '{' : ',');
        output_.writeJsonString(columns.nameOf(index));
        output_.write(':');
        const std::vector<std::u16string> texts = columns.cells(node, index);
        if (texts.empty()) {
            output_.write("null");
            continue;
        }
        output_.write(texts.size() > 1 ? "[" : "");
        for (const std::u16string& text : texts) {
            output_.write(&text == &texts.front() ? "" : ",");
            json_.writeText(text);
        }
        output_.write(texts.size() > 1 ? "]" : "");
    }
    output_.write('}');
}

void ResultWriter::writeRow(TNuDOMNode& node) {
    const Columns& columns = *options_.columns;
    std::u16string cell;
    for (std::size_t index = 0; index < columns.count(); ++index) {
        output_.write(index == 0 ? "" : options_.form == ResultForm::Csv ? "," : "\t");
        cell.clear();
        for (const std::u16string& text : columns.cells(node, index)) {
            cell.append(cell.empty() ? std::u16string_view() : valueSeparator).append(text);
        }
        writeCell(cell);
    }
}

void ResultWriter::writeHeader() {
    if (hasRows_ || !options_.hasHeader) {
        return;
    }
    hasRows_ = true;
    const Columns& columns = *options_.columns;
    for (std::size_t index = 0; index < columns.count(); ++index) {
        output_.write(index == 0 ? "" : options_.form == ResultForm::Csv ? "," : "\t");
        writeCell(columns.nameOf(index));
    }
    output_.write('\n');
}

/// CSV as RFC 4180 says, but for the line ends, which are those of the system.
void ResultWriter::writeCell(std::u16string_view text) {
    if (options_.form == ResultForm::Tsv) {
        return output_.writeText(text, Escapes::Visible);
    }
    const bool isQuoted = text.find_first_of(u",\"\r\n") != text.npos || text.starts_with(u' ') ||
                          text.ends_with(u' ');
    if (!isQuoted) {
        return output_.writeText(text, Escapes::None);
    }
    output_.write('"');
    for (;;) {
        const std::size_t quote = text.find(u'"');
        output_.writeText(text.substr(0, quote), Escapes::None);
        if (quote == text.npos) {
            break;
        }
        output_.write("\"\"");
        text.remove_prefix(quote + 1);
    }
    output_.write('"');
}

} // namespace tool
