#include "nuObj2Xml/objectEvents.h"

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuObj2Xml/messages.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/unescape.h"

namespace nu {

namespace {

constexpr std::u16string_view instanceURI = u"http://www.w3.org/2001/XMLSchema-instance";

/// How surely an attribute is the one that XML Schema means: in its namespace, by its usual
/// prefix, which need not be declared in a fragment, or by its name alone.
int certainty(const TNuSAXAttribute& attribute) {
    const std::u16string_view prefix = attribute.prefixSpan();
    if (prefix.empty()) {
        return 1;
    }
    PNuXmlChar uri = nullptr;
    host::SAXLength length = 0;
    attribute.GetURI(uri, length);
    if (length > 0 && std::u16string_view(uri, static_cast<std::size_t>(length)) == instanceURI) {
        return 3;
    }
    return prefix == u"xsi" ? 2 : 0;
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
    if (!options_.has(dsUnchecked)) {
        // The text is read as XML means it; what is no XML goes on to the reader, which forgives
        // much, unless somebody wants it strict. Prefixes need no declaration in a fragment.
        TNuConformingOptions conforming;
        conforming.whiteSpace = cwAll;
        conforming.onFault = options_.has(dsStrict) ? cfStop : cfPassOn;
        conforming.namespaces = false;
        reader.SetConforming(conforming);
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

/// The reader makes an abort without a message of what it does not know, so it is kept.
template <class Operation> void ObjectEvents::guarded(Operation operation) {
    try {
        operation();
    } catch (const ENuSaxHandledAbort&) {
        throw;
    } catch (...) {
        failure_ = std::current_exception();
        throw;
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

void ObjectEvents::startElement(std::u16string_view uri, std::u16string_view localName,
                                std::u16string_view qName, host::IBufferedAttributes& attributes) {
    guarded([&] {
        // 1. What the attributes say of type and value. The list is that of the reader, which is
        // ours.
        // A name that begins with a colon, as an empty prefix leaves it, has none for the reader.
        ElementStart element{localName.substr(localName.rfind(cNuColon) + 1), {}, false};
        int typeCertainty = 0;
        int nilCertainty = 0;
        for (const TNuSAXAttribute& attribute : static_cast<TNuSAXAttributes&>(attributes).all()) {
            const std::u16string_view name = attribute.localNameSpan();
            if (name == u"type") {
                const int sure = certainty(attribute);
                if (sure > typeCertainty) {
                    typeCertainty = sure;
                    element.className = attribute.valueSpan();
                }
            } else if (name == u"nil") {
                const int sure = certainty(attribute);
                if (sure > nilCertainty) {
                    nilCertainty = sure;
                    element.isNil = NuEqualAsciiWord(attribute.valueSpan(), u"true") ||
                                    attribute.valueSpan() == u"1";
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

        // 2. Inside of an object, or perhaps an object.
        if (builder_.isOpen()) {
            builder_.startElement(element);
        } else {
            const Target target = open(element, ++depth_);
            if (!target.object) {
                return;
            }
            object_ = target.object;
            builder_.begin(target.object, target.serializer, target.isNew, element);
        }

        // 3. A serializer may want to see it as a tree.
        if (builder_.wantsTree()) {
            auto tree = std::make_unique<Tree>();
            tree->handler = host::makeRef<TNuSaxToDomHandler>(*reader_, *tree->document);
            tree->openElements = builder_.openElements();
            tree->handler->startDocument();
            trees_.push_back(std::move(tree));
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
        if (!builder_.isOpen()) {
            // Ends that nobody began are reported too.
            if (depth_ > 0) {
                closeOutside(depth_--);
            }
            return;
        }
        std::unique_ptr<Tree> whole;
        if (!trees_.empty() && trees_.back()->openElements == builder_.openElements()) {
            whole = std::move(trees_.back());
            trees_.pop_back();
            whole->handler->endDocument();
        }
        builder_.endElement(whole ? whole->document->get_documentElement() : nullptr);
        if (!builder_.isOpen()) {
            close(std::exchange(object_, {}));
            closeOutside(depth_--);
        }
    });
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
