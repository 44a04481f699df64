#pragma once

#include <string_view>

#include "host/runtime/valueType.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Throws host::Exception for a name that no element can have.
void checkElementName(std::u16string_view name);

/// The name of the root element of an object of that class: the one that is given, or else that of
/// the class without the T that it begins with. Throws as checkElementName does.
std::u16string_view rootNameOf(const host::TClassInfo& info, std::u16string_view given);

} // namespace nu
