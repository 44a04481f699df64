#include "nuObj2Xml/objectEvents.h"

#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuObj2Xml/instanceAttributes.h"
#include "nuObj2Xml/messages.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/unescape.h"

namespace nu {

namespace {

int certaintyOfAttribute(const TNuSAXAttribute& attribute) {
    const std::u16string_view prefix = attribute.prefixSpan();
    PNuXmlChar uri = nullptr;
    host::SAXLength length = 0;
    if (!prefix.empty()) {
        attribute.GetURI(uri, length);
    }
    return certaintyOf(prefix, {uri, static_cast<std::size_t>(length)});
}

} // namespace

/// The element of an object as a tree, while it comes.
struct ObjectEvents::Tree {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    host::Ref<TNuSaxToDomHandler> handler;
    std::size_t openElements; ///< of the builder, with the object's own
};

ObjectEvents::ObjectEvents(TNuDeserializeOptions options, bool hasPlaces)
    : builder_(options), options_(options), hasPlaces_(hasPlaces) {}
ObjectEvents::~ObjectEvents() = default;

void ObjectEvents::attach(TNuSAXXMLReader& reader) {
    reader_ = &reader;
    // The reader's handles count; this object stays its owner's.
    _AddRef();
    reader.SetLimits(options_.Limits);
    if (!options_.has(dsUnchecked)) {
        // The text is read as XML means it; what is no XML goes on to the reader, which forgives
        // much, unless somebody wants it strict. Prefixes need no declaration in a fragment.
        TNuConformingOptions conforming;
        conforming.whiteSpace = cwAll;
        conforming.onFault = options_.has(dsStrict) ? cfStop : cfPassOn;
        conforming.namespaces = false;
        reader.SetConforming(conforming);
    }
    // Only the events count what limits are about.
    if (options_.Limits == TNuSaxLimits()) {
        reader.setDirectContent(&direct_.emplace(*this, builder_));
    }
    reader.setContentHandler(this);
    reader.setLexicalHandler(this);
    reader.setErrorHandler(this);
}

void ObjectEvents::fail() {
    builder_.abandon();
    trees_.clear();
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    try {
        throw;
    } catch (const ENuSaxHandledAbort&) {
        // All that is left of what the reader does not know, but for what it told before.
        if (!fault_.empty()) {
            throw host::Exception(fault_);
        }
        throw;
    }
}

void ObjectEvents::finish() {
    if (!fault_.empty()) {
        builder_.abandon();
        throw host::Exception(fault_);
    }
    if (builder_.isOpen()) {
        const NuXmlString path = builder_.path();
        builder_.abandon();
        throw host::Exception(host::formatMessage(messages::endsInside, {path}));
    }
}

template <class Operation> void ObjectEvents::tellTrees(Operation operation) {
    for (const auto& tree : trees_) {
        operation(*tree->handler);
    }
}

void ObjectEvents::setDocumentLocator(host::ILocator& locator) {
    if (hasPlaces_) {
        builder_.setLocator(&locator);
    }
}

// Elements

/// Inside of an object, or perhaps an object.
void ObjectEvents::begin(const StartedElement& element) {
    if (builder_.isOpen()) {
        builder_.startElement(element);
        return;
    }
    const Target target = open(element, ++depth_);
    if (target.object) {
        object_ = target.object;
        builder_.begin(target.object, target.serializer, target.isNew, element);
    }
}

void ObjectEvents::end(TNuDOMElement* tree) {
    if (builder_.isOpen()) {
        builder_.endElement(tree);
        if (builder_.isOpen()) {
            return;
        }
        close(std::exchange(object_, {}));
    }
    // Ends that nobody began are reported too.
    if (depth_ > 0) {
        closeOutside(depth_--);
    }
}

/// What the attributes say of type and value. The list is that of the reader, which is ours.
StartedElement ObjectEvents::startOf(std::u16string_view localName,
                                     host::IBufferedAttributes& attributes) {
    // A name that begins with a colon, as an empty prefix leaves it, has none for the reader.
    StartedElement element{localName.substr(localName.rfind(cNuColon) + 1), {}, false};
    int typeCertainty = 0;
    int nilCertainty = 0;
    for (const TNuSAXAttribute& attribute : static_cast<TNuSAXAttributes&>(attributes).all()) {
        const std::u16string_view name = attribute.localNameSpan();
        if (name == u"type") {
            const int sure = certaintyOfAttribute(attribute);
            if (sure > typeCertainty) {
                typeCertainty = sure;
                element.className = attribute.valueSpan();
            }
        } else if (name == u"nil") {
            const int sure = certaintyOfAttribute(attribute);
            if (sure > nilCertainty) {
                nilCertainty = sure;
                element.isNil = meansNil(attribute.valueSpan());
            }
        }
    }
    const char16_t* const classEnd = element.className.data() + element.className.size();
    if (findOneOf<cNuAmpA, cNuColonA>(element.className.data(), classEnd) != classEnd) {
        if (element.className.find(cNuAmp) != element.className.npos) {
            className_ = NuXMLToStr(element.className);
            element.className = className_;
        }
        element.className.remove_prefix(element.className.find(cNuColon) + 1);
    }
    return element;
}

void ObjectEvents::startElement(std::u16string_view uri, std::u16string_view localName,
                                std::u16string_view qName, host::IBufferedAttributes& attributes) {
    guarded([&] {
        if (!std::exchange(hasBegun_, false)) {
            begin(startOf(localName, attributes));
        }
        if (builder_.wantsTree()) {
            startTree();
        }
        tellTrees([&](TNuSaxToDomHandler& handler) {
            handler.startElement(uri, localName, qName, attributes);
        });
    });
}

void ObjectEvents::endElement(std::u16string_view uri, std::u16string_view localName,
                              std::u16string_view qName) {
    guarded([&] {
        tellTrees([&](TNuSaxToDomHandler& handler) { handler.endElement(uri, localName, qName); });
        const std::unique_ptr<Tree> whole = endTree();
        end(whole ? whole->document->get_documentElement() : nullptr);
    });
}

/// A serializer wants to see the element that began last as a tree. All of it comes as events then.
void ObjectEvents::startTree() {
    auto tree = std::make_unique<Tree>();
    tree->handler = host::makeRef<TNuSaxToDomHandler>(*reader_, *tree->document);
    tree->openElements = builder_.openElements();
    tree->handler->startDocument();
    trees_.push_back(std::move(tree));
    reader_->setDirectContent(nullptr);
}

/// The tree of the element that ends, if there is one.
std::unique_ptr<ObjectEvents::Tree> ObjectEvents::endTree() {
    if (trees_.empty() || trees_.back()->openElements != builder_.openElements()) {
        return nullptr;
    }
    std::unique_ptr<Tree> tree = std::move(trees_.back());
    trees_.pop_back();
    tree->handler->endDocument();
    if (trees_.empty() && direct_) {
        reader_->setDirectContent(&*direct_);
    }
    return tree;
}

void ObjectEvents::closeOutside(std::size_t /*depth*/) {}

void ObjectEvents::characters(std::u16string_view text) {
    if (builder_.isOpen()) {
        guarded([&] {
            builder_.characters(text, isInCData_);
            tellTrees([&](TNuSaxToDomHandler& handler) { handler.characters(text); });
        });
    }
}

void ObjectEvents::fatalError(host::ISAXParseError& error) {
    fault_ = error.getMessage();
    if (hasPlaces_ && error.getLineNumber() > 0) {
        fault_ +=
            host::formatMessage(messages::atLine, {error.getLineNumber(), error.getColumnNumber()});
    }
}

void ObjectEvents::comment(std::u16string_view text) {
    guarded([&] { tellTrees([&](TNuSaxToDomHandler& handler) { handler.comment(text); }); });
}

void ObjectEvents::processingInstruction(std::u16string_view target, std::u16string_view data) {
    guarded([&] {
        tellTrees(
            [&](TNuSaxToDomHandler& handler) { handler.processingInstruction(target, data); });
    });
}

void ObjectEvents::startCDATA() {
    isInCData_ = true;
    guarded([&] { tellTrees([](TNuSaxToDomHandler& handler) { handler.startCDATA(); }); });
}

void ObjectEvents::endCDATA() {
    isInCData_ = false;
    guarded([&] { tellTrees([](TNuSaxToDomHandler& handler) { handler.endCDATA(); }); });
}

} // namespace nu
