#pragma once

#include <string_view>

#include "nuXmlDOM/storage/documentMemory.h"
#include "nuXmlDOM/storage/storedText.h"
#include "nuXmlParser/escape.h"
#include "nuXmlParser/scan.h"

namespace nu {

/// Whether escaping would leave the text as it is. Almost all text is such.
inline bool isVerbatim(std::u16string_view text) noexcept {
    const NuXmlChar* const end = text.data() + text.size();
    return findOneOf<'&', '<', '>', '\'', '"', '\0'>(text.data(), end) == end;
}

/// Keeps the escaped form of `text`.
inline void assignEscaped(StoredText& stored, DocumentMemory& memory, std::u16string_view text) {
    if (isVerbatim(text)) {
        stored.assign(memory, text);
    } else {
        stored.assign(memory, NuStrToXML(text));
    }
}

/// Puts the escaped form of `text` behind what is kept.
inline void appendEscaped(StoredText& stored, DocumentMemory& memory, std::u16string_view text) {
    if (isVerbatim(text)) {
        stored.append(memory, text);
    } else {
        stored.append(memory, NuStrToXML(text));
    }
}

} // namespace nu
