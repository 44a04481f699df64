#pragma once

#include <concepts>
#include <string_view>
#include <version>

#include "nuXmlDOM.h"

/// \file
/// Nodes for std::format: `std::format("{}", element)` gives what Xml gives. For compilers whose
/// standard library has it (the header is there, but empty, with g++ 12 and clang 14), and apart
/// from nuXmlDOM.h, because the header of std::format costs more than all of that one.

#ifdef __cpp_lib_format

#include <format>

template <std::derived_from<TNuDOMNode> Node>
struct std::formatter<Node, char> : std::formatter<std::string_view, char> {
    template <class Context> auto format(const Node& node, Context& context) const {
        return std::formatter<std::string_view, char>::format(node.Xml(), context);
    }
};

#endif
