#include "nuXmlParser/conforming/namespaceBindings.h"

#include "common/textHash.h"

namespace nu {

void NamespaceBindings::bind(std::string_view prefix, std::string_view uri, std::size_t depth) {
    if (2 * (bindings_.size() + 1) > slots_.size()) {
        grow();
    }
    const std::size_t hash = TextHash()(prefix);
    std::size_t& slot = slots_[hash & (slots_.size() - 1)];
    bindings_.push_back({std::string(prefix), std::string(uri), depth, hash, slot});
    slot = bindings_.size();
    ++version_;
}

const std::string* NamespaceBindings::find(std::string_view prefix) const noexcept {
    static const std::string uriOfXml(xmlUri);
    if (prefix == "xml") {
        return &uriOfXml;
    }
    if (bindings_.empty()) {
        return nullptr;
    }
    const std::size_t hash = TextHash()(prefix);
    std::size_t number = slots_[hash & (slots_.size() - 1)];
    while (number != 0) {
        const Binding& binding = bindings_[number - 1];
        if (binding.hash == hash && binding.prefix == prefix) {
            return &binding.uri;
        }
        number = binding.older;
    }
    return nullptr;
}

void NamespaceBindings::removeLast() noexcept {
    const Binding& binding = bindings_.back();
    slots_[binding.hash & (slots_.size() - 1)] = binding.older;
    bindings_.pop_back();
    ++version_;
}

void NamespaceBindings::grow() {
    constexpr std::size_t firstCount = 16;
    slots_.assign(slots_.empty() ? firstCount : 2 * slots_.size(), 0);
    for (std::size_t index = 0; index < bindings_.size(); ++index) {
        std::size_t& slot = slots_[bindings_[index].hash & (slots_.size() - 1)];
        bindings_[index].older = slot;
        slot = index + 1;
    }
}

} // namespace nu
