#pragma once

#include <string_view>

#include "nuObj2Xml/namespaceOptions.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// What stands in front of a document, with the mark of UTF-16 where it is that.
template <class Unit> inline constexpr std::basic_string_view<Unit> xmlDeclaration;
template <>
inline constexpr std::string_view xmlDeclaration<char> =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
template <>
inline constexpr std::u16string_view xmlDeclaration<char16_t> =
    u"\uFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?>";

/// How the elements of one serializer look: what its options and its three texts make of names and
/// attributes.
class ElementForm {
public:
    ElementForm(std::u16string_view uri, std::u16string_view prefix,
                std::u16string_view schemaLocation, TNuNamespaceOptions options);

    /// `<Person xmlns:xsi="..." type="TPerson">`
    void appendRootStart(NuXmlString& text, std::u16string_view name,
                         std::u16string_view className) const;
    /// The same without a type, for an element that is no object.
    void appendUntypedRootStart(NuXmlString& text, std::u16string_view name) const;
    /// `<Name type="string">`
    void appendPropertyStart(NuXmlString& text, std::u16string_view name,
                             std::u16string_view schemaType) const;
    /// `<Names>`
    void appendUntypedStart(NuXmlString& text, std::u16string_view name) const;
    /// `<item nil="true">`
    void appendNilStart(NuXmlString& text, std::u16string_view name) const;
    /// `</Name>`
    void appendEnd(NuXmlString& text, std::u16string_view name) const;

    /// The attribute of the schema location; empty without one.
    [[nodiscard]] const NuXmlString& schemaLocation() const noexcept { return schemaLocation_; }

private:
    void appendName(NuXmlString& text, std::u16string_view name) const;
    void appendType(NuXmlString& text, std::u16string_view prefix, std::u16string_view type) const;

    NuXmlString prefix_;                 ///< with its colon; empty if it is not used
    std::u16string_view instancePrefix_; ///< "xsi:" or nothing
    std::u16string_view schemaPrefix_;   ///< "xsd:" or nothing
    NuXmlString schemaLocation_;
    NuXmlString rootAttributes_; ///< with a blank behind each
};

} // namespace nu
