#pragma once

#include "nuXmlSax/attributes.h"

namespace nu {

/// While it lives, attributes are told of. They lead to text that is about to go: whoever keeps
/// them has an empty list afterwards.
class AttributesEnd {
public:
    explicit AttributesEnd(TNuSAXAttributes& attributes) noexcept : attributes_(attributes) {}
    AttributesEnd(const AttributesEnd&) = delete;
    AttributesEnd& operator=(const AttributesEnd&) = delete;
    ~AttributesEnd() {
        if (attributes_.RefCount() != 1) {
            attributes_.Clear();
        }
    }

private:
    TNuSAXAttributes& attributes_;
};

} // namespace nu
