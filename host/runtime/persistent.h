#pragma once

#include "host/runtime/published.h"

namespace host {

/// The base of objects that are written and read, also where they are found through pointers.
class NUXML_API TPersistent : public Published<TPersistent, TObject> {
public:
    TPersistent() = default;
    TPersistent(const TPersistent&) = default;
    TPersistent& operator=(const TPersistent&) = default;
    ~TPersistent() override;

    static constexpr auto published = publish<TPersistent>(u"TPersistent");
};

} // namespace host
