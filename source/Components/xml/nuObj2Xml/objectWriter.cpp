#include <optional>
#include <utility>

#include "host/runtime/exception.h"
#include "nuObj2Xml/elementName.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectStream.h"
#include "nuObj2Xml/objectTextWriter.h"

namespace nu {

namespace {

/// The options of the objects: the namespaces are declared further out.
TNuNamespaceOptions withoutDeclarations(TNuNamespaceOptions options) noexcept {
    const TNuNamespaceOptions prefixes{noUseTNSPrefix, noUseXSIPrefix, noUseXSDPrefix};
    return TNuNamespaceOptions::fromBits(options.bits() & prefixes.bits());
}

} // namespace

class ObjectWriter::Body {
public:
    Body() = default;
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;
    virtual ~Body() = default;

    virtual void write(host::Instance object, std::u16string_view name) = 0;
    virtual void close() = 0;

    /// Whether what was begun has not come to its end.
    bool isBroken = false;
    bool isClosed = false;
};

template <class Unit> class ObjectWriter::BodyOf final : public Body {
public:
    BodyOf(host::TStream& stream, std::u16string_view rootName, TNuNamespaceOptions options)
        : out_(&stream), settings_(host::classOf<host::TObject>), rootName_(rootName) {
        settings_.SetNamespaceOptions(options);
        const ElementForm form(settings_.TargetNamespaceURI(), settings_.TargetNamespacePrefix(),
                               {}, options);
        NuXmlString start;
        form.appendUntypedRootStart(start, rootName_);
        form.appendEnd(end_, rootName_);
        out_.append(xmlDeclaration<Unit>);
        out_.appendWide(start);
        settings_.SetNamespaceOptions(withoutDeclarations(options));
        writer_.emplace(out_, settings_);
    }

    void write(host::Instance object, std::u16string_view name) override {
        writer_->write(object, name);
    }
    void close() override {
        out_.appendWide(end_);
        out_.flush();
    }

private:
    TextBuffer<Unit> out_;
    TNuSerializer settings_;
    NuXmlString rootName_;
    NuXmlString end_;
    std::optional<ObjectTextWriter<Unit>> writer_; ///< as soon as the settings are complete
};

ObjectWriter::ObjectWriter(host::TStream& stream, std::u16string_view rootName,
                           TNuNamespaceOptions options, TextEncoding encoding) {
    checkElementName(rootName);
    if (encoding == TextEncoding::Utf8) {
        body_ = std::make_unique<BodyOf<char>>(stream, rootName, options);
    } else {
        body_ = std::make_unique<BodyOf<char16_t>>(stream, rootName, options);
    }
}

ObjectWriter::~ObjectWriter() = default;

void ObjectWriter::Write(TNuConstObjectRef object, std::u16string_view name) {
    if (body_->isBroken || body_->isClosed) {
        throw host::Exception(messages::documentIsClosed);
    }
    if (object) {
        const host::Instance instance = object.Instance();
        name = rootNameOf(*instance.info, name);
        body_->isBroken = true;
        body_->write(instance, name);
        body_->isBroken = false;
    }
}

void ObjectWriter::Close() {
    if (body_->isBroken) {
        throw host::Exception(messages::documentIsBroken);
    }
    if (!body_->isClosed) {
        body_->isClosed = true;
        body_->close();
    }
}

} // namespace nu
