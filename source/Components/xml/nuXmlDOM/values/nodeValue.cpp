#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/numberText.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlParser.h"
#include "nuXmlParser/conversionErrors.h"

// The values of nodes as the types of C++, and their texts in UTF-8.

namespace {

using nu::NodeText;

/// The text of a leaf, as it is meant. Most need not be decoded or unescaped.
void appendUtf8(const TNuDOMNode& leaf, std::string& target) {
    const nu::StoredText& stored = *NodeText::storedIfAny(leaf);
    if (stored.isWide() || stored.contains(cNuAmp)) {
        NuXmlString text;
        NodeText::appendValue(leaf, text);
        target += NuToUtf8(text);
    } else {
        target += stored.bytes();
    }
}

/// What `convert` makes of the text of the node; what it throws gets the place of the node.
template <class Convert> auto convertText(const TNuDOMNode& node, Convert&& convert) {
    const auto text = node.Get<NuXmlString>();
    try {
        return convert(text);
    } catch (const host::EConvertError& error) {
        const bool isAttribute = node.get_nodeType() == host::ATTRIBUTE_NODE;
        const TNuDOMNode* owner = isAttribute ? node.get_parentNode() : &node;
        NuXmlString place = owner != nullptr ? owner->NodePath(false) : NuXmlString();
        if (isAttribute) {
            place.append(u"/@").append(node.get_nodeName());
        }
        throw host::EConvertError(host::formatMessage(
            nu::messages::valueAt, {std::u16string_view(error.Message()), place}));
    }
}

template <class Number>
Number convertInteger(const TNuDOMNode& node, Number least, Number largest) {
    return convertText(node, [&](const NuXmlString& text) {
        std::optional<Number> number = host::parseInteger<Number>(host::trimmed(text));
        if (number && (*number < least || *number > largest)) {
            number.reset();
        }
        return nu::valueOrFail(number, nu::messages::noInteger, text);
    });
}

/// The last step of a path if it asks for an attribute and nothing else; empty for any other.
std::u16string_view attributeStep(std::u16string_view path) {
    const std::size_t slash = path.rfind(cNuSlash);
    const std::u16string_view step = slash == path.npos ? path : path.substr(slash + 1);
    const bool isAttribute =
        step.size() > 1 && step.front() == u'@' && step.find_first_of(u"*[]'\" |") == step.npos;
    return isAttribute ? step : std::u16string_view();
}

} // namespace

std::string TNuDOMNode::Name() const { return NuToUtf8(get_nodeName()); }

std::string TNuDOMNode::Text() const {
    std::string text;
    if (NodeText::storedIfAny(*this) != nullptr) {
        appendUtf8(*this, text);
    } else if (nodeType_ == host::ELEMENT_NODE) {
        const auto& element = static_cast<const TNuDOMElement&>(*this);
        for (const TNuDOMText& part : TNuDOMRange<const TNuDOMText>(element.FirstChild())) {
            appendUtf8(part, text);
        }
    }
    return text;
}

NuXmlString TNuDOMNode::readText() const { return get_nodeValue(); }

void TNuDOMNode::read(bool& value) const { value = convertText(*this, NuXMLToBool); }

void TNuDOMNode::read(double& value) const { value = convertText(*this, NuXMLToDouble); }

void TNuDOMNode::read(host::TDateTime& value) const { value = convertText(*this, NuXMLToDateTime); }

std::int64_t TNuDOMNode::readInteger(std::int64_t least, std::int64_t largest) const {
    return convertInteger(*this, least, largest);
}

std::uint64_t TNuDOMNode::readUnsigned(std::uint64_t largest) const {
    return convertInteger<std::uint64_t>(*this, 0, largest);
}

std::string TNuDOMNode::Get(const TNuText& path, const char* fallback) const {
    return Get<std::string>(path, fallback);
}

NuXmlString TNuDOMNode::Get(const TNuText& path, const NuXmlChar* fallback) const {
    return Get<NuXmlString>(path, fallback);
}

void TNuDOMNode::writeValue(std::u16string_view value) { set_nodeValue(value); }

void TNuDOMNode::Set(const TNuText& path, const TNuValue& value) {
    // 1. What is there.
    if (TNuDOMNode* found = first(path, {}, false)) {
        found->writeValue(value);
        return;
    }
    // 2. An element that is missing, or an attribute of one that may be.
    const std::u16string_view step = attributeStep(path);
    if (step.empty()) {
        Make(path).writeValue(value);
        return;
    }
    std::u16string_view owner = path.view().substr(0, path.view().size() - step.size());
    if (!owner.empty()) {
        owner.remove_suffix(1);
    }
    TNuDOMNode& element = owner.empty() ? *this : Make(owner);
    nu::cast<TNuDOMElement>(element).setAttribute(step.substr(1), value.view());
}

std::string TNuDOMElement::AttributeByName(const TNuUtf8Text& name, TNuDOMSelectOptions options) {
    return NuToUtf8(AttributeByName(name.view(), options));
}

std::string TNuDOMElement::getAttribute(const TNuUtf8Text& name) const {
    const TNuDOMAttribute* attribute = getAttributeNode(name.view());
    return attribute != nullptr ? attribute->Text() : std::string();
}

std::string TNuDOMDocument::GetProcessingInstruction(const TNuUtf8Text& target) const {
    return NuToUtf8(GetProcessingInstruction(target.view()));
}
