#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

#include "host/runtime/stream.h"
#include "nuObj2Xml/deserializeOptions.h"
#include "nuObj2Xml/namespaceOptions.h"
#include "nuObj2Xml/objectRef.h"

/// \file
/// Many objects in one document that never lies in memory as a whole: written one by one, and read
/// one by one.

namespace nu {

/// How the text of a document is encoded.
enum class TextEncoding : std::uint8_t { Utf8, Utf16 };

/// Writes a document with an element for each object:
/// ```
/// nu::ObjectWriter out(stream, u"people");
/// for (const TPerson& person : people) { out.Write(person); }
/// out.Close();
/// ```
/// What is written goes to the stream in blocks of 64 KiB, also the parts of a long text, so that
/// memory does not grow with the document or its objects.
class NUXML_API ObjectWriter {
public:
    /// Begins the document: the XML declaration and the tag of the root element, on which the
    /// namespaces are declared that the options name. Options that ask for prefixes hold for all
    /// objects. The stream belongs to the caller, and has to outlive the writer. Throws
    /// host::Exception for a name that no element can have.
    ObjectWriter(host::TStream& stream, std::u16string_view rootName,
                 TNuNamespaceOptions options = {}, TextEncoding encoding = TextEncoding::Utf8);
    ObjectWriter(const ObjectWriter&) = delete;
    ObjectWriter& operator=(const ObjectWriter&) = delete;
    /// Without Close the document has no end.
    ~ObjectWriter();

    /// Writes an object as its serializer does, into an element of that name or, if it is empty, of
    /// the name of the class without the T that it begins with. Null is passed over. Throws as
    /// TNuSerializer::Serialize does and host::EWriteError; the document ends in the middle of the
    /// object then, and only that exception's reason is left to be told: everything that follows
    /// throws host::Exception.
    void Write(TNuConstObjectRef object, std::u16string_view name = {});
    /// Ends the document and hands everything to the stream. Throws host::EWriteError.
    void Close();

private:
    class Body;
    template <class Unit> class BodyOf;

    std::unique_ptr<Body> body_;
};

/// \cond internal

/// What ReadObjects does with the objects of a class.
struct ObjectTaker {
    const host::TClassInfo& declared;
    /// Takes the object over, given as host::Instance has it; false to read no more.
    std::function<bool(void* object)> take;
};

NUXML_API std::size_t readObjects(host::TStream& stream, std::u16string_view path,
                                  const ObjectTaker& taker, TNuDeserializeOptions options);
/// \endcond

/// Reads a document from a stream, of any size and in any encoding that the reader knows, and hands
/// each object over as soon as its element ends:
/// ```
/// nu::ReadObjects<TPerson>(stream, u"people/person", [](std::unique_ptr<TPerson> person) { ... });
/// ```
/// Memory holds one object beside the buffers. `take` may give a bool: false ends the reading.
/// Gives the number of objects that were handed over.
///
/// \param path a name stands for every element of that name, wherever it is (inside of one that is
///        read already it belongs to that object); names with "/" between them for those elements
///        from the root down. Prefixes do not matter.
///
/// An object is of the class `Class`, or of a descendant if the type attribute names one, which has
/// to be in the class registry: else host::Exception "Class %s is not registered!" or "The given
/// object does not inherit from %s!" is thrown. What TNuSerializer::DeSerialize throws comes with
/// the place in the document; so does what is no XML, as ENuSaxFatalError. The objects before have
/// been handed over then. In a stream of 32 MiB and more that does not lie in memory a text of more
/// than 16,777,216 characters is a fault; NuDeSerializeObject reads such a single object.
template <class Class, class Take>
std::size_t ReadObjects(host::TStream& stream, std::u16string_view path, Take&& take,
                        TNuDeserializeOptions options = {}) {
    static_assert(std::is_default_constructible_v<Class>,
                  "objects that are read need a constructor without arguments");
    return readObjects(stream, path,
                       {host::classOf<Class>,
                        [&take](void* object) {
                            std::unique_ptr<Class> made(host::detail::fromRoot<Class>(object));
                            if constexpr (std::is_void_v<decltype(take(std::move(made)))>) {
                                take(std::move(made));
                                return true;
                            } else {
                                return static_cast<bool>(take(std::move(made)));
                            }
                        }},
                       options);
}

} // namespace nu
