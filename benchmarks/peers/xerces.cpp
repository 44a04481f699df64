#include <memory>
#include <stdexcept>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "peers/peer.h"

namespace bench {

namespace {

class Counter final : public xercesc::DefaultHandler {
public:
    Tally tally;

    void startElement(const XMLCh* const uri, const XMLCh* const localName,
                      const XMLCh* const qualifiedName,
                      const xercesc::Attributes& attributes) override {
        using xercesc::XMLString;
        ++tally.elements;
        tally.units += XMLString::stringLen(uri) + XMLString::stringLen(localName) +
                       XMLString::stringLen(qualifiedName);
        for (XMLSize_t index = 0; index < attributes.getLength(); ++index) {
            ++tally.attributes;
            tally.units += XMLString::stringLen(attributes.getLocalName(index)) +
                           XMLString::stringLen(attributes.getValue(index));
        }
    }

    void endElement(const XMLCh* const uri, const XMLCh* const localName,
                    const XMLCh* const qualifiedName) override {
        using xercesc::XMLString;
        tally.units += XMLString::stringLen(uri) + XMLString::stringLen(localName) +
                       XMLString::stringLen(qualifiedName);
    }

    void characters(const XMLCh* const, const XMLSize_t length) override { tally.units += length; }

    void fatalError(const xercesc::SAXParseException&) override {
        throw std::runtime_error("Xerces-C++ cannot read the input");
    }
};

Tally parse(std::string_view text) {
    const std::unique_ptr<xercesc::SAX2XMLReader> reader(
        xercesc::XMLReaderFactory::createXMLReader());
    // The scanner that checks nothing but well-formedness is the fastest one.
    reader->setProperty(xercesc::XMLUni::fgXercesScannerName,
                        const_cast<XMLCh*>(xercesc::XMLUni::fgWFXMLScanner));
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
    Counter counter;
    reader->setContentHandler(&counter);
    reader->setErrorHandler(&counter);
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                            text.size(), "input");
    reader->parse(source);
    return counter.tally;
}

const bool registered = addReader({"xerces",
                                   [](std::string_view text) -> Run {
                                       xercesc::XMLPlatformUtils::Initialize();
                                       return [text] { return parse(text); };
                                   },
                                   {}});

} // namespace

} // namespace bench
