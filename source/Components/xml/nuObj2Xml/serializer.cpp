#include "nuObj2Xml/serializer.h"

#include <typeinfo>

#include "common/stringStream.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuObj2Xml/elementForm.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectEvents.h"
#include "nuObj2Xml/objectTextWriter.h"
#include "nuObj2Xml/registry.h"
#include "nuObj2Xml/valueText.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/schemaTypes.h"

TNuSerializer::TNuSerializer(const host::TClassInfo& info) : class_(&info) {}

TNuSerializer::TNuSerializer(host::TObject& instance)
    : object_(&instance), class_(&instance.ClassInfo()) {
    nu::registerPersistentClass(*class_);
}

TNuSerializer::~TNuSerializer() = default;

host::TObject* TNuSerializer::GetObject() const { return object_; }

const host::TClassInfo& TNuSerializer::ObjectClass() const {
    const host::TObject* const object = GetObject();
    return object != nullptr ? object->ClassInfo() : *class_;
}

bool TNuSerializer::wantsElement() const noexcept {
    return mayWantElement_ && typeid(*this) != typeid(TNuSerializer);
}

// Pieces

namespace {

/// What a piece puts into a new string.
template <class Append> NuXmlString piece(Append append) {
    NuXmlString text;
    append(text);
    return text;
}

} // namespace

NuXmlString TNuSerializer::GetSchemaLocation() const {
    return nu::ElementForm(uri_, prefix_, schemaLocation_, options_).schemaLocation();
}

NuXmlString TNuSerializer::GetStartRootElement(std::u16string_view name) const {
    const nu::ElementForm form(uri_, prefix_, schemaLocation_, options_);
    return piece([&](NuXmlString& text) { form.appendRootStart(text, name, ObjectClass().name); });
}

NuXmlString TNuSerializer::GetCloseRootElement(std::u16string_view name) const {
    const nu::ElementForm form(uri_, prefix_, schemaLocation_, options_);
    return piece([&](NuXmlString& text) { form.appendEnd(text, name); });
}

NuXmlString TNuSerializer::GetPropElement(std::u16string_view name,
                                          const host::Variant& value) const {
    const nu::ElementForm form(uri_, prefix_, schemaLocation_, options_);
    nu::TextBuffer<char16_t> out;
    out.append(piece(
        [&](NuXmlString& text) { form.appendPropertyStart(text, name, NuSchemaType(value)); }));
    nu::ValueWriter<char16_t>(out).write(value);
    out.append(piece([&](NuXmlString& text) { form.appendEnd(text, name); }));
    return NuXmlString(out.view());
}

// Writing

std::size_t TNuSerializer::WriteToStream(host::TStream& stream, std::u16string_view text) {
    stream.WriteBuffer(text.data(), text.size() * cNuXmlCharSize);
    return text.size();
}

NuXmlString TNuSerializer::produce(std::u16string_view name) {
    if (GetObject() == nullptr) {
        return {};
    }
    nu::TextBuffer<char16_t> out;
    nu::ObjectTextWriter<char16_t>(out, *this).writeOwn(*this, name);
    NuXmlString text(out.view());
    DoAfterSerialize(text);
    return text;
}

void TNuSerializer::Serialize(host::TStream& stream, std::u16string_view name) {
    const NuXmlString text = produce(name);
    if (!text.empty()) {
        WriteToStream(stream, text);
    }
}

NuXmlString TNuSerializer::Serialize(std::u16string_view name) {
    if (typeid(*this) == typeid(TNuSerializer)) {
        return produce(name);
    }
    // A class below may write to the stream in a way of its own.
    TNuStringStream stream(cNuXmlStringType);
    Serialize(stream, name);
    return NuXmlString(stream.WideView());
}

void TNuSerializer::DoAfterSerialize(NuXmlString& /*text*/) {}

// Reading

namespace {

/// Reads the first element into one object.
class RootEvents final : public nu::ObjectEvents {
public:
    RootEvents(TNuSerializer& serializer, host::Instance object, TNuDeserializeOptions options)
        : ObjectEvents(options, false), serializer_(serializer), object_(object) {}

    [[nodiscard]] bool hasRead() const noexcept { return hasRead_; }

private:
    Target open(const nu::StartedElement& /*element*/, std::size_t /*depth*/) override {
        return {object_, &serializer_, false};
    }
    void close(host::Instance /*object*/) override {
        // What stands behind it is looked at no more.
        hasRead_ = true;
        throw ENuSaxHandledAbort(u"");
    }

    TNuSerializer& serializer_;
    host::Instance object_;
    bool hasRead_ = false;
};

} // namespace

void TNuSerializer::DeSerialize(std::u16string_view text, TNuDeserializeOptions options) {
    host::TObject* const object = GetObject();
    if (object == nullptr) {
        throw host::Exception(nu::messages::noObject);
    }
    RootEvents events(*this, host::instance(*object), options);
    events.read([&](TNuSAXXMLReader& reader) {
        TNuStringStream stream(text);
        reader.Parse(stream);
    });
    if (!events.hasRead()) {
        throw host::Exception(nu::messages::noElement);
    }
}

void TNuSerializer::DoAfterDeserialize(TNuDOMElement& /*element*/) {}

// Items

std::size_t TNuSerializer::ItemCount() const { return 0; }
TNuSerializerItem TNuSerializer::GetItem(std::size_t /*index*/) const { return {}; }
std::span<const std::u16string_view> TNuSerializer::ItemsElements() const { return {}; }
void TNuSerializer::BeginReading() {}
TNuSerializerItem TNuSerializer::ItemToRead(const TNuElementFound& /*element*/) { return {}; }
void TNuSerializer::EndReading() {}
