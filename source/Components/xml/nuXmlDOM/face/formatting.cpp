#include "nuXmlDOM/write/formatting.h"

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/face/convert.h"

NuXmlString NuGetFormattedXML(std::u16string_view xml) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->set_innerxml(xml);
    return document->get_formattedXml();
}

NuXmlString NuGetFormattedXML(host::IDOMDocument* document) {
    return nu::toObject<TNuDOMDocument>(document).get_formattedXml();
}
