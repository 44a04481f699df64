#include <stdexcept>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "trees/tree.h"

namespace bench {

namespace {

template <class Object> struct Releaser {
    void operator()(Object* object) const { object->release(); }
};
template <class Object> using Released = std::unique_ptr<Object, Releaser<Object>>;

class XercesTree final : public Tree {
public:
    explicit XercesTree(std::string_view text) {
        xercesc::XercesDOMParser parser;
        // The scanner that checks nothing but well-formedness is the fastest one.
        parser.useScanner(xercesc::XMLUni::fgWFXMLScanner);
        parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
        parser.setDoNamespaces(true);
        parser.setLoadExternalDTD(false);
        xercesc::HandlerBase handler;
        parser.setErrorHandler(&handler);
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                                text.size(), "input");
        parser.parse(source);
        document_.reset(parser.adoptDocument());
        if (document_ == nullptr) {
            throw std::runtime_error("Xerces-C++ cannot read the input");
        }
    }

    [[nodiscard]] std::size_t nodeCount() const override {
        std::size_t count = 0;
        const xercesc::DOMNode* const root = document_.get();
        for (const xercesc::DOMNode* node = root->getFirstChild(); node != nullptr;
             node = nextInTree(
                 node, root,
                 [](auto* parent) -> const xercesc::DOMNode* { return parent->getFirstChild(); },
                 [](auto* sibling) -> const xercesc::DOMNode* { return sibling->getNextSibling(); },
                 [](auto* child) -> const xercesc::DOMNode* { return child->getParentNode(); })) {
            const xercesc::DOMNamedNodeMap* attributes = node->getAttributes();
            count += 1 + (attributes != nullptr ? attributes->getLength() : 0);
        }
        return count;
    }

    [[nodiscard]] std::size_t write(bool formatted) const override {
        static const XMLCh features[] = {'L', 'S', 0};
        auto* implementation = static_cast<xercesc::DOMImplementationLS*>(
            xercesc::DOMImplementationRegistry::getDOMImplementation(features));
        const Released<xercesc::DOMLSSerializer> serializer(implementation->createLSSerializer());
        const Released<xercesc::DOMLSOutput> output(implementation->createLSOutput());
        serializer->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint,
                                                 formatted);
        xercesc::MemBufFormatTarget target;
        output->setByteStream(&target);
        output->setEncoding(xercesc::XMLUni::fgUTF8EncodingString);
        serializer->write(document_.get(), output.get());
        return target.getLen();
    }

private:
    Released<xercesc::DOMDocument> document_;
};

const bool added = addTreeLibrary({"xerces", [](std::string_view text) {
                                       static const bool isReady = [] {
                                           xercesc::XMLPlatformUtils::Initialize();
                                           return true;
                                       }();
                                       static_cast<void>(isReady);
                                       return std::make_unique<XercesTree>(text);
                                   }});

} // namespace

} // namespace bench
