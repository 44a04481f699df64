#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "nuXmlParser/limits.h"

/// \file
/// What work with a document may grow to.

/// How far a document may be driven by what it holds, or by a path; nothing is limited unless
/// somebody says so.
struct TNuDOMLimits {
    /// For what is loaded into it, set_innerxml included. More throws ENuSaxFatalError.
    TNuSaxLimits Reading = {};
    /// Nodes that one path gives, of whatever kind, each as often as it gives it; the same for each
    /// path in a filter. More throws ENuDomException.
    std::size_t SelectedNodes = std::numeric_limits<std::size_t>::max();
    /// Bytes that writing a node makes, before a code page of the system turns them into others;
    /// texts such as get_xml count two for a character. More throws ENuDomException; a stream may
    /// have got what comes before.
    std::uint64_t OutputBytes = std::numeric_limits<std::uint64_t>::max();
    /// Nodes that one selection looks at, each as often as it does, whatever it gives; those that
    /// the paths in its filters look at among them. This bounds its time. It is looked up behind
    /// every step from a node, so as many nodes as there are below that may come on top. More
    /// throws ENuDomException.
    std::uint64_t VisitedNodes = std::numeric_limits<std::uint64_t>::max();
};
