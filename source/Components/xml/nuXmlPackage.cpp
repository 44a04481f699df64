#include "host/dom/vendorRegistry.h"
#include "nuXmlDOM/core/implementation.h"
#include "nuXmlSax/vendor.h"

namespace {

/// Lives as long as the library is loaded.
class Package {
public:
    Package() {
        // The default is set before the vendor is there: whoever is told of the registration finds
        // both in place.
        host::SetDefaultSAXVendor(saxVendor_.Description());
        host::RegisterSAXVendor(saxVendor_);
        if (host::DOMVendors().Find(domVendor_.Description()) == nullptr) {
            host::RegisterDOMVendor(domVendor_);
        }
    }
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;
    ~Package() {
        host::UnRegisterDOMVendor(domVendor_);
        host::UnregisterSAXVendor(saxVendor_);
    }

private:
    TNuSAXReaderVendor saxVendor_;
    TNuDOMVendor domVendor_;
};

const Package package;

} // namespace

/// Whoever links the library statically asks for this name, and so gets the package, which nothing
/// else refers to. Shared libraries do not export it.
extern "C" {
extern const char nuXmlPackage;
const char nuXmlPackage = 0;
}
