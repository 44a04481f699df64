#include "host/runtime/format.h"
#include "host/runtime/vendorList.h"
#include "host/sax/SaxHelpers.h"

namespace host {

namespace {

/// Built on first use, so that the order in which libraries are loaded does not matter.
VendorList<TSAXVendor>& vendors() {
    static VendorList<TSAXVendor> theVendors;
    return theVendors;
}

} // namespace

TSAXVendor::~TSAXVendor() = default;

void RegisterSAXVendor(TSAXVendor& vendor) { vendors().Add(vendor); }

void UnregisterSAXVendor(const TSAXVendor& vendor) { vendors().Remove(vendor); }

TSAXVendor* FindSAXVendor(std::u16string_view description) { return vendors().Find(description); }

std::vector<TSAXVendor*> RegisteredSAXVendors() { return vendors().All(); }

SAXString DefaultSAXVendor() { return vendors().Default(); }

void SetDefaultSAXVendor(std::u16string_view description) { vendors().SetDefault(description); }

Ref<IBufferedXMLReader> CreateBufferedXMLReader(std::u16string_view vendor) {
    const SAXString name = vendor.empty() ? DefaultSAXVendor() : SAXString(vendor);
    TSAXVendor* const found = FindSAXVendor(name);
    if (found == nullptr) {
        throw ESAXException(formatMessage(u"There is no SAX vendor \"%s\"", {name}));
    }
    Ref<IBufferedXMLReader> reader = found->BufferedXMLReader();
    if (!reader) {
        throw ESAXException(formatMessage(u"The SAX vendor \"%s\" has no buffered reader", {name}));
    }
    return reader;
}

} // namespace host
