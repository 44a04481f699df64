#pragma once

#include <string_view>

#include "host/sax/BSax.h"

namespace tool {

/// What a start tag says about one of its attributes.
struct AttributeSpans {
    std::u16string_view qName;
    std::u16string_view localName;
    std::u16string_view uri; ///< empty where there is none
    std::u16string_view value;
};

inline AttributeSpans spansOf(host::IBufferedAttributes& attributes, host::SAXLength index) {
    const auto span = [&](auto get) -> std::u16string_view {
        const host::SAXChar* text = nullptr;
        host::SAXLength length = 0;
        (attributes.*get)(index, text, length);
        // A length of -1 says that there is nothing.
        return length > 0 ? std::u16string_view(text, static_cast<std::size_t>(length))
                          : std::u16string_view();
    };
    using Attributes = host::IBufferedAttributes;
    using Get = void (Attributes::*)(host::SAXLength, const host::SAXChar*&, host::SAXLength&);
    return {span(static_cast<Get>(&Attributes::getQName)),
            span(static_cast<Get>(&Attributes::getLocalName)),
            span(static_cast<Get>(&Attributes::getURI)),
            span(static_cast<Get>(&Attributes::getValue))};
}

} // namespace tool
