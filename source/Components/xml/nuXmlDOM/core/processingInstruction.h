#pragma once

#include <string_view>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/storage/storedText.h"

/// A processing instruction: a target, which is the node's name, and data.
class NUXML_API TNuDOMProcessingInstruction final : public TNuDOMChildNode {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::PROCESSING_INSTRUCTION_NODE;

    [[nodiscard]] NuXmlString get_nodeValue() const override;
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;

    /// What stands behind "<?", which is also the name of the node.
    [[nodiscard]] NuXmlString get_target() const { return get_nodeName(); }
    /// What stands behind the target; nothing in it is escaped or resolved.
    [[nodiscard]] NuXmlString get_data() const { return get_nodeValue(); }
    /// Replaces the data as they are; "?>" in them is not looked for.
    void set_data(std::u16string_view data) { set_nodeValue(data); }
    /// The same in UTF-8.
    void set_data(const TNuUtf8Text& data) { set_data(data.view()); }
    /// The first quoted text behind the target's own name in the data.
    /// Deliberate: `name` is not consulted; the search is for the target.
    [[nodiscard]] NuXmlString getAttribute(std::u16string_view name) const;
    /// Sets a pair name="value" in the data; what follows the last pair is dropped, and each pair
    /// ends with a blank.
    void setAttribute(std::u16string_view name, std::u16string_view value);

private:
    using TNuDOMChildNode::TNuDOMChildNode;
    ~TNuDOMProcessingInstruction() = default;
    friend class nu::NodeText;

    nu::StoredText text_;
};
