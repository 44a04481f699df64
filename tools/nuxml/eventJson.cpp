#include "eventJson.h"

#include "attributeSpans.h"

namespace tool {

void EventJson::write(const Event& event) {
    output_.write(R"({"event":")");
    output_.write(eventName(event.kind));
    output_.write('"');
    for (const EventField& field : event.fields) {
        output_.write(',');
        writeMember(field.key, field.text);
    }
    if (event.attributes != nullptr) {
        writeAttributes(*event.attributes);
    }
    if (event.place) {
        output_.write(R"(,"line":)");
        output_.writeNumber(event.place->line);
        output_.write(R"(,"column":)");
        output_.writeNumber(event.place->column);
    }
    output_.write("}\n");
}

void EventJson::writeAttributes(host::IBufferedAttributes& attributes) {
    output_.write(R"(,"attributes":[)");
    const host::SAXLength count = attributes.getLength();
    for (host::SAXLength index = 0; index < count; ++index) {
        const AttributeSpans attribute = spansOf(attributes, index);
        output_.write(index == 0 ? "{" : ",{");
        writeMember("qName", attribute.qName);
        output_.write(',');
        writeMember("localName", attribute.localName);
        output_.write(',');
        writeMember("uri", attribute.uri);
        output_.write(',');
        writeMember("value", attribute.value);
        output_.write('}');
    }
    output_.write(']');
}

void EventJson::writeMember(std::string_view key, std::u16string_view text) {
    output_.write('"');
    output_.write(key);
    output_.write(R"(":)");
    output_.writeJsonString(text);
}

} // namespace tool
