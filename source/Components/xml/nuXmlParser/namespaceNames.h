#pragma once

#include <string_view>

/// \file
/// The names that Namespaces in XML itself gives a meaning, and the namespaces of XML Schema.

namespace nu {

inline constexpr std::u16string_view xmlPrefix = u"xml";
inline constexpr std::string_view xmlPrefixA = "xml";
inline constexpr std::u16string_view xmlNamespace = u"http://www.w3.org/XML/1998/namespace";
inline constexpr std::string_view xmlNamespaceA = "http://www.w3.org/XML/1998/namespace";

/// What declares the default namespace, and the prefix of what declares one for a prefix.
inline constexpr std::u16string_view declarationPrefix = u"xmlns";
inline constexpr std::string_view declarationPrefixA = "xmlns";
inline constexpr std::string_view declarationNamespaceA = "http://www.w3.org/2000/xmlns/";

/// Namespaces of XML Schema, for what tells of types and for the types themselves.
inline constexpr std::u16string_view instanceNamespace =
    u"http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::u16string_view schemaNamespace = u"http://www.w3.org/2001/XMLSchema";

/// Whether an attribute of that name declares a namespace, letter case counting.
constexpr bool isNamespaceDeclaration(std::string_view name) noexcept {
    return name.starts_with(declarationPrefixA) &&
           (name.size() == declarationPrefixA.size() || name[declarationPrefixA.size()] == ':');
}

} // namespace nu
