#pragma once

#include "objects/side.h"

namespace bench {

/// Ours, which trusts the text that it reads, and as it reads by itself.
extern const ObjectLibrary nuxmlSide;
extern const ObjectLibrary nuxmlCheckedSide;
/// Ours as it is used where objects come and go one by one: nothing of what is read is kept, and
/// what is written goes away.
extern const ObjectLibrary nuxmlOneByOneSide;
extern const ObjectLibrary cerealSide;
extern const ObjectLibrary boostSide;
extern const ObjectLibrary pugixmlSide;

} // namespace bench
