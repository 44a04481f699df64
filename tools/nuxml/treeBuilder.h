#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "documentHandler.h"
#include "nuXmlDOM.h"
#include "progress.h"

namespace tool {

/// Where a tree does not keep the order of its document: what stands right below it.
struct TopLevelOrder {
    std::size_t beforeDocumentType = 0; ///< instructions and comments
    std::size_t beforeRoot = 0;         ///< the same, those before the document type included
    bool hasDocumentType = false;
};

/// Hands everything on to what builds a tree, and sees where it stood.
class TreeBuilder final : public DocumentHandler<> {
public:
    /// \param name that of the document, for progress
    TreeBuilder(TNuSAXXMLReader& reader, TNuDOMDocument& document, std::string_view name,
                Progress& progress)
        : tree_(host::makeRef<TNuSaxToDomHandler>(reader, document)), name_(name),
          progress_(progress) {}

    [[nodiscard]] const TNuSaxToDomHandler& tree() const noexcept { return *tree_; }
    [[nodiscard]] const TopLevelOrder& order() const noexcept { return order_; }

    void setDocumentLocator(host::ILocator& locator) override {
        locator_ = &locator;
        tree_->setDocumentLocator(locator);
    }
    void startDocument() override { tree_->startDocument(); }
    void endDocument() override { tree_->endDocument(); }
    void EndProlog() override { tree_->EndProlog(); }
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;
    void comment(std::u16string_view text) override;
    void startCDATA() override { tree_->startCDATA(); }
    void endCDATA() override { tree_->endCDATA(); }
    void startDTD(std::u16string_view name, std::u16string_view publicId,
                  std::u16string_view systemId) override;

private:
    void noteTopLevel() noexcept;
    void showProgress();

    host::Ref<TNuSaxToDomHandler> tree_;
    host::Ref<host::ILocator> locator_;
    std::string_view name_;
    Progress& progress_;
    std::uint64_t elementCount_ = 0;
    TopLevelOrder order_;
    std::size_t depth_ = 0;
    bool hasRoot_ = false;
    std::u16string blanks_;
};

} // namespace tool
