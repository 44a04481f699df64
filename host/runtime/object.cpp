#include "host/runtime/object.h"

#include "host/runtime/persistent.h"

namespace host {

TObject::~TObject() = default;

const TClassInfo& TObject::ClassInfo() const { return classOf<TObject>; }

TPersistent::~TPersistent() = default;

} // namespace host
