#pragma once

#include <string>
#include <string_view>

#include "console.h"
#include "host/runtime/exception.h"

namespace tool {

/// A path as it stands on the command line. Throws UsageError when it is not UTF-8.
std::u16string pathFromArgument(std::string_view argument);

/// Throws UsageError for what other path languages have and this one has not.
void checkPath(std::u16string_view path);

/// The first place of one of `characters` in a path that stands neither in brackets nor in quotes;
/// npos without one.
std::size_t findOutside(std::u16string_view path, char16_t character);
/// The last such place.
std::size_t findLastOutside(std::u16string_view path, char16_t character);

/// Says on standard error why the nodes at a path of the document `name` cannot be found.
void complainAboutPath(Console& console, std::string_view name, std::u16string_view path,
                       const host::Exception& error);

} // namespace tool
