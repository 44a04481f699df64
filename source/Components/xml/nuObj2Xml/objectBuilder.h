#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/runtime/classInfo.h"
#include "host/sax/Sax.h"
#include "nuObj2Xml/pendingReferences.h"
#include "nuObj2Xml/serializer.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// What a start tag tells. Valid during the call that passes it.
struct StartedElement {
    std::u16string_view name;      ///< Without a prefix.
    std::u16string_view className; ///< Of the type attribute, without a prefix; empty without one.
    bool isNil = false;
};

/// Reads an object out of the events of a reader, one after the other: what stands in its element
/// goes into its properties as it comes. Nothing is kept but the text of the value that is being
/// read. Levels take memory and no stack.
///
/// Whatever leaves one of the operations leaves the object with what was read until then; the
/// builder is then good for nothing but abandon.
class ObjectBuilder {
public:
    explicit ObjectBuilder(TNuDeserializeOptions options) noexcept;
    ObjectBuilder(const ObjectBuilder&) = delete;
    ObjectBuilder& operator=(const ObjectBuilder&) = delete;
    ~ObjectBuilder();

    /// Thrown where an error would tell a place that is not known, with nothing done: the same
    /// operation with the same arguments throws the error itself as soon as places are known.
    struct PlaceUnknown {};

    /// Where errors are found: line and column of this go into messages. May be null.
    void setLocator(host::ILocator* locator) noexcept { locator_ = locator; }
    /// Whether the locator knows at present; it does at first.
    void knowsPlaces(bool isKnown) noexcept { knowsPlaces_ = isKnown; }

    /// The element of an object has begun. `serializer` reads it; null for the one that is
    /// registered. `isNew` tells that nobody else has seen the object: what is missing gets its
    /// default. Throws host::Exception when the element's class and the object's are not related.
    void begin(host::Instance object, TNuSerializer* serializer, bool isNew,
               const StartedElement& element);
    /// An element inside of it.
    void startElement(const StartedElement& element);
    /// A run of text. In a CDATA section nothing is a reference.
    void characters(std::u16string_view text, bool isCData);
    /// All the text so far of the value that began just now, without references. What `text` holds
    /// then is of no use.
    void takeText(NuXmlString& text) noexcept { text_.swap(text); }
    /// The end of the element that began last. With that of the object references are resolved.
    /// `tree` is the element with its content, for an object whose serializer wants it.
    void endElement(TNuDOMElement* tree);

    /// The object whose element began last; none if that is the element of something else.
    [[nodiscard]] host::Instance innermostObject() const noexcept;
    /// Whether it matters which properties of that object come.
    [[nodiscard]] bool notesProperties() const noexcept;
    /// A property of that object was read by somebody else, as one that its text is enough for.
    void noteRead(const host::TPropInfo& property) noexcept;
    /// Whether text in the element that began last is more than passed over.
    [[nodiscard]] bool wantsText() const noexcept;
    [[nodiscard]] bool isStrict() const noexcept { return options_.has(dsStrict); }

    /// Whether an object has begun and not ended.
    [[nodiscard]] bool isOpen() const noexcept { return depth_ > 0; }
    /// Whether the element that began last is that of an object whose serializer wants to see it.
    [[nodiscard]] bool wantsTree() const noexcept;
    /// The number of elements that are open, those that are passed over among them.
    [[nodiscard]] std::size_t openElements() const noexcept { return depth_ + skipped_; }
    /// Lets go of an object that is half read.
    void abandon() noexcept;
    /// "Person/Home/Number", for messages.
    [[nodiscard]] NuXmlString path() const;

private:
    struct Frame;
    /// What is known of a class, so that it is looked up once.
    struct ClassNotes {
        const TNuSerializerClass* serializerClass = nullptr;
        bool hasDefaults = false; ///< of properties
    };

    Frame& push(std::u16string_view name, std::size_t index = 0);
    Frame& pushLasting(std::u16string_view name, std::size_t index = 0);
    void pop() noexcept;
    void skip(std::u16string_view name);
    void skipUnknown(std::u16string_view message, const StartedElement& element,
                     std::u16string_view className);

    void startInObject(Frame& frame, const StartedElement& element);
    void startInItems(Frame& frame, const StartedElement& element);
    void startInList(Frame& frame, const StartedElement& element);
    void startInMap(Frame& frame, const StartedElement& element);
    void startInMapItem(Frame& frame, const StartedElement& element);
    bool startItem(Frame& frame, const StartedElement& element, std::u16string_view itemsElement);
    void startProperty(Frame& frame, const host::TPropInfo& property,
                       const StartedElement& element);
    void startReadOnly(Frame& frame, const host::TPropInfo& property,
                       const StartedElement& element);
    void startValue(Frame& frame, host::ValueRef target, const StartedElement& element);
    void startSlot(Frame& frame, host::ValueRef target, const StartedElement& element);
    void startObject(Frame& frame, host::Instance object, TNuSerializer* serializer);

    const host::TPropInfo* findProperty(Frame& frame, std::u16string_view name);
    ClassNotes& notesOf(const host::TClassInfo& info);
    void makeNil(Frame& frame, host::ValueRef target);

    void endValue(Frame& frame);
    void endHeld(Frame& frame);
    void endObject(Frame& frame, TNuDOMElement* tree);
    void completeProperties(Frame& frame);
    void readText(const Frame& frame, const host::ValueType& target, void* value);

    template <class Conversion> void withPlace(Conversion convert) const;
    [[nodiscard]] NuXmlString place() const;
    [[noreturn]] void failConversion(std::u16string_view message) const;
    [[noreturn]] void fail(const NuXmlString& message) const;

    TNuDeserializeOptions options_;
    host::ILocator* locator_ = nullptr;
    bool knowsPlaces_ = true;
    std::vector<std::unique_ptr<Frame>> frames_;
    std::size_t depth_ = 0;
    std::size_t objects_ = 0;
    std::size_t skipped_ = 0; ///< elements open inside of the innermost, which is passed over
    NuXmlString text_;        ///< of the value that is being read
    std::unordered_map<const host::TClassInfo*, ClassNotes> notes_;
    const host::TClassInfo* lastClass_ = nullptr;
    ClassNotes* lastNotes_ = nullptr; ///< those of that class
    PendingReferences references_;
};

} // namespace nu
