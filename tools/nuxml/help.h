#pragma once

#include <string_view>

namespace tool::help {

extern const std::string_view general;
extern const std::string_view events;
extern const std::string_view format;
extern const std::string_view select;
extern const std::string_view edit;
extern const std::string_view check;
extern const std::string_view tame;
extern const std::string_view escape;
extern const std::string_view unescape;

} // namespace tool::help
