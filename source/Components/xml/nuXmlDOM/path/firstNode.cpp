#include <algorithm>
#include <array>
#include <cstddef>

#include "common/caseFolding.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/path/path.h"
#include "nuXmlDOM/path/pathTree.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

// The first node at a path. The paths that values are asked for by are short and simple, "title" or
// "book/@year", and asked often: these are followed as they stand.

namespace {

bool isNameUnit(NuXmlChar unit) noexcept {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' ||
           (unit >= u'-' && unit <= u':' && unit != cNuSlash) || unit >= 0x80;
}

/// A path of a few names, the last of which may be that of an attribute.
class ShortPath {
public:
    /// Whether the text is such a path.
    bool read(std::u16string_view text) noexcept {
        for (;;) {
            const std::size_t slash = text.find(cNuSlash);
            std::u16string_view name = text.substr(0, slash);
            hasAttribute_ = name.starts_with(u'@') && slash == text.npos;
            name.remove_prefix(hasAttribute_ ? 1 : 0);
            if (count_ == names_.size() || name.empty() || name.front() == u'.' ||
                !std::all_of(name.begin(), name.end(), isNameUnit)) {
                return false;
            }
            names_[count_++] = name;
            if (slash == text.npos) {
                return true;
            }
            text.remove_prefix(slash + 1);
        }
    }

    /// The first node, in the order of a selection; null without one.
    [[nodiscard]] TNuDOMNode* find(TNuDOMNode& context, bool elementsOnly) const noexcept {
        // 1. A name that no node has leads nowhere.
        const std::size_t childSteps = hasAttribute_ ? count_ - 1 : count_;
        std::array<const nu::NodeName*, limit> names{};
        for (std::size_t step = 0; step < childSteps; ++step) {
            names[step] = context.OwnerDocument()->parts().names.find(names_[step]);
            if (names[step] == nullptr) {
                return nullptr;
            }
        }
        if (childSteps == 0) {
            return attributeOf(context, elementsOnly);
        }
        // 2. Down as far as the names lead; on, else back up, where they lead no further.
        std::array<TNuDOMNode*, limit> places{};
        std::size_t step = 0;
        places[0] = match(nu::firstOfNamed(context), names[0]);
        for (;;) {
            TNuDOMNode* const place = places[step];
            if (place == nullptr) {
                if (step == 0) {
                    return nullptr;
                }
                --step;
            } else if (step + 1 < childSteps && nu::isPathContext(*place)) {
                ++step;
                places[step] = match(nu::firstOfNamed(*place), names[step]);
                continue;
            } else if (step + 1 == childSteps) {
                if (TNuDOMNode* found = result(*place, elementsOnly)) {
                    return found;
                }
            }
            places[step] = match(nu::NodeLinks::next(*places[step]), names[step]);
        }
    }

private:
    static constexpr std::size_t limit = 8;

    [[nodiscard]] static TNuDOMNode* match(TNuDOMNode* child, const nu::NodeName* name) noexcept {
        while (child != nullptr && nu::NodeContext::name(*child).canonical != name) {
            child = nu::NodeLinks::next(*child);
        }
        return child;
    }
    [[nodiscard]] TNuDOMNode* result(TNuDOMNode& place, bool elementsOnly) const noexcept {
        if (hasAttribute_) {
            return attributeOf(place, elementsOnly);
        }
        return elementsOnly && !nu::is<TNuDOMElement>(place) ? nullptr : &place;
    }
    [[nodiscard]] TNuDOMNode* attributeOf(const TNuDOMNode& node,
                                          bool elementsOnly) const noexcept {
        const std::u16string_view wanted = names_[count_ - 1];
        TNuDOMNode* attribute = elementsOnly ? nullptr : nu::firstAttributeOf(node);
        for (; attribute != nullptr; attribute = nu::NodeLinks::next(*attribute)) {
            const nu::NodeName& name = nu::NodeContext::name(*attribute);
            const bool isDefault = name.declaresNamespace() && !name.hasPrefix();
            if (!isDefault && (name.local() == wanted || NuEqualFolded(name.local(), wanted))) {
                break;
            }
        }
        return attribute;
    }

    std::array<std::u16string_view, limit> names_;
    std::size_t count_ = 0;
    bool hasAttribute_ = false;
};

} // namespace

TNuDOMNode* TNuDOMNode::first(std::u16string_view path, TNuDOMSelectOptions options,
                              bool elementsOnly) const {
    auto& context = const_cast<TNuDOMNode&>(*this);
    ShortPath shortPath;
    if (options == TNuDOMSelectOptions() && nu::isPathContext(context) && shortPath.read(path)) {
        return shortPath.find(context, elementsOnly);
    }
    return TNuDOMPath(path, options).first(context, elementsOnly);
}

TNuDOMElement* TNuDOMNode::Find(const TNuText& path, TNuDOMSelectOptions options) {
    return static_cast<TNuDOMElement*>(first(path, options, true));
}

const TNuDOMElement* TNuDOMNode::Find(const TNuText& path, TNuDOMSelectOptions options) const {
    if (options.has(soCreate)) {
        throw ENuDomNoModificationAllowed(nu::messages::noMakingInConstant);
    }
    return static_cast<const TNuDOMElement*>(first(path, options, true));
}

TNuDOMElement& TNuDOMNode::At(const TNuText& path) {
    TNuDOMNode* found = first(path, {}, true);
    if (found == nullptr) {
        throw ENuDomException(host::formatMessage(nu::messages::noNodeForPath, {path.view()}));
    }
    return static_cast<TNuDOMElement&>(*found);
}

const TNuDOMElement& TNuDOMNode::At(const TNuText& path) const {
    return const_cast<TNuDOMNode&>(*this).At(path);
}

TNuDOMElement& TNuDOMNode::Make(const TNuText& path) {
    TNuDOMNode* made = first(path, {}, true);
    if (made == nullptr) {
        made = first(path, soCreate, true);
    }
    if (made == nullptr) {
        throw ENuDomException(host::formatMessage(nu::messages::noNodeForPath, {path.view()}));
    }
    return static_cast<TNuDOMElement&>(*made);
}

// Selections

TNuDOMSelection<TNuDOMElement> TNuDOMNode::Select(const TNuText& path,
                                                  TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).Select(*this);
}

TNuDOMSelection<const TNuDOMElement> TNuDOMNode::Select(const TNuText& path,
                                                        TNuDOMSelectOptions options) const {
    return TNuDOMPath(path, options).Select(*this);
}

TNuDOMSelection<TNuDOMNode> TNuDOMNode::SelectNodes(const TNuText& path,
                                                    TNuDOMSelectOptions options) {
    return TNuDOMPath(path, options).SelectNodes(*this);
}

TNuDOMSelection<const TNuDOMNode> TNuDOMNode::SelectNodes(const TNuText& path,
                                                          TNuDOMSelectOptions options) const {
    return TNuDOMPath(path, options).SelectNodes(*this);
}

NuRef<TNuDOMNodeList> TNuDOMNode::CreateNodeList(const TNuUtf8Text& path,
                                                 TNuDOMSelectOptions options) {
    return CreateNodeList(path.view(), options);
}
