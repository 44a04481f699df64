#include "outline.h"

#include <algorithm>

#include "attributeSpans.h"
#include "host/runtime/unicode.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlParser.h"

namespace tool {

namespace {

/// The clock is asked only once in so many elements, a power of two.
constexpr std::uint64_t elementsBetweenLooks = 4096;

} // namespace

void Examples::add(std::u16string_view text) {
    if (isFull() || (text = host::trimmed(text)).empty()) {
        return;
    }
    std::u16string example = NuXMLToStr(text.substr(0, 4 * longest));
    if (example.size() > longest) {
        // Not in the middle of a pair.
        const bool isPair = host::isHighSurrogate(example[longest - 2]);
        example.resize(longest - (isPair ? 2 : 1));
        example += u'…';
    }
    if (std::ranges::find(texts_, example) == texts_.end()) {
        texts_.push_back(std::move(example));
    }
}

void Outline::startElement(std::u16string_view /*uri*/, std::u16string_view /*localName*/,
                           std::u16string_view qName, host::IBufferedAttributes& attributes) {
    endText();
    attributeCount_ += static_cast<std::uint64_t>(attributes.getLength());
    greatestDepth_ = std::max(greatestDepth_, open_.size() + uncounted_ + 1);
    if (++elementCount_ % elementsBetweenLooks == 0 && progress_.isDue()) {
        progress_.show(title_ + ": " + std::to_string(elementCount_) + " elements");
    }
    const std::size_t index = uncounted_ > 0 ? mostNodes : enter(qName);
    if (index == mostNodes) {
        ++uncounted_;
        ++nodes_[open_.back()].hiddenChildren;
        return;
    }
    ++nodes_[index].count;
    addAttributes(nodes_[index], attributes);
    open_.push_back(index);
}

void Outline::endElement(std::u16string_view /*uri*/, std::u16string_view /*localName*/,
                         std::u16string_view /*qName*/) {
    endText();
    if (uncounted_ > 0) {
        --uncounted_;
    } else if (!open_.empty()) {
        open_.pop_back();
    }
}

void Outline::characters(std::u16string_view text) {
    if (!open_.empty() && uncounted_ == 0 && !nodes_[open_.back()].texts.isFull() &&
        text_.size() <= 4 * Examples::longest) {
        text_ += text.substr(0, 8 * Examples::longest);
    }
}

/// The node for an element below the innermost one; mostNodes where there is no room for more.
std::size_t Outline::enter(std::u16string_view qName) {
    if (open_.empty()) {
        if (nodes_.empty()) {
            nodes_.push_back({std::u16string(qName)});
        }
        return 0;
    }
    const std::size_t parent = open_.back();
    const auto found = nodes_[parent].childOf.find(qName);
    if (found != nodes_[parent].childOf.end()) {
        return found->second;
    }
    const std::size_t index = nodes_.size();
    if (index < mostNodes) {
        nodes_.push_back({std::u16string(qName), nodes_[parent].depth + 1});
        nodes_[parent].children.push_back(index);
        nodes_[parent].childOf.emplace(qName, index);
    }
    return index;
}

void Outline::endText() {
    if (!text_.empty() && !open_.empty()) {
        nodes_[open_.back()].texts.add(text_);
    }
    text_.clear();
}

void Outline::addAttributes(OutlineNode& node, host::IBufferedAttributes& attributes) {
    const host::SAXLength count = attributes.getLength();
    for (host::SAXLength index = 0; index < count; ++index) {
        const AttributeSpans attribute = spansOf(attributes, index);
        auto known =
            std::ranges::find(node.attributes, attribute.qName,
                              [](const auto& entry) -> std::u16string_view { return entry.name; });
        if (known == node.attributes.end()) {
            if (node.attributes.size() == mostAttributes) {
                continue;
            }
            node.attributes.push_back({std::u16string(attribute.qName)});
            known = node.attributes.end() - 1;
        }
        ++known->count;
        known->values.add(attribute.value);
    }
}

} // namespace tool
