#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/sax/SaxHelpers.h"
#include "nuObj2Xml/directObjects.h"
#include "nuObj2Xml/objectBuilder.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax/reader.h"

namespace nu {

/// Reads objects out of what a reader reports. Which elements are objects says a class below, by
/// open; with each of their ends comes close. One builder serves all of them, one after the other.
class ObjectEvents : public host::TBufferedDefaultHandler {
public:
    /// \param hasPlaces whether errors are told with line and column, because the text comes from a
    ///                  stream or a file
    ObjectEvents(TNuDeserializeOptions options, bool hasPlaces);
    ~ObjectEvents() override;

    /// Lets `parse` make a reader read, with this as its handler. What an operation here threw
    /// leaves as it is, instead of the abort that the reader makes of it, and
    /// what else goes wrong, such as a stream that cannot be read, as host::Exception;
    /// ENuSaxHandledAbort ends the reading quietly. Throws host::Exception for a text that ends
    /// inside of an object.
    template <class Parse> void read(Parse&& parse) {
        TNuSAXXMLReader reader;
        attach(reader);
        try {
            parse(reader);
        } catch (...) {
            fail();
        }
        finish();
    }

    void setDocumentLocator(host::ILocator& locator) override;
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void comment(std::u16string_view text) override;
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;
    void startCDATA() override;
    void endCDATA() override;
    void fatalError(host::ISAXParseError& error) override;

protected:
    /// An object to read into, and what reads it.
    struct Target {
        host::Instance object;
        TNuSerializer* serializer = nullptr; ///< null for the registered one
        bool isNew = false;
    };
    /// Asked for every element outside of objects, which is the `depth`-th from the outermost on:
    /// the object that it is, or none.
    virtual Target open(const StartedElement& element, std::size_t depth) = 0;
    /// An object was read. Throw ENuSaxHandledAbort to read no more.
    virtual void close(host::Instance object) = 0;
    /// An element outside of objects ends; `depth` is what open was told.
    virtual void closeOutside(std::size_t depth);

private:
    friend class DirectObjects;
    struct Tree;

    void attach(TNuSAXXMLReader& reader);
    [[noreturn]] void fail();
    void finish();
    /// The reader makes an abort without a message of what it does not know, so it is kept.
    template <class Operation> void guarded(Operation operation) {
        try {
            operation();
        } catch (const ENuSaxHandledAbort&) {
            throw;
        } catch (...) {
            failure_ = std::current_exception();
            throw;
        }
    }
    void begin(const StartedElement& element);
    void end(TNuDOMElement* tree);
    [[nodiscard]] StartedElement startOf(std::u16string_view localName,
                                         host::IBufferedAttributes& attributes);
    void startTree();
    std::unique_ptr<Tree> endTree();
    template <class Operation> void tellTrees(Operation operation);

    ObjectBuilder builder_;
    TNuDeserializeOptions options_;
    TNuSAXXMLReader* reader_ = nullptr;
    std::optional<DirectObjects> direct_;
    bool hasPlaces_;
    bool isInCData_ = false;
    bool hasBegun_ = false; ///< the element that starts next has begun for the builder
    std::size_t depth_ = 0; ///< of elements outside of objects
    host::Instance object_;
    NuXmlString className_; ///< unescaped, where that is necessary
    std::vector<std::unique_ptr<Tree>> trees_;
    std::exception_ptr failure_;
    NuXmlString fault_; ///< what ended the reading, where the reader says so to nobody else
};

} // namespace nu
