#include "nuXmlParser/conforming/namespaceBindings.h"

#include "common/textHash.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

bool mayBind(std::string_view prefix, std::string_view uri) noexcept {
    return prefix != xmlPrefixA && prefix != declarationPrefixA &&
           (prefix.empty() || !uri.empty()) && uri != xmlNamespaceA && uri != declarationNamespaceA;
}

void NamespaceBindings::bind(std::string_view prefix, std::string_view uri, std::size_t depth) {
    if (2 * (count_ + 1) > slots_.size()) {
        grow();
    }
    const std::size_t hash = TextHash()(prefix);
    std::size_t& slot = slots_[hash & (slots_.size() - 1)];
    if (count_ == bindings_.size()) {
        bindings_.emplace_back();
    }
    Binding& binding = bindings_[count_];
    binding.prefix = prefix;
    binding.uri = uri;
    binding.depth = depth;
    binding.hash = hash;
    binding.older = slot;
    slot = ++count_;
    ++version_;
    scope_ += prefix.empty() ? 0 : 1;
}

const std::string* NamespaceBindings::find(std::string_view prefix) const noexcept {
    static const std::string uriOfXml(xmlNamespaceA);
    if (prefix == xmlPrefixA) {
        return &uriOfXml;
    }
    if (count_ == 0) {
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
    const Binding& binding = bindings_[--count_];
    slots_[binding.hash & (slots_.size() - 1)] = binding.older;
    ++version_;
    scope_ += binding.prefix.empty() ? 0 : 1;
}

void NamespaceBindings::grow() {
    constexpr std::size_t firstCount = 16;
    slots_.assign(slots_.empty() ? firstCount : 2 * slots_.size(), 0);
    for (std::size_t index = 0; index < count_; ++index) {
        std::size_t& slot = slots_[bindings_[index].hash & (slots_.size() - 1)];
        bindings_[index].older = slot;
        slot = index + 1;
    }
}

} // namespace nu
