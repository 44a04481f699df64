#pragma once

#include <string_view>

#include "nuObj2Xml/optionSet.h"

/// \file
/// How the elements of objects are named and typed.

/// What a serializer writes beyond the names alone.
///
/// Deliberate: "no" is the prefix of the enumeration (namespace option) and no negation; each value
/// switches something on. Declaring a prefix and using it are separate, so that a fragment can
/// stand where the declaration is made further out.
enum TNuNamespaceOption : std::uint8_t {
    /// The target namespace is declared as the default one instead of by the prefix.
    noUseDefaultNS = 1,
    /// The root element, the class in its type attribute and the elements of properties get the
    /// prefix of the target namespace.
    noUseTNSPrefix = 2,
    /// The target namespace is declared, unless its URI is empty.
    noAddTNS = 4,
    /// The attributes of types and of the schema location get the prefix "xsi:".
    noUseXSIPrefix = 8,
    /// The prefix "xsi" is declared.
    noAddXSI = 16,
    /// The types of properties get the prefix "xsd:".
    noUseXSDPrefix = 32,
    /// The prefix "xsd" is declared.
    noAddXSD = 64,
};

/// A set of these options.
using TNuNamespaceOptions = nu::OptionSet<TNuNamespaceOption>;

/// The set of two options.
constexpr TNuNamespaceOptions operator|(TNuNamespaceOption left,
                                        TNuNamespaceOption right) noexcept {
    return TNuNamespaceOptions(left) | TNuNamespaceOptions(right);
}

/// The URI of the target namespace where nothing else is said.
inline constexpr std::u16string_view cNuDefaultTargetNamespace =
    u"http://schemas.nuxml.invalid/objects";
