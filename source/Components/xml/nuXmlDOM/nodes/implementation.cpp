#include "nuXmlDOM/core/implementation.h"

#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/nodes/features.h"
#include "nuXmlParser/namespaceNames.h"

TNuDOMImplementation::TNuDOMImplementation()
    : TNuDOMObject(static_cast<nu::ObjectContext*>(nullptr)) {
    setFlag(nu::selfOwned);
}

NuRef<TNuDOMImplementation> TNuDOMImplementation::Create() {
    return NuRef<TNuDOMImplementation>(new TNuDOMImplementation);
}

void TNuDOMImplementation::_GC() noexcept { delete this; }

nu::Face& TNuDOMImplementation::face() {
    if (face_ == nullptr) {
        face_.reset(nu::makeFace(*this));
    }
    return *face_;
}

bool TNuDOMImplementation::hasFeature(std::u16string_view feature,
                                      std::u16string_view version) const {
    return nu::hasFeature(feature, version);
}

NuRef<TNuDOMDocument>
TNuDOMImplementation::createDocument(std::u16string_view namespaceURI,
                                     std::u16string_view qualifiedName,
                                     const host::IDOMDocumentType* doctype) const {
    if (doctype != nullptr) {
        throw ENuDomNotSupported(nu::messages::noDoctype);
    }
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    if (!qualifiedName.empty()) {
        TNuDOMElement& root = document->CreateRootNode(qualifiedName, namespaceURI);
        NuXmlString declaration(nu::declarationPrefix);
        if (nu::NodeContext::name(root).hasPrefix()) {
            declaration += u":" + root.get_prefix();
        }
        root.setAttribute(declaration, namespaceURI);
    }
    return document;
}

void TNuDOMImplementation::createDocumentType(std::u16string_view /*qualifiedName*/,
                                              std::u16string_view /*publicId*/,
                                              std::u16string_view /*systemId*/) const {
    throw ENuDomNotSupported(nu::messages::notImplemented);
}

TNuDOMVendor::~TNuDOMVendor() = default;

std::u16string TNuDOMVendor::Description() const { return u"Keldon"; }

host::Ref<host::IDOMImplementation> TNuDOMVendor::DOMImplementation() {
    const NuRef<TNuDOMImplementation> implementation = TNuDOMImplementation::Create();
    return host::queryInterface<host::IDOMImplementation>(implementation.get());
}
