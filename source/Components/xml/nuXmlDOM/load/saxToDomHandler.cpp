#include "nuXmlDOM/load/saxToDomHandler.h"

#include <typeinfo>

#include "common/caseFolding.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/escapedText.h"
#include "nuXmlDOM/core/makeNode.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlSax/attributes.h"

namespace {

/// Calls `visit` with the name and the value of each attribute.
template <class Visit> void forEachAttribute(host::IBufferedAttributes& attributes, Visit&& visit) {
    // Those of the library's own readers can be had without calls.
    if (typeid(attributes) == typeid(TNuSAXAttributes)) [[likely]] {
        for (const TNuSAXAttribute& own : static_cast<TNuSAXAttributes&>(attributes).all()) {
            visit(own.qNameSpan(), own.valueSpan());
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
        visit(name, std::u16string_view(text, static_cast<std::size_t>(length)));
    }
}

} // namespace

TNuSaxToDomHandler::TNuSaxToDomHandler(TNuSAXXMLReader& reader, TNuDOMDocument& document,
                                       TNuDOMNode* parent)
    : TNuSAXHandlerOf(reader), document_(&document),
      current_(parent != nullptr ? parent : &document) {}

TNuSaxToDomHandler::~TNuSaxToDomHandler() { setLoading(false); }

void TNuSaxToDomHandler::setLoading(bool isLoading) noexcept { document_->isLoading_ = isLoading; }

template <class Operation> void TNuSaxToDomHandler::remember(Operation&& operation) {
    try {
        operation();
    } catch (...) {
        if (!failure_) {
            failure_ = std::current_exception();
        }
        throw;
    }
}

/// Puts a new node behind the children of the current node; frees it when it cannot stand there.
template <class Node> void TNuSaxToDomHandler::append(Node& node) {
    auto* element = nu::NodeAccess::as<TNuDOMElement>(current_);
    if (element != nullptr && nu::NodeAccess::extrasIfAny(*element) == nullptr) {
        // No list has to be told: this is how nearly all nodes come.
        nu::NodeAccess::appendLoaded(*element, node);
        return;
    }
    try {
        node._linkToParent(current_, rdpLast, nullptr);
    } catch (...) {
        nu::NodeAccess::destroy(node);
        throw;
    }
}

const nu::NodeName* TNuSaxToDomHandler::nameFor(std::u16string_view name, std::u16string_view uri) {
    if (name.empty()) {
        throw ENuDomSyntax(nu::cEmptyName);
    }
    const nu::NodeName* known = document_->names().get(name, uri);
    if (known->hasSpace) {
        throw ENuDomInvalidCharacter(nu::cInvalidName);
    }
    return known;
}

void TNuSaxToDomHandler::startDocument() { setLoading(true); }

void TNuSaxToDomHandler::endDocument() { setLoading(false); }

void TNuSaxToDomHandler::startElement(std::u16string_view uri, std::u16string_view /*localName*/,
                                      std::u16string_view qName,
                                      host::IBufferedAttributes& attributes) {
    remember([&] {
        // 1. The element, behind the children of the current one.
        const nu::NodeName* name = nameFor(qName, uri);
        auto& element = nu::NodeAccess::make<TNuDOMElement>(*document_, name);
        append(element);
        // 2. Its attributes, namespace declarations among them.
        const std::uint64_t number = document_->names().nextLoadedElement();
        forEachAttribute(attributes, [&](std::u16string_view attribute, std::u16string_view value) {
            addAttribute(element, number, attribute, value);
        });
        // 3. What follows goes below it.
        current_ = &element;
    });
}

/// The text of an attribute that is new, unless the element already got one of that name.
inline nu::StoredText& TNuSaxToDomHandler::attributeText(TNuDOMElement& element,
                                                         std::uint64_t elementNumber,
                                                         std::u16string_view name) {
    const nu::NodeName* known = nameFor(name, {});
    if (known->loadedElement != elementNumber) {
        auto& attribute = nu::NodeAccess::make<TNuDOMAttribute>(*document_, known);
        nu::NodeAccess::appendLoaded(element, attribute);
        known->loadedElement = elementNumber;
        known->loadedAttribute = &attribute;
    }
    return nu::NodeAccess::stored(*known->loadedAttribute);
}

void TNuSaxToDomHandler::addAttribute(TNuDOMElement& element, std::uint64_t elementNumber,
                                      std::u16string_view name, std::u16string_view value) {
    // 1. The value: references in it are replaced, and what is kept is escaped again. For most
    //    values both change nothing.
    if (!nu::isPlainText(value)) [[unlikely]] {
        const NuXmlString replaced = NuXMLToStr(value);
        nu::StoredText& text = attributeText(element, elementNumber, name);
        nu::assignEscaped(text, document_->memory(), replaced);
        return;
    }
    attributeText(element, elementNumber, name).assign(document_->memory(), value);
}

void TNuSaxToDomHandler::endElement(std::u16string_view /*uri*/, std::u16string_view /*localName*/,
                                    std::u16string_view /*qName*/) {
    TNuDOMNode* parent = current_->get_parentNode();
    current_ = parent != nullptr ? parent : document_.get();
}

void TNuSaxToDomHandler::characters(std::u16string_view text) {
    if (text.empty()) {
        return;
    }
    remember([&] {
        if (isInCData_) {
            nu::NodeAccess::cast<TNuDOMElement>(*current_).AddCDATA(text);
            return;
        }
        auto& node = nu::NodeAccess::make<TNuDOMText>(*document_, document_->names().nameless());
        nu::NodeAccess::stored(node).assign(document_->memory(), text);
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
        const nu::NodeName* name = nameFor(target, {});
        auto& instruction = nu::NodeAccess::make<TNuDOMProcessingInstruction>(*document_, name);
        nu::NodeAccess::text(instruction)->assign(document_->memory(), data);
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

void TNuSaxToDomHandler::setDocumentLocator(host::ILocator& /*locator*/) {}
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
