#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

#include "host/runtime/published.h"
#include "host/runtime/stream.h"
#include "host/runtime/variant.h"
#include "nuObj2Xml/deserializeOptions.h"
#include "nuObj2Xml/namespaceOptions.h"
#include "nuObj2Xml/serializerClass.h"
#include "nuXmlParser/chars.h"

/// \file
/// The writing of objects as XML, and the way back.

namespace nu {
class ObjectBuilder;
class ObjectChain;
class ObjectWalk;
template <class Unit> class ObjectTextWriter;
namespace detail {
template <class Class> struct SerializerConstant;
}
} // namespace nu

/// What stands in an object's element behind its properties: see TNuSerializer::GetItem. Either a
/// value or an object; nothing of it is owned.
struct TNuSerializerItem {
    NuXmlString name;      ///< the name of its element
    host::ValueRef value;  ///< a value, or nothing
    host::Instance object; ///< an object, or nothing
    /// The name of the element that stands around it and the items beside it; empty for an item
    /// right beside the properties.
    std::u16string_view itemsElement;

    explicit operator bool() const noexcept { return value || object; }
};

/// What an element that is read tells of itself.
struct TNuElementFound {
    std::u16string_view name;      ///< Without a prefix.
    std::u16string_view className; ///< Of the type attribute, without a prefix; empty without one.
    /// The one of ItemsElements that it stands in; empty right beside the properties.
    std::u16string_view itemsElement;
};

/// Writes an object as an element, its published properties as child elements, and reads them back.
///
/// ```
/// <Person type="TPerson"><Name type="string">Ann</Name></Person>
/// ```
/// Nothing stands between the pieces. A property that has its declared default, a pointer that
/// leads nowhere and a missing value are left out. The element of a nested object carries the class
/// of that object; it is written by the serializer that is registered for it, which gets the three
/// texts of this one, and not its options. Lists hold an element "item" for each element, maps one
/// with "key" and "value".
///
/// Derive from it to change the text, or what stands in it, for a class:
/// NuRegisterSerializationClass. A serializer does not own its object.
class NUXML_API TNuSerializer {
public:
    /// The object to write; null for a serializer that was made from a class.
    [[nodiscard]] virtual host::TObject* GetObject() const;

    /// A serializer for a class alone: its pieces can be asked for, and it writes nothing.
    explicit TNuSerializer(const host::TClassInfo& info);
    /// A serializer for an object, whose class it enters into the class registry if the object is a
    /// host::TPersistent.
    explicit TNuSerializer(host::TObject& instance);
    TNuSerializer(const TNuSerializer&) = delete;
    TNuSerializer& operator=(const TNuSerializer&) = delete;
    virtual ~TNuSerializer();

    /// The namespace that the root element declares; "" for none.
    [[nodiscard]] const NuXmlString& TargetNamespaceURI() const noexcept { return uri_; }
    /// See TargetNamespaceURI. Set before writing; nested objects get it, too.
    void SetTargetNamespaceURI(std::u16string_view uri) { uri_ = uri; }
    /// The prefix of that namespace; with "" nothing declares it but noUseDefaultNS.
    [[nodiscard]] const NuXmlString& TargetNamespacePrefix() const noexcept { return prefix_; }
    /// See TargetNamespacePrefix.
    void SetTargetNamespacePrefix(std::u16string_view prefix) { prefix_ = prefix; }
    /// What the root element says in schemaLocation: where a schema of that namespace lies; ""
    /// leaves it out.
    [[nodiscard]] const NuXmlString& SchemaLocation() const noexcept { return schemaLocation_; }
    /// See SchemaLocation.
    void SetSchemaLocation(std::u16string_view location) { schemaLocation_ = location; }
    /// Which declarations the root element carries.
    [[nodiscard]] TNuNamespaceOptions NamespaceOptions() const noexcept { return options_; }
    /// See NamespaceOptions. Nested objects do not get them.
    void SetNamespaceOptions(TNuNamespaceOptions options) noexcept { options_ = options; }

    /// \name Pieces of text
    /// Names are written as they are given. URI, prefix and location are escaped.
    /// @{

    /// The attribute of the schema location; empty without one. Deliberate: a location that holds a
    /// blank gets the URI in front, although it is a pair already.
    [[nodiscard]] NuXmlString GetSchemaLocation() const;
    /// The start tag: "<Person type="TPerson">", with what the options ask for.
    [[nodiscard]] NuXmlString GetStartRootElement(std::u16string_view name) const;
    /// The end tag.
    [[nodiscard]] NuXmlString GetCloseRootElement(std::u16string_view name) const;
    /// A property's element. Throws host::Exception for a value without a schema type (empty,
    /// null).
    [[nodiscard]] NuXmlString GetPropElement(std::u16string_view name,
                                             const host::Variant& value) const;
    /// @}

    /// Writes the UTF-16 units of a text, low byte first and without a mark. Gives the number of
    /// characters. Throws host::EWriteError.
    static std::size_t WriteToStream(host::TStream& stream, std::u16string_view text);

    /// Writes the whole element. Nothing is written when something fails before.
    ///
    /// Throws host::Exception for an object that holds itself, for objects nested deeper than
    /// 10,000 levels (with serializers that override this, 500), and for one whose class no
    /// serializer is registered for; and whatever getters throw.
    virtual void Serialize(host::TStream& stream, std::u16string_view name);
    /// The same as a text.
    [[nodiscard]] NuXmlString Serialize(std::u16string_view name);

    /// Gets the text of the whole element before it is written and may change it.
    virtual void DoAfterSerialize(NuXmlString& text);

    /// Reads the object from the first element of a text, whatever its name. What the text does not
    /// mention stays as it is, unless options say otherwise.
    ///
    /// Throws host::Exception when the element's type is neither the object's class nor an ancestor
    /// nor a descendant; host::EConvertError, with the place, for a value that cannot be read;
    /// ENuSaxFatalError for a text that is no XML; and whatever setters throw. What was read before
    /// stays.
    void DeSerialize(std::u16string_view text, TNuDeserializeOptions options = {});

    /// Gets the element that the object was read from, in a document of its own that holds nothing
    /// else, after everything has been read.
    virtual void DoAfterDeserialize(TNuDOMElement& element);

protected:
    /// \name What stands behind the properties
    /// For classes whose objects hold more than properties: the strings of a list, the items of a
    /// collection, the components of a component.
    /// @{

    /// The number of items; asked for once each time the object is written.
    [[nodiscard]] virtual std::size_t ItemCount() const;
    /// An item with the name of its element.
    [[nodiscard]] virtual TNuSerializerItem GetItem(std::size_t index) const;
    /// The names of the elements that may stand around items.
    [[nodiscard]] virtual std::span<const std::u16string_view> ItemsElements() const;
    /// Reading begins: the place to remove items that will come again.
    virtual void BeginReading();
    /// Asked for every element that is no property: where it is to be read into. Nothing for an
    /// element that is not known. An object is read in place.
    virtual TNuSerializerItem ItemToRead(const TNuElementFound& element);
    /// Everything of the object has been read.
    virtual void EndReading();
    /// @}

    /// The class whose name is written: that of the object, or the one the serializer was made
    /// from.
    [[nodiscard]] const host::TClassInfo& ObjectClass() const;

private:
    friend class nu::ObjectBuilder;
    friend class nu::ObjectWalk;
    template <class Unit> friend class nu::ObjectTextWriter;

    template <class Serializer> friend struct nu::detail::SerializerConstant;

    NUXML_LOCAL NuXmlString produce(std::u16string_view name);
    [[nodiscard]] NUXML_LOCAL bool wantsElement() const noexcept;

    host::TObject* object_ = nullptr;
    NuXmlString uri_{cNuDefaultTargetNamespace};
    NuXmlString prefix_{u"tns"};
    NuXmlString schemaLocation_;
    TNuNamespaceOptions options_;
    const host::TClassInfo* class_;
    /// What is being written around this object; null for the outermost.
    const nu::ObjectChain* around_ = nullptr;
    /// Whether DoAfterDeserialize may be one of its own: unless its class reference says it is not.
    bool mayWantElement_ = true;
};

namespace nu {

/// \cond internal
namespace detail {

/// Takes members of TNuSerializer, but none that a class below has put in their place.
struct InheritedMembers {
    static void getObject(host::TObject* (TNuSerializer::*)() const);
    static void serialize(void (TNuSerializer::*)(host::TStream&, std::u16string_view));
    static void afterSerialize(void (TNuSerializer::*)(NuXmlString&));
    static void afterDeserialize(void (TNuSerializer::*)(TNuDOMElement&));
};

template <class Class>
concept KeepsWriting = requires {
    InheritedMembers::getObject(&Class::GetObject);
    InheritedMembers::serialize(&Class::Serialize);
    InheritedMembers::afterSerialize(&Class::DoAfterSerialize);
};
template <class Class>
concept KeepsElementHook = requires {
    InheritedMembers::afterDeserialize(&Class::DoAfterDeserialize);
};

template <class Class> struct SerializerConstant {
    static std::unique_ptr<TNuSerializer> fromInstance(host::TObject& instance) {
        return known(std::make_unique<Class>(instance));
    }
    static std::unique_ptr<TNuSerializer> fromClass(const host::TClassInfo& info) {
        return known(std::make_unique<Class>(info));
    }
    static std::unique_ptr<TNuSerializer>
    known(std::unique_ptr<TNuSerializer> serializer) noexcept {
        serializer->mayWantElement_ = !KeepsElementHook<Class>;
        return serializer;
    }
    static constexpr TNuSerializerClass info{fromInstance, fromClass, !KeepsWriting<Class>,
                                             std::is_same_v<Class, TNuSerializer>,
                                             !KeepsElementHook<Class>};
};

} // namespace detail
/// \endcond

/// The class reference of a serializer, for NuRegisterSerializationClass. The class needs the two
/// constructors of TNuSerializer.
template <class Serializer>
inline constexpr const TNuSerializerClass& serializerOf =
    detail::SerializerConstant<Serializer>::info;

} // namespace nu
