#pragma once

#include <string_view>

#include "host/runtime/valueType.h"
#include "host/runtime/variant.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Reads a value of one of the kinds that are text (isTextKind) out of the content of its element,
/// in which references stand for themselves no more. `text` may be taken instead of copied.
///
/// `schemaType` is the element's type attribute without a prefix; only a variant needs it. An empty
/// text is an empty string, set, array or variant string, and no number. Throws
/// host::EConvertError.
void readValue(const host::ValueType& type, NuXmlString& text, std::u16string_view schemaType,
               void* value);

} // namespace nu
