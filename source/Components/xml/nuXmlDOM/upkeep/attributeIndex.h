#pragma once

#include <functional>
#include <string_view>
#include <unordered_map>

#include "common/textHash.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/storage/nodeName.h"

namespace nu {

/// The attributes of an element with many of them by name and by local name, and what stands before
/// each; made when that is looked for, and kept up to date while attributes come and go.
class AttributeIndex {
public:
    /// Attributes that a search looks at one by one before it makes an index.
    static constexpr int few = 16;

    /// The first attribute of the canonical name; null without one.
    [[nodiscard]] TNuDOMAttribute* find(TNuDOMElement& element, const NodeName* canonical);
    /// The first attribute of the local name, as TNuDOMAttribute::get_localName gives it; null
    /// without one. `isOnly` says that no other has that local name.
    [[nodiscard]] TNuDOMAttribute* find(TNuDOMElement& element, std::u16string_view localName,
                                        bool& isOnly);
    /// An attribute came, at the end or elsewhere, or left.
    void changed(TNuDOMAttribute& attribute, bool isAdded, bool isAtEnd) noexcept;
    /// Names have changed, or the order.
    void drop() noexcept;

    /// The attribute before `attribute`, null before the first; the last one for null.
    [[nodiscard]] TNuDOMNode* before(const TNuDOMElement& element, const TNuDOMNode* attribute);
    /// An attribute has been put behind `before`, see AttributeChain.
    void linked(TNuDOMNode* before, const TNuDOMNode& attribute) noexcept;
    /// An attribute between `before` and `next`, null where there is none, has been taken out.
    void unlinked(TNuDOMNode* before, const TNuDOMNode& attribute, const TNuDOMNode* next) noexcept;

private:
    /// The first attribute of each key.
    template <class Key, class Hash> class Table {
    public:
        struct Entry {
            TNuDOMAttribute* first;
            bool isOnly;
        };
        [[nodiscard]] const Entry* find(TNuDOMElement& element, Key key);
        void added(TNuDOMAttribute& attribute, bool isAtEnd);
        void removed(const TNuDOMAttribute& attribute) noexcept;
        void drop() noexcept;

    private:
        void enter(TNuDOMAttribute& attribute);

        std::unordered_map<Key, Entry, Hash> entries_;
        bool isMade_ = false;
    };

    // Addresses need no keyed hash: what collides must lie as far apart as there are entries.
    Table<const NodeName*, std::hash<const NodeName*>> names_;
    Table<std::u16string_view, TextHash> localNames_;
    /// The attribute before each, and for null the last; empty as long as nobody asked.
    std::unordered_map<const TNuDOMNode*, TNuDOMNode*> before_;
};

/// The attribute of `element` before `attribute`, null before the first; the last one for null.
[[nodiscard]] TNuDOMNode* attributeBefore(TNuDOMElement& element,
                                          const TNuDOMNode* attribute) noexcept;
/// The first attribute of the canonical name; null without one, and for null.
[[nodiscard]] TNuDOMAttribute* findAttribute(const TNuDOMElement& element,
                                             const NodeName* canonical);
/// The first attribute of the local name and the namespace that its prefix resolves to.
[[nodiscard]] TNuDOMAttribute* findAttribute(const TNuDOMElement& element,
                                             std::u16string_view localName,
                                             std::u16string_view namespaceURI);

} // namespace nu
