#include "host/dom/vendorRegistry.h"

#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace host {

TDOMVendor::~TDOMVendor() = default;

/// Built on first use, so that the order in which libraries are loaded does not matter.
TDOMVendorList& DOMVendors() {
    static TDOMVendorList theVendors;
    return theVendors;
}

void RegisterDOMVendor(TDOMVendor& vendor) { DOMVendors().Add(vendor); }

void UnRegisterDOMVendor(const TDOMVendor& vendor) { DOMVendors().Remove(vendor); }

std::u16string DefaultDOMVendor() {
    std::u16string description = DOMVendors().Default();
    if (description.empty()) {
        const std::vector<TDOMVendor*> vendors = DOMVendors().All();
        description = vendors.empty() ? std::u16string() : vendors.front()->Description();
    }
    return description;
}

void SetDefaultDOMVendor(std::u16string_view description) { DOMVendors().SetDefault(description); }

Ref<IDOMImplementation> CreateDOMImplementation(std::u16string_view vendor) {
    const std::u16string name = vendor.empty() ? DefaultDOMVendor() : std::u16string(vendor);
    TDOMVendor* const found = DOMVendors().Find(name);
    if (found == nullptr) {
        throw Exception(formatMessage(u"There is no DOM vendor \"%s\"", {name}));
    }
    Ref<IDOMImplementation> implementation = found->DOMImplementation();
    if (!implementation) {
        throw Exception(formatMessage(u"The DOM vendor \"%s\" has no implementation", {name}));
    }
    return implementation;
}

} // namespace host
