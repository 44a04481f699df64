#include "nuObj2Xml/entryFunctions.h"

#include "common/stringStream.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "host/runtime/fileStream.h"
#include "nuObj2Xml/elementForm.h"
#include "nuObj2Xml/elementName.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectBuilder.h"
#include "nuObj2Xml/objectEvents.h"
#include "nuObj2Xml/objectTextWriter.h"
#include "nuObj2Xml/registry.h"
#include "nuObj2Xml/slotClass.h"
#include "nuObj2Xml/treeReader.h"
#include "nuXmlDOM/load/loading.h"
#include "nuXmlParser/parserErrors.h"

namespace {

using host::Instance;

/// What writes an object of a class on its own; null for a class that no serializer can write.
std::unique_ptr<TNuSerializer> serializerFor(Instance object, TNuNamespaceOptions options) {
    if (!object.info->isObject) {
        return nullptr;
    }
    auto serializer = GetNuSerializer(static_cast<host::TObject*>(object.object));
    serializer->SetNamespaceOptions(options);
    return serializer;
}

/// Writes an object of any class into a buffer.
template <class Unit>
void writeObject(nu::TextBuffer<Unit>& out, Instance object, std::u16string_view name,
                 TNuNamespaceOptions options) {
    TNuSerializer settings(*object.info);
    settings.SetNamespaceOptions(options);
    nu::ObjectTextWriter<Unit>(out, settings).write(object, name);
}

} // namespace

// Writing

void NuSerializeObject2Stream(TNuConstObjectRef object, host::TStream& stream,
                              std::u16string_view name, TNuNamespaceOptions options) {
    if (!object) {
        return;
    }
    const Instance instance = object.Instance();
    name = nu::rootNameOf(*instance.info, name);
    if (const auto serializer = serializerFor(instance, options)) {
        serializer->Serialize(stream, name);
    } else {
        nu::TextBuffer<char16_t> out;
        writeObject(out, instance, name, options);
        TNuSerializer::WriteToStream(stream, out.view());
    }
}

NuXmlString NuSerializeObject2Xml(TNuConstObjectRef object, std::u16string_view name,
                                  TNuNamespaceOptions options) {
    if (!object) {
        return {};
    }
    const Instance instance = object.Instance();
    name = nu::rootNameOf(*instance.info, name);
    if (const auto serializer = serializerFor(instance, options)) {
        return serializer->Serialize(name);
    }
    nu::TextBuffer<char16_t> out;
    writeObject(out, instance, name, options);
    return NuXmlString(out.view());
}

namespace {

TNuDOMElement* appendObject(TNuConstObjectRef object, TNuDOMNode& parent, std::u16string_view name,
                            TNuNamespaceOptions options) {
    const NuXmlString text = NuSerializeObject2Xml(object, name, options);
    if (text.empty()) {
        return nullptr;
    }
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(text);
    TNuDOMElement* const element = document->get_documentElement();
    parent.appendChild(*element);
    return element;
}

} // namespace

TNuDOMElement* NuSerializeObject2DOM(TNuConstObjectRef object, TNuDOMElement& parent,
                                     std::u16string_view name, TNuNamespaceOptions options) {
    return appendObject(object, parent, name, options);
}

TNuDOMElement* NuSerializeObject2DOM(TNuConstObjectRef object, TNuDOMDocument& document,
                                     std::u16string_view name, TNuNamespaceOptions options) {
    return appendObject(object, document, name, options);
}

void NuSaveObject(const std::filesystem::path& path, TNuConstObjectRef object,
                  std::u16string_view name, TNuNamespaceOptions options) {
    if (!object) {
        return;
    }
    const Instance instance = object.Instance();
    name = nu::rootNameOf(*instance.info, name);
    host::FileReplacement file(path);
    nu::TextBuffer<char> out(&file.stream());
    out.append(nu::xmlDeclaration<char>);
    writeObject(out, instance, name, options);
    out.flush();
    file.commit();
}

// Reading

namespace {

/// Reads the first element into an object, and looks at nothing behind it.
class FirstElement : public nu::ObjectEvents {
public:
    FirstElement(Instance object, TNuDeserializeOptions options, bool hasPlaces)
        : ObjectEvents(options, hasPlaces), object_(object) {}

    void readText(std::u16string_view xml) {
        TNuStringStream stream(xml);
        readStream(stream);
    }
    void readStream(host::TStream& stream) {
        read([&](TNuSAXXMLReader& reader) {
            // The large-stream parser keeps no text longer than its buffer, which a member can be.
            reader.SetParserChoice(TNuSaxParserChoice::SmallStream);
            reader.Parse(stream);
        });
        if (!hasRead_) {
            throw host::Exception(nu::messages::noElement);
        }
    }

protected:
    Target open(const nu::StartedElement& /*element*/, std::size_t /*depth*/) override {
        return {object_, nullptr, false};
    }

private:
    void close(Instance /*object*/) override {
        hasRead_ = true;
        throw ENuSaxHandledAbort(u"");
    }

    Instance object_;
    bool hasRead_ = false;
};

/// The same with a component that is made when its class is known.
class FirstComponent final : public FirstElement {
public:
    FirstComponent(host::TComponent* owner, host::TWindowedControl* parent,
                   const host::TClassInfo& ancestor, TNuDeserializeOptions options)
        : FirstElement({}, options, false), owner_(owner), parent_(parent), ancestor_(ancestor) {}

    std::unique_ptr<host::TComponent> made;

private:
    Target open(const nu::StartedElement& element, std::size_t /*depth*/) override {
        if (element.className.empty()) {
            throw host::Exception(nu::messages::noClass);
        }
        made.reset(static_cast<host::TComponent*>(
            static_cast<host::TObject*>(nu::classBelow(ancestor_, element.className).create())));
        if (owner_ != nullptr) {
            owner_->InsertComponent(*made);
        }
        if (parent_ != nullptr) {
            static_cast<host::TWindowedControl&>(*made).SetParent(parent_);
        }
        return {host::instance(*made), nullptr, true};
    }

    host::TComponent* owner_;
    host::TWindowedControl* parent_;
    const host::TClassInfo& ancestor_;
};

host::TComponent* readComponent(host::TComponent* owner, host::TWindowedControl* parent,
                                const host::TClassInfo& ancestor, std::u16string_view xml,
                                TNuDeserializeOptions options) {
    FirstComponent events(owner, parent, ancestor, options);
    events.readText(xml);
    return events.made.release();
}

} // namespace

void NuDeSerializeObject(TNuObjectRef object, std::u16string_view xml,
                         TNuDeserializeOptions options) {
    if (object) {
        FirstElement(object.Instance(), options, false).readText(xml);
    }
}

void NuDeSerializeObject(TNuObjectRef object, host::TStream& stream,
                         TNuDeserializeOptions options) {
    if (object) {
        FirstElement(object.Instance(), options, true).readStream(stream);
    }
}

void NuDeSerializeObject(TNuObjectRef object, TNuDOMElement& element,
                         TNuDeserializeOptions options) {
    if (object) {
        nu::ObjectBuilder builder(options);
        nu::readElement(builder, element, object.Instance(), nullptr);
    }
}

void NuLoadObject(const std::filesystem::path& path, TNuObjectRef object,
                  TNuDeserializeOptions options) {
    host::TFileStream stream(path, host::fmOpenRead);
    try {
        NuDeSerializeObject(object, stream, options);
    } catch (ENuSaxFatalError& fault) {
        fault.SetFile(NuFromUtf8(path.string()));
        throw;
    }
}

host::TComponent* NuDeSerializeComponent(host::TComponent* owner, std::u16string_view xml,
                                         TNuDeserializeOptions options) {
    return readComponent(owner, nullptr, host::classOf<host::TComponent>, xml, options);
}

host::TWindowedControl* NuDeSerializeControl(host::TComponent* owner,
                                             host::TWindowedControl* parent,
                                             std::u16string_view xml,
                                             TNuDeserializeOptions options) {
    return static_cast<host::TWindowedControl*>(
        readComponent(owner, parent, host::classOf<host::TWindowedControl>, xml, options));
}
