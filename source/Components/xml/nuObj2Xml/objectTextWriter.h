#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/classInfo.h"
#include "nuObj2Xml/elementForm.h"
#include "nuObj2Xml/objectChain.h"
#include "nuObj2Xml/objectTags.h"
#include "nuObj2Xml/serializer.h"
#include "nuObj2Xml/textBuffer.h"
#include "nuObj2Xml/valueText.h"

namespace nu {

/// Writes objects as elements into a buffer. Objects may be nested as deeply as ObjectChain lets
/// them: levels take memory and no stack.
template <class Unit> class ObjectTextWriter {
public:
    /// Objects are written with the texts and the options of `settings`, which has to stay, and
    /// those inside of them without the options.
    ObjectTextWriter(TextBuffer<Unit>& out, const TNuSerializer& settings);
    ObjectTextWriter(const ObjectTextWriter&) = delete;
    ObjectTextWriter& operator=(const ObjectTextWriter&) = delete;
    ~ObjectTextWriter();

    /// Writes the object of the settings' serializer, with what that writes behind the properties.
    void writeOwn(TNuSerializer& serializer, std::u16string_view name);
    /// Writes an object of any described class by the serializer that is registered for it.
    void write(host::Instance object, std::u16string_view name);

private:
    struct Frame;

    ObjectTags<Unit>& tagsIn(const ElementForm& form) noexcept {
        return &form == &rootForm_ ? rootTags_ : nestedTags_;
    }

    void run();
    void step(Frame& frame);
    void stepObject(Frame& frame);
    void stepItems(Frame& frame);
    void changeItemsElement(Frame& frame, std::u16string_view name);
    void stepList(Frame& frame);
    void stepMap(Frame& frame);

    void writeProperty(Frame& frame, const host::TPropInfo& property,
                       const PropertyTags<Unit>& tags);
    void writeHeld(Frame& frame, const host::TPropInfo& property, const PropertyTags<Unit>& tags,
                   host::ValueRef value, host::OwnedValue held);
    void writeText(const PropertyTags<Unit>& tags, const host::ValueType& type, const void* value);
    void writeElement(Frame& frame, std::size_t tagPlace, std::u16string_view name,
                      std::size_t index, host::ValueRef value);
    void writeTagged(Frame& frame, std::size_t tagPlace, std::u16string_view name,
                     host::ValueRef value);
    void writeNil(const ElementForm& form, std::u16string_view name);
    void writeVariant(const ElementForm& form, std::u16string_view name,
                      const host::Variant& value);

    Frame& push(std::u16string_view name, const ElementForm& inside);
    void pop() noexcept;
    void beginObject(const ElementForm& form, std::u16string_view name, std::size_t index,
                     host::Instance object, TNuSerializer* own);
    void writeCustom(const TNuSerializerClass& serializerClass, std::u16string_view name,
                     host::TObject& object);
    void beginContainer(const ElementForm& form, std::u16string_view name, std::size_t index,
                        host::ValueRef container, host::OwnedValue held);

    void appendUntypedStart(const ElementForm& form, std::u16string_view name);
    void appendEnd(const ElementForm& form, std::u16string_view name);
    /// Appends what `append` puts into a string.
    template <class Append> void appendPiece(Append append) {
        scratch_.clear();
        append(scratch_);
        out_.appendWide(scratch_);
    }

    TextBuffer<Unit>& out_;
    ValueWriter<Unit> values_;
    const TNuSerializer& settings_;
    ElementForm rootForm_;
    ElementForm nestedForm_;
    ObjectTags<Unit> rootTags_;
    ObjectTags<Unit> nestedTags_;
    ObjectChain chain_;
    std::vector<std::unique_ptr<Frame>> frames_;
    std::size_t depth_ = 0;
    NuXmlString scratch_;
    // What getters give
    alignas(std::uint64_t) std::byte scalarValue_[sizeof(std::uint64_t)];
    std::u16string wideValue_;
    std::string narrowValue_;
};

extern template class ObjectTextWriter<char>;
extern template class ObjectTextWriter<char16_t>;

} // namespace nu
