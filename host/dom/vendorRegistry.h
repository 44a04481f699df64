#pragma once

#include <string>
#include <string_view>

#include "host/dom/document.h"
#include "host/runtime/vendorList.h"

/// \file
/// The registry of DOM implementations, which applications ask for a document of no library in
/// particular.

namespace host {

/// A DOM implementation as an application finds it: by the vendor's description.
class NUXML_API TDOMVendor {
public:
    TDOMVendor() = default;
    TDOMVendor(const TDOMVendor&) = delete;
    TDOMVendor& operator=(const TDOMVendor&) = delete;
    virtual ~TDOMVendor();

    /// The name by which applications ask for the vendor; the same at every call.
    [[nodiscard]] virtual std::u16string Description() const = 0;
    /// A new implementation object.
    virtual Ref<IDOMImplementation> DOMImplementation() = 0;
};

/// The DOM implementations that are there.
using TDOMVendorList = VendorList<TDOMVendor>;

/// The vendors that are registered.
NUXML_API TDOMVendorList& DOMVendors();

/// Puts a vendor into the registry, which does not own it. Registering it again changes nothing.
NUXML_API void RegisterDOMVendor(TDOMVendor& vendor);
/// Takes a vendor out of the registry; one that is not there is no fault.
NUXML_API void UnRegisterDOMVendor(const TDOMVendor& vendor);

/// The description of the vendor that applications get when they name none: the one that was set,
/// else that of the vendor registered first; empty when there is none.
NUXML_API std::u16string DefaultDOMVendor();
/// Any description may be set, also that of a vendor that is yet to come; an empty one takes the
/// choice back.
NUXML_API void SetDefaultDOMVendor(std::u16string_view description);

/// A new implementation object of the named vendor, or of the default vendor when the name is
/// empty. Throws host::Exception when there is no such vendor or it offers none.
NUXML_API Ref<IDOMImplementation> CreateDOMImplementation(std::u16string_view vendor = {});

} // namespace host
