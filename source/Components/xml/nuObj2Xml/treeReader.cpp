#include "nuObj2Xml/treeReader.h"

#include "nuObj2Xml/instanceAttributes.h"
#include "nuXmlDOM/core/document.h"

namespace nu {

namespace {

/// What the start tag of an element would tell.
class StartOfElement {
public:
    explicit StartOfElement(const TNuDOMElement& element) : name_(element.get_localName()) {
        for (const TNuDOMAttribute& attribute : element.Attributes()) {
            const NuXmlString local = attribute.get_localName();
            if (local == u"type") {
                take(attribute, type_);
            } else if (local == u"nil") {
                take(attribute, nil_);
            }
        }
    }

    [[nodiscard]] StartedElement start() const noexcept {
        const std::u16string_view type = type_.value;
        return {name_, type.substr(type.find(cNuColon) + 1), meansNil(nil_.value)};
    }

private:
    struct Found {
        NuXmlString value;
        int certainty = 0;
    };

    static void take(const TNuDOMAttribute& attribute, Found& found) {
        const NuXmlString prefix = attribute.get_prefix();
        const NuXmlString uri = prefix.empty() ? NuXmlString() : attribute.get_namespaceURI();
        const int certainty = certaintyOf(prefix, uri);
        if (certainty > found.certainty) {
            found = {attribute.get_nodeValue(), certainty};
        }
    }

    NuXmlString name_;
    Found type_;
    Found nil_;
};

/// Takes what comes before the next end of an element, and gives the node behind.
TNuDOMNode* takeLeaf(ObjectBuilder& builder, TNuDOMNode& node) {
    if (is<TNuDOMText>(node)) {
        // Its value is unescaped already, so that nothing in it is a reference any more.
        builder.characters(node.get_nodeValue(), true);
    }
    return NodeLinks::next(node);
}

/// Ends an element. A serializer that wants to see it gets a copy, to do with as it likes: the tree
/// is still being walked.
void endElement(ObjectBuilder& builder, const TNuDOMElement& element) {
    if (!builder.wantsTree()) {
        builder.endElement(nullptr);
        return;
    }
    const auto document = TNuDOMDocument::Create();
    const auto copy = document->CreateCopy(element);
    document->appendChild(*copy);
    builder.endElement(copy.get());
}

} // namespace

void readElement(ObjectBuilder& builder, TNuDOMElement& element, host::Instance object,
                 TNuSerializer* serializer) {
    builder.begin(object, serializer, false, StartOfElement(element).start());
    TNuDOMElement* open = &element;
    TNuDOMNode* next = element.get_firstChild();
    while (open != nullptr) {
        if (auto* const child = as<TNuDOMElement>(next)) {
            builder.startElement(StartOfElement(*child).start());
            open = child;
            next = child->get_firstChild();
        } else if (next != nullptr) {
            next = takeLeaf(builder, *next);
        } else {
            endElement(builder, *open);
            next = open != &element ? NodeLinks::next(*open) : nullptr;
            open = open != &element ? NodeLinks::parentElement(*open) : nullptr;
        }
    }
}

} // namespace nu
