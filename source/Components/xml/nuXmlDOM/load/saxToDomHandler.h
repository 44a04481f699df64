#pragma once

#include <cstdint>
#include <exception>
#include <string_view>
#include <unordered_map>

#include "host/sax/BSaxExt.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlSax/contentHandler.h"
#include "nuXmlSax/handler.h"

namespace nu {
class DirectLoader;
}

/// Builds a tree from what a reader reports. Set it as content handler and as lexical handler.
///
/// It has no rule of its own about white space: what the reader reports becomes text, one node for
/// each run. Its operations throw as those of the tree do; the first exception is kept, because a
/// reader turns it into an abort without a message.
class NUXML_API TNuSaxToDomHandler final
    : public TNuSAXHandlerOf<INuSaxContentHandler, host::IBufferedLexicalHandler> {
public:
    /// Builds into `document`, right below it or below `parent`, a node of it. The handler holds
    /// the document: a reader may keep its handlers longer than its user keeps a failed document.
    TNuSaxToDomHandler(TNuSAXXMLReader& reader, TNuDOMDocument& document,
                       TNuDOMNode* parent = nullptr);
    ~TNuSaxToDomHandler() override;

    /// What has left one of the operations first.
    [[nodiscard]] std::exception_ptr Failure() const noexcept { return failure_; }
    /// Where the reader stood at that, from 1; 0 before.
    [[nodiscard]] std::int64_t FailureLine() const noexcept { return failureLine_; }
    /// The column to FailureLine, as the reader counts it; 0 before.
    [[nodiscard]] std::int64_t FailureColumn() const noexcept { return failureColumn_; }
    /// What the next node goes below. An element of the input when a parse has ended tells that the
    /// input broke off inside it.
    [[nodiscard]] TNuDOMNode& Current() const noexcept { return *current_; }

    // INuSaxContentHandler
    void setDocumentLocator(host::ILocator& locator) override;
    void startDocument() override;
    void endDocument() override;
    void EndProlog() override;
    void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) override;
    void endPrefixMapping(std::u16string_view prefix) override;
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void ignorableWhitespace(std::u16string_view text) override;
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;
    void skippedEntity(std::u16string_view name) override;

    // host::IBufferedLexicalHandler
    void comment(std::u16string_view text) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(std::u16string_view name, std::u16string_view publicId,
                  std::u16string_view systemId) override;
    void endDTD() override;
    void startEntity(std::u16string_view name) override;
    void endEntity(std::u16string_view name) override;

private:
    friend class nu::DirectLoader;

    /// Keeps the first exception that leaves `operation`.
    template <class Operation> void remember(Operation&& operation) {
        try {
            operation();
        } catch (...) {
            if (!failure_) {
                failure_ = std::current_exception();
                failureLine_ = locator_ ? locator_->getLineNumber() : 0;
                failureColumn_ = locator_ ? locator_->getColumnNumber() : 0;
            }
            throw;
        }
    }
    NUXML_LOCAL void setLoading(bool isLoading) noexcept;
    NUXML_LOCAL void startAnew(TNuDOMNode& parent) noexcept;
    template <class Node> void append(Node& node);
    NUXML_LOCAL const nu::NameURI& uriOf(std::u16string_view uri, std::u16string_view qName);

    NuRef<TNuDOMDocument> document_;
    TNuDOMNode* current_;
    const nu::NodeName* before_; ///< of the element that started or ended last
    nu::NameFollower follower_ = nu::NameFollower::Child; ///< what comes behind it now
    const nu::NameURI* uri_; ///< of the last element whose URI is not a long one
    std::unordered_map<std::uint64_t, const nu::NameURI*> longURIs_; ///< by declaration
    bool isInCData_ = false;
    std::exception_ptr failure_;
    std::int64_t failureLine_ = 0;
    std::int64_t failureColumn_ = 0;
    host::Ref<host::ILocator> locator_; ///< of the parse that runs
};
