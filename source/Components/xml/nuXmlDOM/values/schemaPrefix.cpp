#include "nuXmlDOM/values/schemaPrefix.h"

#include "nuXmlDOM/core/element.h"

nu::SchemaPrefix nu::findSchemaPrefix(const TNuDOMElement& element, std::u16string_view uri) {
    const TNuDOMAttribute* declaration = element.FindNamespace(uri, true);
    if (declaration == nullptr) {
        return {};
    }
    NuXmlString text = declaration->get_localName();
    if (!text.empty()) {
        text += cNuColon;
    }
    return {text, true};
}
