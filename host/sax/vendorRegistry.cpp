#include <algorithm>
#include <mutex>

#include "host/runtime/format.h"
#include "host/sax/SaxHelpers.h"

namespace host {

namespace {

struct SAXVendorRegistry {
    std::mutex mutex;
    std::vector<TSAXVendor*> vendors;
    SAXString defaultVendor;
};

/// Built on first use, so that the order in which libraries are loaded does not matter.
SAXVendorRegistry& registry() {
    static SAXVendorRegistry theRegistry;
    return theRegistry;
}

/// Call it with the registry locked.
TSAXVendor* findLocked(const SAXVendorRegistry& locked, std::u16string_view description) {
    const auto found =
        std::find_if(locked.vendors.rbegin(), locked.vendors.rend(), [&](const TSAXVendor* vendor) {
            return vendor->Description() == description;
        });
    return found == locked.vendors.rend() ? nullptr : *found;
}

} // namespace

TSAXVendor::~TSAXVendor() = default;

void RegisterSAXVendor(TSAXVendor& vendor) {
    auto& shared = registry();
    const std::lock_guard lock(shared.mutex);
    if (std::find(shared.vendors.begin(), shared.vendors.end(), &vendor) == shared.vendors.end()) {
        shared.vendors.push_back(&vendor);
    }
}

void UnregisterSAXVendor(const TSAXVendor& vendor) {
    auto& shared = registry();
    const std::lock_guard lock(shared.mutex);
    const auto found = std::find(shared.vendors.begin(), shared.vendors.end(), &vendor);
    if (found == shared.vendors.end()) {
        return;
    }
    shared.vendors.erase(found);
    const SAXString description = vendor.Description();
    if (description == shared.defaultVendor && findLocked(shared, description) == nullptr) {
        shared.defaultVendor.clear();
    }
}

TSAXVendor* FindSAXVendor(std::u16string_view description) {
    auto& shared = registry();
    const std::lock_guard lock(shared.mutex);
    return findLocked(shared, description);
}

std::vector<TSAXVendor*> RegisteredSAXVendors() {
    auto& shared = registry();
    const std::lock_guard lock(shared.mutex);
    return shared.vendors;
}

SAXString DefaultSAXVendor() {
    auto& shared = registry();
    const std::lock_guard lock(shared.mutex);
    return shared.defaultVendor;
}

void SetDefaultSAXVendor(std::u16string_view description) {
    auto& shared = registry();
    const std::lock_guard lock(shared.mutex);
    shared.defaultVendor = description;
}

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
