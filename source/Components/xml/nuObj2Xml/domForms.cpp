#include "nuObj2Xml/domForms.h"

#include "nuObj2Xml/entryFunctions.h"
#include "nuXmlDOM/load/loading.h"
#include "nuXmlDOM/values/schemaPrefix.h"

namespace {

/// The prefixes that objects are written with can be used where they are declared.
TNuNamespaceOptions prefixesAt(const TNuDOMElement& element) {
    TNuNamespaceOptions options;
    if (nu::findSchemaPrefix(element, nu::instanceNamespace).text == u"xsi:") {
        options = options | noUseXSIPrefix;
    }
    if (nu::findSchemaPrefix(element, nu::schemaNamespace).text == u"xsd:") {
        options = options | noUseXSDPrefix;
    }
    return options;
}

} // namespace

void NuSerialize(TNuConstObjectRef object, TNuDOMElement& element) {
    if (!object) {
        return;
    }
    const NuXmlString text = NuSerializeObject2Xml(object, u"object", prefixesAt(element));
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(text);
    TNuDOMElement& written = *document->get_documentElement();
    while (TNuDOMNode* const child = written.get_firstChild()) {
        element.appendChild(*child);
    }
}

void NuDeserialize(TNuDOMElement& element, TNuObjectRef object, TNuDeserializeOptions options) {
    NuDeSerializeObject(object, element, options);
}
