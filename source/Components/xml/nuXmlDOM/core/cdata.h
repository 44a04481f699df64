#pragma once

#include <string_view>

#include "nuXmlDOM/core/text.h"

/// A CDATA section: a text that is kept and written as it is.
class NUXML_API TNuDOMCDATA final : public TNuDOMText {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::CDATA_SECTION_NODE;

    [[nodiscard]] NuXmlString get_nodeName() const override;
    /// Throws ENuDomInvalidCharacter when "]]>" or "<![" stands at an offset that 3 divides; the
    /// node is empty then.
    /// Deliberate: elsewhere they are not found; the check looks at three characters at a time.
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;
    /// Checks the whole as set_nodeValue does.
    void appendData(std::u16string_view text) override;

private:
    using TNuDOMText::TNuDOMText;
    ~TNuDOMCDATA() = default;
};
