#pragma once

#include "nuXmlParser/conforming/namespaceBindings.h"
#include "nuXmlParser/markup/tagChecks.h"
#include "nuXmlParser/markup/tagName.h"

namespace nu {

/// What is known from the tags before the one at hand.
struct TagMemory {
    markup::TagNames names;
    markup::NameGuess guess;
    markup::TagChecks<markup::TagName> checks;
    NamespaceBindings bindings;

    /// Whether the prefix of a name is surely declared. `scope` of the name is not 0 if its prefix
    /// was found to be one before.
    [[nodiscard]] bool isDeclared(markup::TagName& name) const noexcept {
        if (name.scope != bindings.scope()) {
            if (name.scope == 0 ||
                bindings.find(name.text.substr(0, name.prefixLength - 1)) == nullptr) {
                return false;
            }
            name.scope = bindings.scope();
        }
        return true;
    }
};

} // namespace nu
