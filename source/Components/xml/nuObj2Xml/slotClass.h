#pragma once

#include <string_view>

#include "host/runtime/classInfo.h"

namespace nu {

/// Whether a name, in any letter case of ASCII, is that of the class or of an ancestor, or of a
/// registered descendant.
bool isRelated(std::u16string_view className, const host::TClassInfo& info);

/// The class of a new object for a slot: the declared one if the element names none, else the one
/// it names, which has to be declared for the slot or registered. Throws host::Exception when it is
/// neither, and when it does not fit: no text can make an object of any other class.
const host::TClassInfo& classForSlot(const host::SlotOperations& slot,
                                     std::u16string_view className);

/// The class of a new object where `declared` is wanted: that one if the element names none, or a
/// registered descendant. Throws host::Exception when there is none of the name, when it does not
/// derive from the other, and when no object of it can be made.
const host::TClassInfo& classBelow(const host::TClassInfo& declared, std::u16string_view className);

} // namespace nu
