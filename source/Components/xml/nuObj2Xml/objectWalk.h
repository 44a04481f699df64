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
    void visit(host::Instance object);
    void addProperties(host::Instance object);
    void addItems(host::Instance object);
    void addValue(host::ValueRef value);

    std::vector<host::Instance> found_;
    std::vector<host::Instance> waiting_; ///< the next one last
};

} // namespace nu
