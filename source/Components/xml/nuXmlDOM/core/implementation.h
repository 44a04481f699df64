#pragma once

#include <memory>
#include <string_view>

#include "host/dom/vendorRegistry.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domObject.h"

/// \file
/// What the implementation can do.

/// Tells what the tree can do, and makes documents. It belongs to no document.
class NUXML_API TNuDOMImplementation final : public TNuDOMObject {
public:
    /// A new one; all are alike.
    [[nodiscard]] static NuRef<TNuDOMImplementation> Create();

    /// Whether the feature is "xml" and the version "1.0" or "2.0", in any letter case.
    [[nodiscard]] bool hasFeature(std::u16string_view feature, std::u16string_view version) const;
    /// A new document; with a name, its document element declares `namespaceURI` for its prefix,
    /// also when that is empty. Throws ENuDomNotSupported with a document type.
    [[nodiscard]] NuRef<TNuDOMDocument>
    createDocument(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                   const host::IDOMDocumentType* doctype = nullptr) const;
    /// Never supported.
    void createDocumentType(std::u16string_view qualifiedName, std::u16string_view publicId,
                            std::u16string_view systemId) const;

private:
    TNuDOMImplementation();
    ~TNuDOMImplementation() = default;

    NUXML_LOCAL void _GC() noexcept override;
    NUXML_LOCAL nu::Face& face() override;

    std::unique_ptr<nu::Face> face_;
};

/// The implementation as the registry of DOM vendors lists it; made and registered with the
/// library.
class NUXML_API TNuDOMVendor : public host::TDOMVendor {
public:
    ~TNuDOMVendor() override;

    /// "Keldon".
    [[nodiscard]] std::u16string Description() const override;
    host::Ref<host::IDOMImplementation> DOMImplementation() override;
};
