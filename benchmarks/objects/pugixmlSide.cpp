// What somebody writes by hand who has a tree: an element for each object and for each member, and
// numbers that keep every bit.

#include <array>
#include <charconv>
#include <cstring>
#include <pugixml.hpp>
#include <stdexcept>

#include "objects/sides.h"

namespace bench {

namespace {

constexpr std::array colorNames{"clRed", "clGreen", "clBlue"};

struct StringWriter final : pugi::xml_writer {
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
    std::string text;
};

template <class Number> void setNumber(pugi::xml_node parent, const char* name, Number value) {
    std::array<char, 32> digits{};
    std::to_chars(digits.data(), digits.data() + digits.size() - 1, value);
    parent.append_child(name).text().set(digits.data());
}

void setText(pugi::xml_node parent, const char* name, const char* value) {
    parent.append_child(name).text().set(value);
}

template <class Number> void getNumber(pugi::xml_node parent, const char* name, Number& value) {
    const char* const text = parent.child_value(name);
    const char* const end = text + std::strlen(text);
    if (const auto result = std::from_chars(text, end, value);
        result.ec != std::errc() || result.ptr != end) {
        throw std::runtime_error("not a number");
    }
}

Color colorOf(const char* name) {
    for (std::size_t index = 0; index < colorNames.size(); ++index) {
        if (std::strcmp(colorNames[index], name) == 0) {
            return static_cast<Color>(index);
        }
    }
    throw std::runtime_error("not a colour");
}

void set(pugi::xml_node node, const Record& record) {
    setNumber(node, "Number", record.number);
    setText(node, "Name", record.name.c_str());
    setNumber(node, "Weight", record.weight);
    setNumber(node, "Stamp", record.stamp);
    setText(node, "Active", record.isActive ? "true" : "false");
    setText(node, "Color", colorNames[static_cast<std::size_t>(record.color)]);
    setText(node, "Note", record.note.c_str());
    setNumber(node, "Ratio", record.ratio);
}

void get(pugi::xml_node node, Record& record) {
    getNumber(node, "Number", record.number);
    record.name = node.child_value("Name");
    getNumber(node, "Weight", record.weight);
    getNumber(node, "Stamp", record.stamp);
    record.isActive = std::strcmp(node.child_value("Active"), "true") == 0;
    record.color = colorOf(node.child_value("Color"));
    record.note = node.child_value("Note");
    getNumber(node, "Ratio", record.ratio);
}

void set(pugi::xml_node node, const std::vector<Record>& records) {
    for (const Record& record : records) {
        set(node.append_child("item"), record);
    }
}

void get(pugi::xml_node node, std::vector<Record>& records) {
    for (const pugi::xml_node item : node.children("item")) {
        get(item, records.emplace_back());
    }
}

void set(pugi::xml_node node, const Note& note) { setText(node, "Text", note.text.c_str()); }

void get(pugi::xml_node node, Note& note) { note.text = node.child_value("Text"); }

struct Codec {
    template <class Value> static std::string write(const Value& value) {
        pugi::xml_document document;
        set(document.append_child("value"), value);
        StringWriter writer;
        document.save(writer, "", pugi::format_raw);
        return std::move(writer.text);
    }
    template <class Value> static void read(const std::string& xml, Value& value) {
        pugi::xml_document document;
        if (!document.load_buffer(xml.data(), xml.size())) {
            throw std::runtime_error("not read");
        }
        get(document.document_element(), value);
    }
};

} // namespace

const ObjectLibrary pugixmlSide = libraryOf<Codec>("pugixml");

} // namespace bench
