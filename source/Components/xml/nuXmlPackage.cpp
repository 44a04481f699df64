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
    }
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;
    ~Package() { host::UnregisterSAXVendor(saxVendor_); }

private:
    TNuSAXReaderVendor saxVendor_;
};

const Package package;

} // namespace
