#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/runtime/classInfo.h"
#include "nuObj2Xml/elementForm.h"
#include "nuObj2Xml/serializer.h"

namespace nu {

/// The tags of a property, as far as they do not depend on its value.
template <class Unit> struct PropertyTags {
    std::basic_string<Unit> start;
    std::basic_string<Unit> end;
};

/// What is known of a class where objects are written.
template <class Unit> struct ClassTags {
    std::vector<PropertyTags<Unit>> properties;
    /// What writes objects of the class, as soon as one has come; null for a class that is
    /// described from outside.
    const TNuSerializerClass* serializerClass = nullptr;
};

/// The tags of objects in one form, put together when a class is met first and kept, so that many
/// objects of few classes cost little beyond their text.
template <class Unit> class ObjectTags {
public:
    using Text = std::basic_string<Unit>;

    /// The form has to stay.
    explicit ObjectTags(const ElementForm& form) noexcept : form_(form) {}

    ClassTags<Unit>& of(const host::TClassInfo& info) {
        std::unique_ptr<ClassTags<Unit>>& tags = classes_[&info];
        if (!tags) {
            tags = make(info);
        }
        return *tags;
    }
    /// The start tag of an object; good until the next one is asked for.
    const Text& startOf(std::u16string_view name, const host::TClassInfo& info);
    /// The tags of a value of that type, whatever it is in.
    static PropertyTags<Unit> ofValue(const ElementForm& form, std::u16string_view name,
                                      const host::ValueType& type);

private:
    std::unique_ptr<ClassTags<Unit>> make(const host::TClassInfo& info) const;

    const ElementForm& form_;
    std::unordered_map<const host::TClassInfo*, std::unique_ptr<ClassTags<Unit>>> classes_;
    /// The start tag of the last object: that of the next is often the same.
    struct {
        const host::TClassInfo* info = nullptr;
        NuXmlString name;
        Text tag;
    } last_;
    NuXmlString scratch_;
};

extern template class ObjectTags<char>;
extern template class ObjectTags<char16_t>;

} // namespace nu
