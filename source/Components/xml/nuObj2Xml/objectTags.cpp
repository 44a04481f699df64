#include "nuObj2Xml/objectTags.h"

#include <type_traits>

#include "common/utf8.h"
#include "nuObj2Xml/valueText.h"

namespace nu {

namespace {

/// The type that decides about the tags of a property.
const host::ValueType& heldType(const host::ValueType& type) noexcept {
    return type.kind == host::ValueKind::Optional ? *type.element : type;
}

template <class Unit> std::basic_string<Unit> encoded(std::u16string_view text) {
    if constexpr (std::is_same_v<Unit, char>) {
        return NuToUtf8(text);
    } else {
        return std::basic_string<Unit>(text);
    }
}

} // namespace

template <class Unit>
PropertyTags<Unit> ObjectTags<Unit>::ofValue(const ElementForm& form, std::u16string_view name,
                                             const host::ValueType& type) {
    PropertyTags<Unit> tags;
    NuXmlString text;
    form.appendPropertyStart(text, name, schemaTypeOf(type));
    tags.start = encoded<Unit>(text);
    text.clear();
    form.appendEnd(text, name);
    tags.end = encoded<Unit>(text);
    return tags;
}

template <class Unit>
std::unique_ptr<ClassTags<Unit>> ObjectTags<Unit>::make(const host::TClassInfo& info) const {
    auto tags = std::make_unique<ClassTags<Unit>>();
    for (const host::TPropInfo& property : info.properties) {
        tags->properties.push_back(ofValue(form_, property.name, heldType(*property.type)));
    }
    return tags;
}

template <class Unit>
const typename ObjectTags<Unit>::Text& ObjectTags<Unit>::startOf(std::u16string_view name,
                                                                 const host::TClassInfo& info) {
    if (last_.info != &info || last_.name != name) {
        scratch_.clear();
        form_.appendRootStart(scratch_, name, info.name);
        last_.tag = encoded<Unit>(scratch_);
        last_.name = name;
        last_.info = &info;
    }
    return last_.tag;
}

template class ObjectTags<char>;
template class ObjectTags<char16_t>;

} // namespace nu
