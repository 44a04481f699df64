#pragma once

#include <vector>

#include "host/runtime/classInfo.h"

namespace nu {

/// Goes through objects as their tables describe them.
class ObjectWalk {
public:
    /// The object and all that are published below it, each once, in the order in which they are
    /// written. What a getter makes anew for each call is not among them.
    static std::vector<host::Instance> objectsBelow(host::Instance root);

private:
    /// An object, or a value that may hold some.
    struct Waiting {
        host::Instance object;
        host::ValueRef value;
    };

    void addProperties(host::Instance object);
    void addItems(host::Instance object);
    void addContent(host::ValueRef value);

    std::vector<Waiting> waiting_; ///< the next one last
};

} // namespace nu
