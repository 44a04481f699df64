#include "common/memoryStream.h"
#include "nuXmlDOM.h"
#include "peers/peer.h"
#include "trees/tree.h"

namespace bench {

namespace {

class NuxmlTree final : public Tree {
public:
    explicit NuxmlTree(std::string_view text) : document_(TNuDOMDocument::Create()) {
        host::TMemoryViewStream stream(text);
        document_->LoadFromStream(stream);
    }

    [[nodiscard]] std::size_t nodeCount() const override {
        std::size_t count = document_->get_childNodes().Count() - 1;
        const TNuDOMNode* const root = document_->GetRootNode();
        for (const TNuDOMNode* node = root; node != nullptr;
             node = nextInTree(
                 node, root, [](auto* parent) { return firstChild(*parent); },
                 [](auto* sibling) -> const TNuDOMNode* { return nu::NodeLinks::next(*sibling); },
                 [](auto* child) -> const TNuDOMNode* { return child->get_parentNode(); })) {
            ++count;
            if (const auto* element = asElement(*node)) {
                for ([[maybe_unused]] const TNuDOMAttribute& attribute : element->Attributes()) {
                    ++count;
                }
            }
        }
        return count;
    }

    [[nodiscard]] std::size_t write(bool formatted) const override {
        TNuMemoryStream stream;
        document_->SaveToStream(stream, formatted, false);
        return static_cast<std::size_t>(stream.GetSize());
    }

private:
    static const TNuDOMElement* asElement(const TNuDOMNode& node) {
        return node.get_nodeType() == host::ELEMENT_NODE ? static_cast<const TNuDOMElement*>(&node)
                                                         : nullptr;
    }
    static const TNuDOMNode* firstChild(const TNuDOMNode& node) {
        const TNuDOMElement* element = asElement(node);
        return element != nullptr ? element->get_firstChild() : nullptr;
    }

    NuRef<TNuDOMDocument> document_;
};

const bool added = addTreeLibrary(
    {oursName, [](std::string_view text) { return std::make_unique<NuxmlTree>(text); }});

} // namespace

} // namespace bench
