#pragma once

#include "objects/side.h"

namespace bench {

extern const ObjectLibrary nuxmlSide;
/// Ours as it is used where objects come and go one by one: nothing of what is read is kept, and
/// what is written goes away.
extern const ObjectLibrary nuxmlOneByOneSide;
extern const ObjectLibrary cerealSide;
extern const ObjectLibrary boostSide;
extern const ObjectLibrary pugixmlSide;

} // namespace bench
