#pragma once

#include <string_view>

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/selectOptions.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/elementOrder.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace nu {

/// Throws host::EAssertionFailed for options that cannot stand together.
inline void checkOptions(TNuDOMSelectOptions options) {
    if (options.has(soCreate) && options.has(soRaise)) {
        host::failAssertion(messages::invalidOptions, messages::domLocation, __LINE__);
    }
}

/// A requested name as the options want it compared with the names of nodes of one document.
class NameTest {
public:
    NameTest(std::u16string_view name, TNuDOMSelectOptions options, const TNuDOMDocument& document)
        : key_(name), isLocal_(options.has(soIgnoreNamespace)),
          isFolded_(options.has(soCaseInsensitive)) {
        if (isLocal_) {
            key_.remove_prefix(key_.find(cNuColon) + 1); // none found is -1: nothing is cut
        }
        if (isExact()) {
            canonical_ = const_cast<TNuDOMDocument&>(document).parts().names.find(key_);
        }
    }

    /// Whether it is the qualified name that counts, letter by letter; canonical() is that name
    /// then.
    [[nodiscard]] bool isExact() const noexcept { return !isLocal_ && !isFolded_; }
    /// The name as the document has it; null when it has none such.
    [[nodiscard]] const NodeName* canonical() const noexcept { return canonical_; }

    [[nodiscard]] bool operator()(const TNuDOMNode& node) const noexcept {
        const NodeName& name = NodeContext::name(node);
        if (isExact()) {
            return canonical_ != nullptr && name.canonical == canonical_;
        }
        const std::u16string_view candidate = isLocal_ ? localName(node, name) : name.qualified();
        return isFolded_ ? NuEqualFolded(candidate, key_) : candidate == key_;
    }

private:
    /// That of get_localName: the declaration of the default namespace has none.
    static std::u16string_view localName(const TNuDOMNode& node, const NodeName& name) noexcept {
        const bool isDefaultDeclaration = name.declaresNamespace() && !name.hasPrefix() &&
                                          node.get_nodeType() == host::ATTRIBUTE_NODE;
        return isDefaultDeclaration ? std::u16string_view() : name.local();
    }

    std::u16string_view key_;
    bool isLocal_;
    bool isFolded_;
    const NodeName* canonical_ = nullptr;
};

/// Whether two texts are equal, or differ in letter case only when that is allowed.
inline bool areEqual(std::u16string_view left, std::u16string_view right,
                     TNuDOMSelectOptions options) noexcept {
    return options.has(soCaseInsensitive) ? NuEqualFolded(left, right) : left == right;
}

/// The first child element for which `test` holds, in the order of the child-element list; null
/// without one.
template <class Test>
[[nodiscard]] TNuDOMElement* findChildElement(const TNuDOMElement& element, Test&& test) {
    if (const std::vector<TNuDOMElement*>* order = elementOrder(element)) {
        for (TNuDOMElement* child : *order) {
            if (test(*child)) {
                return child;
            }
        }
        return nullptr;
    }
    for (TNuDOMElement& child : TNuDOMRange<TNuDOMElement>(childrenOf(element)->first())) {
        if (test(child)) {
            return &child;
        }
    }
    return nullptr;
}

} // namespace nu
