#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

#include "nuXmlParser/conforming/attributeDeclarations.h"
#include "nuXmlParser/conforming/declaredTags.h"
#include "nuXmlParser/conforming/namespaceBindings.h"
#include "nuXmlParser/markup/tagChecks.h"
#include "nuXmlParser/markup/tagName.h"

namespace nu {

/// What is known from the tags before the one at hand.
struct TagMemory {
    ElementDeclarations declarations; ///< what attribute lists declare
    markup::TagNames names;
    DeclaredTags<markup::TagName> declared;
    markup::NameGuess guess;
    markup::TagChecks<markup::TagName> checks;
    NamespaceBindings bindings;

    /// What is declared for an element; null without anything.
    [[nodiscard]] ElementDeclaration* declarationOf(std::string_view element) {
        if (declarations.empty()) {
            return nullptr;
        }
        const auto found = declarations.find(element);
        return found == declarations.end() ? nullptr : &found->second;
    }
    /// Meets a name that is one and was not met before.
    markup::TagName& meet(std::string_view text) {
        markup::TagName& name = names.add(text);
        name.declaredTag = declared.add(declarationOf(text));
        return name;
    }
    /// The name of a default, which needs not be looked at any more.
    markup::TagName* meetDefault(std::string_view text) {
        markup::TagName* name = names.find(text);
        if (name == nullptr) {
            name = &meet(text);
            const bool hasPrefix = name->prefixLength != 0 && !name->isDeclaration;
            name->scope = hasPrefix ? noScope : 0;
        }
        return name;
    }
    /// Forgets all names.
    void forgetNames() {
        guess.leave(nullptr);
        declared.clear();
        names.clear();
    }
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

private:
    static constexpr std::uint64_t noScope = std::numeric_limits<std::uint64_t>::max();
};

} // namespace nu
