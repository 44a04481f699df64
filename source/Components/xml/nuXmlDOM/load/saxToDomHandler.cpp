#include "nuXmlDOM/load/saxToDomHandler.h"

#include <typeinfo>

#include "common/caseFolding.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/storage/escapedText.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/nodeMemory.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlSax/attributes.h"
#include "nuXmlSax/reader.h"

namespace {

[[noreturn]] void raiseEmptyName() { throw ENuDomSyntax(nu::messages::emptyName); }
[[noreturn]] void raiseInvalidName() { throw ENuDomInvalidCharacter(nu::messages::invalidName); }

/// What `find` gives for a name, if a node can have it.
template <class Find>
[[gnu::always_inline]] inline const nu::NodeName* checkedName(std::u16string_view name,
                                                              Find&& find) {
    if (name.empty()) [[unlikely]] {
        raiseEmptyName();
    }
    const nu::NodeName* found = find();
    if (found->hasSpace) [[unlikely]] {
        raiseInvalidName();
    }
    return found;
}

/// Puts attributes behind those of an element that is being loaded.
class AttributeLoader {
public:
    AttributeLoader(TNuDOMDocument& document, TNuDOMElement& element) noexcept
        : document_(document), element_(element), before_(&nu::NodeContext::name(element)),
          number_(document.parts().names.nextLoadedElement()) {}

    /// \param isKnownVerbatim whether escaping is known to leave the value as it is
    [[gnu::always_inline]] void add(std::u16string_view qName, std::u16string_view value,
                                    bool isKnownVerbatim) {
        // Most values are kept as they are written.
        if (isKnownVerbatim || nu::isVerbatim(value)) [[likely]] {
            textFor(qName).assign(document_.parts().memory, value);
        } else {
            addReplaced(qName, value);
        }
    }

private:
    /// References in the value are replaced, and what is kept is escaped again. The attribute comes
    /// after that, because a reference can be wrong.
    [[gnu::noinline]] void addReplaced(std::u16string_view qName, std::u16string_view value) {
        const NuXmlString replaced = NuXMLToStr(value);
        nu::assignEscaped(textFor(qName), document_.parts().memory, replaced);
    }

    /// The text of an attribute that is new, unless the element already got one of that name.
    [[gnu::always_inline]] nu::StoredText& textFor(std::u16string_view qName) {
        const nu::NodeName* name = checkedName(qName, [&] {
            nu::NameTable& names = document_.parts().names;
            return names.getFollower(*before_, nu::NameFollower::Attribute, qName, names.noURI());
        });
        before_ = name;
        if (name->loadedElement != number_) [[likely]] {
            auto& attribute = nu::NodeMemory::make<TNuDOMAttribute>(document_, name);
            nu::ElementLinks::append(element_, last_, attribute);
            last_ = &attribute;
            name->loadedElement = number_;
            name->loadedAttribute = &attribute;
        }
        return nu::NodeText::stored(*name->loadedAttribute);
    }

    TNuDOMDocument& document_;
    TNuDOMElement& element_;
    const nu::NodeName* before_; ///< of the element, or of the attribute that came last
    TNuDOMAttribute* last_ = nullptr;
    std::uint64_t number_; ///< of the element
};

void addAttributes(AttributeLoader& loader, host::IBufferedAttributes& attributes) {
    // Those of the library's own readers can be had without calls.
    if (typeid(attributes) == typeid(TNuSAXAttributes)) [[likely]] {
        for (const TNuSAXAttribute& own : static_cast<TNuSAXAttributes&>(attributes).all()) {
            loader.add(own.qNameSpan(), own.valueSpan(), own.isKnownVerbatim());
        }
        return;
    }
    const host::SAXLength count = attributes.getLength();
    for (host::SAXLength index = 0; index < count; ++index) {
        const host::SAXChar* text = nullptr;
        host::SAXLength length = 0;
        attributes.getQName(index, text, length);
        const std::u16string_view name(text, static_cast<std::size_t>(length));
        attributes.getValue(index, text, length);
        loader.add(name, std::u16string_view(text, static_cast<std::size_t>(length)), false);
    }
}

} // namespace

TNuSaxToDomHandler::TNuSaxToDomHandler(TNuSAXXMLReader& reader, TNuDOMDocument& document,
                                       TNuDOMNode* parent)
    : TNuSAXHandlerOf(reader), document_(&document),
      current_(parent != nullptr ? parent : &document), before_(document.parts().names.nameless()),
      uri_(&document.parts().names.noURI()) {}

TNuSaxToDomHandler::~TNuSaxToDomHandler() { setLoading(false); }

void TNuSaxToDomHandler::setLoading(bool isLoading) noexcept {
    document_->parts().isLoading = isLoading;
}

/// Nothing that was told counts any more.
void TNuSaxToDomHandler::startAnew(TNuDOMNode& parent) noexcept {
    setLoading(false);
    current_ = &parent;
    before_ = document_->parts().names.nameless();
    follower_ = nu::NameFollower::Child;
    uri_ = &document_->parts().names.noURI();
    longURIs_.clear();
    isInCData_ = false;
    failure_ = nullptr;
    failureLine_ = failureColumn_ = 0;
    locator_.reset();
}

/// Puts a new node behind the children of the current node; frees it when it cannot stand there.
template <class Node> void TNuSaxToDomHandler::append(Node& node) {
    auto* element = nu::as<TNuDOMElement>(current_);
    if (element != nullptr && nu::NodeContext::extrasIfAny(*element) == nullptr) {
        // No list has to be told: this is how nearly all nodes come.
        nu::ElementLinks::append(*element, node);
        return;
    }
    try {
        node._linkToParent(current_, rdpLast, nullptr);
    } catch (...) {
        nu::NodeMemory::destroy(node);
        throw;
    }
}

/// The document's own of a namespace URI; most elements are in the namespace of the one before.
const nu::NameURI& TNuSaxToDomHandler::uriOf(std::u16string_view uri, std::u16string_view qName) {
    constexpr std::size_t longLength = 256;
    if (uri.size() <= longLength) [[likely]] {
        if (uri != uri_->view()) {
            uri_ = &document_->parts().names.getURI(uri);
        }
        return *uri_;
    }
    // A long one is known by its declaration: to look at it for each element would add up.
    const std::size_t colon = qName.rfind(cNuColon);
    const TNuSaxNamespace* scope =
        Reader().Namespaces().GetNamespace(qName.substr(0, colon == qName.npos ? 0 : colon));
    if (scope == nullptr || scope->URI.data() != uri.data()) {
        return document_->parts().names.getURI(uri); // it does not come from the reader
    }
    const nu::NameURI*& known = longURIs_[scope->Number];
    if (known == nullptr) {
        known = &document_->parts().names.getURI(uri);
    }
    return *known;
}

void TNuSaxToDomHandler::setDocumentLocator(host::ILocator& locator) { locator_ = &locator; }

void TNuSaxToDomHandler::startDocument() { setLoading(true); }

void TNuSaxToDomHandler::endDocument() {
    setLoading(false);
    locator_.reset();
}

void TNuSaxToDomHandler::startElement(std::u16string_view uri, std::u16string_view /*localName*/,
                                      std::u16string_view qName,
                                      host::IBufferedAttributes& attributes) {
    remember([&] {
        // 1. The element, behind the children of the current one.
        const nu::NodeName* name = checkedName(qName, [&] {
            return document_->parts().names.getFollower(*before_, follower_, qName,
                                                        uriOf(uri, qName));
        });
        auto& element = nu::NodeMemory::make<TNuDOMElement>(*document_, name);
        append(element);
        // 2. Its attributes, namespace declarations among them.
        AttributeLoader loader(*document_, element);
        addAttributes(loader, attributes);
        // 3. What follows goes below it.
        current_ = &element;
        before_ = name;
        follower_ = nu::NameFollower::Child;
    });
}

void TNuSaxToDomHandler::endElement(std::u16string_view /*uri*/, std::u16string_view /*localName*/,
                                    std::u16string_view /*qName*/) {
    TNuDOMNode* parent = current_->get_parentNode();
    if (parent == nullptr) {
        current_ = document_.get();
        return;
    }
    before_ = &nu::NodeContext::name(*current_);
    follower_ = nu::NameFollower::Sibling;
    current_ = parent;
}

void TNuSaxToDomHandler::characters(std::u16string_view text) {
    if (text.empty()) {
        return;
    }
    remember([&] {
        if (isInCData_) {
            nu::cast<TNuDOMElement>(*current_).AddCDATA(text);
            return;
        }
        auto& node =
            nu::NodeMemory::make<TNuDOMText>(*document_, document_->parts().names.nameless());
        nu::NodeText::stored(node).assign(document_->parts().memory, text);
        append(node);
    });
}

void TNuSaxToDomHandler::comment(std::u16string_view text) {
    remember([&] {
        document_->_CreateCharacterData(TNuDOMComment::Class, text, current_, rdpLast, nullptr);
    });
}

void TNuSaxToDomHandler::processingInstruction(std::u16string_view target,
                                               std::u16string_view data) {
    remember([&] {
        const nu::NodeName* name =
            checkedName(target, [&] { return document_->parts().names.get(target); });
        auto& instruction = nu::NodeMemory::make<TNuDOMProcessingInstruction>(*document_, name);
        nu::NodeText::storedIfAny(instruction)->assign(document_->parts().memory, data);
        // The XML declaration always comes first in the document.
        if (current_ == document_.get() && NuEqualFolded(target, u"xml")) {
            instruction._linkToParent(current_, rdpFirst, nullptr);
        } else {
            append(instruction);
        }
    });
}

void TNuSaxToDomHandler::startCDATA() { isInCData_ = true; }

void TNuSaxToDomHandler::endCDATA() { isInCData_ = false; }

// What the tree does not keep.

void TNuSaxToDomHandler::EndProlog() {}
void TNuSaxToDomHandler::startPrefixMapping(std::u16string_view /*prefix*/,
                                            std::u16string_view /*uri*/) {}
void TNuSaxToDomHandler::endPrefixMapping(std::u16string_view /*prefix*/) {}
void TNuSaxToDomHandler::ignorableWhitespace(std::u16string_view /*text*/) {}
void TNuSaxToDomHandler::skippedEntity(std::u16string_view /*name*/) {}
void TNuSaxToDomHandler::startDTD(std::u16string_view /*name*/, std::u16string_view /*publicId*/,
                                  std::u16string_view /*systemId*/) {}
void TNuSaxToDomHandler::endDTD() {}
void TNuSaxToDomHandler::startEntity(std::u16string_view /*name*/) {}
void TNuSaxToDomHandler::endEntity(std::u16string_view /*name*/) {}
