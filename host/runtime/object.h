#pragma once

#include "host/runtime/export.h"

namespace host {

struct TClassInfo;

/// The base of classes that know what they are at run time. Derive from host::TPersistent, through
/// host::Published, for objects that are written and read.
class NUXML_API TObject {
public:
    TObject() = default;
    TObject(const TObject&) = default;
    TObject& operator=(const TObject&) = default;
    virtual ~TObject();

    /// The class of the object itself.
    [[nodiscard]] virtual const TClassInfo& ClassInfo() const;
};

} // namespace host
