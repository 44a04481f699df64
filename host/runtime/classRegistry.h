#pragma once

#include <string_view>

#include "host/runtime/classInfo.h"

/// \file
/// The classes that can be found by name. The registry owns nothing: who registers a class of a
/// library that may be unloaded takes it out before. It may be used by several threads.

namespace host {

/// Enters a class; false if it was there already. Of several classes of one name the latest is
/// found.
NUXML_API bool RegisterClass(const TClassInfo& info);

/// Takes a class out; one that is not there is no fault.
NUXML_API void UnregisterClass(const TClassInfo& info) noexcept;

/// The class of that name, in any letter case of ASCII, or null.
NUXML_API const TClassInfo* FindClass(std::u16string_view name);

} // namespace host
