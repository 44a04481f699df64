#include "eventText.h"

#include "attributeSpans.h"
#include "decimal.h"

namespace tool {

namespace {

constexpr std::size_t placeWidth = 14; ///< line and column, and the gap behind them
constexpr std::size_t lineWidth = 7;
constexpr std::size_t nameWidth = eventName(EventKind::ProcessingInstruction).size() + 2;

constexpr std::string_view usual = "\x1B[0m";
constexpr std::string_view faint = "\x1B[2m";
constexpr std::string_view red = "\x1B[1;31m";
constexpr std::string_view green = "\x1B[32m";
constexpr std::string_view yellow = "\x1B[33m";
constexpr std::string_view blue = "\x1B[1;34m";
constexpr std::string_view cyan = "\x1B[36m";

constexpr std::string_view colourOf(EventKind kind) noexcept {
    switch (kind) {
    case EventKind::StartElement:
    case EventKind::EndElement:
        return blue;
    case EventKind::Characters:
        return green;
    case EventKind::Warning:
        return yellow;
    case EventKind::Error:
    case EventKind::FatalError:
    case EventKind::Exception:
        return red;
    case EventKind::StartDocument:
    case EventKind::EndProlog:
    case EventKind::StartPrefixMapping:
    case EventKind::StartCDATA:
    case EventKind::EndCDATA:
    case EventKind::Comment:
    case EventKind::ProcessingInstruction:
    case EventKind::StartDTD:
    case EventKind::EndDocument:
        break;
    }
    return faint;
}

constexpr std::size_t spacesUpTo(std::size_t width, std::size_t used) noexcept {
    return used < width ? width - used : 1;
}

} // namespace

void EventText::write(const Event& event) {
    if (showsPlaces_) {
        writePlace(event);
    }
    writeName(event.kind);
    writeContent(event);
    output_.write('\n');
}

void EventText::writePlace(const Event& event) {
    if (!event.place) {
        output_.writeSpaces(placeWidth);
        return;
    }
    const Decimal line(event.place->line);
    const Decimal column(event.place->column);
    const std::size_t indent = line.view().size() < lineWidth ? lineWidth - line.view().size() : 0;
    colour(faint);
    output_.writeSpaces(indent);
    output_.write(line.view());
    output_.write(':');
    output_.write(column.view());
    colour(usual);
    output_.writeSpaces(
        spacesUpTo(placeWidth, indent + line.view().size() + 1 + column.view().size()));
}

/// A line ends with its last word, so a name that stands alone is not filled up.
void EventText::writeName(EventKind kind) {
    const std::string_view name = eventName(kind);
    colour(colourOf(kind));
    output_.write(name);
    colour(usual);
    switch (kind) {
    case EventKind::StartDocument:
        if (title_.empty()) {
            return;
        }
        break;
    case EventKind::EndProlog:
    case EventKind::EndDocument:
    case EventKind::StartCDATA:
    case EventKind::EndCDATA:
        return;
    case EventKind::StartPrefixMapping:
    case EventKind::StartElement:
    case EventKind::EndElement:
    case EventKind::Characters:
    case EventKind::Comment:
    case EventKind::ProcessingInstruction:
    case EventKind::StartDTD:
    case EventKind::Warning:
    case EventKind::Error:
    case EventKind::FatalError:
    case EventKind::Exception:
        break;
    }
    output_.writeSpaces(spacesUpTo(nameWidth, name.size()));
}

void EventText::writeContent(const Event& event) {
    switch (event.kind) {
    case EventKind::StartDocument:
        output_.writeText(title_, Escapes::Visible);
        return;
    case EventKind::StartElement:
    case EventKind::EndElement:
        writeElement(event);
        return;
    case EventKind::Characters:
    case EventKind::Comment:
        writeQuoted(event.fields.front().text);
        return;
    case EventKind::Warning:
    case EventKind::Error:
    case EventKind::FatalError:
    case EventKind::Exception:
        writeFault(event);
        return;
    case EventKind::EndProlog:
    case EventKind::StartPrefixMapping:
    case EventKind::StartCDATA:
    case EventKind::EndCDATA:
    case EventKind::ProcessingInstruction:
    case EventKind::StartDTD:
    case EventKind::EndDocument:
        break;
    }
    std::string_view gap;
    for (const EventField& field : event.fields) {
        if (!field.text.empty()) {
            output_.write(gap);
            output_.writeText(field.text, Escapes::Visible);
            gap = " ";
        }
    }
}

/// The name as written, the attributes, and the namespace in braces.
void EventText::writeElement(const Event& event) {
    const std::u16string_view uri = event.fields[0].text;
    const std::u16string_view qName = event.fields[2].text;
    output_.writeText(qName, Escapes::Visible);
    const host::SAXLength count = event.attributes == nullptr ? 0 : event.attributes->getLength();
    for (host::SAXLength index = 0; index < count; ++index) {
        const AttributeSpans attribute = spansOf(*event.attributes, index);
        output_.write(' ');
        colour(cyan);
        output_.writeText(attribute.qName, Escapes::Visible);
        colour(usual);
        output_.write('=');
        writeQuoted(attribute.value);
    }
    if (!uri.empty()) {
        colour(faint);
        output_.write(" {");
        output_.writeText(uri, Escapes::Visible);
        output_.write('}');
        colour(usual);
    }
}

/// Line and column stand before the message unless they begin the line already.
void EventText::writeFault(const Event& event) {
    if (event.place && event.place->line > 0 && !showsPlaces_) {
        output_.writeNumber(event.place->line);
        output_.write(':');
        output_.writeNumber(event.place->column);
        output_.write(": ");
    }
    std::string_view gap;
    for (const EventField& field : event.fields) {
        if (!field.text.empty()) {
            output_.write(gap);
            writeMessage(output_, field.text);
            gap = ": ";
        }
    }
}

/// Quotes show where spaces end. A quote inside stays as it is: the last one closes.
void EventText::writeQuoted(std::u16string_view text) {
    output_.write('"');
    output_.writeText(text, Escapes::Visible);
    output_.write('"');
}

void EventText::colour(std::string_view code) {
    if (isColoured_) {
        output_.write(code);
    }
}

} // namespace tool
