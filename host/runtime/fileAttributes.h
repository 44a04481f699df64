#pragma once

#include <string_view>

namespace host {

/// What of a file could not be given to another one, and the system's reason.
struct AttributeLoss {
    std::u16string_view what; ///< a sentence without its end; empty when nothing was lost
    int error = 0;
};

/// Gives an open file the owner, the group, the extended attributes (access lists are among them)
/// and the permissions of another one, after its contents: writing takes some of them away.
AttributeLoss keepAttributes(int from, int to);

} // namespace host
