#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/upkeep/treeWalk.h"
#include "nuXmlDOM/values/preserveSpace.h"
#include "nuXmlDOM/write/output.h"
#include "nuXmlDOM/write/pageCharacters.h"

namespace nu {

/// Says what every kind of node writes, as UTF-16 (char16_t) or UTF-8 (char), or as bytes of a code
/// page (char, with characters that say so).
///
/// A formatted text has elements, comments, CDATA sections and instructions on lines of their own,
/// each indented by its depth, except inside elements that preserve space. Text is written as it
/// is. Characters that keep the content (ExactCharacters) also keep elements that hold text free of
/// line breaks.
template <class Unit, class Characters = AllCharacters> class NodeWriter {
public:
    /// \param document  the document of all nodes to write
    /// \param baseLevel the depth that is not indented
    /// \param width     the blanks of each level
    NodeWriter(Output<Unit>& output, TNuDOMDocument& document, bool formatted,
               std::int64_t baseLevel, std::uint8_t width, Characters characters = {})
        : out_(output), characters_(std::move(characters)), isFormatted_(formatted),
          baseLevel_(baseLevel), width_(width),
          spaceName_(formatted ? findSpaceName(document) : nullptr) {}

    /// The prolog, then the document element.
    void writeDocument(const TNuDOMDocument& document) {
        for (const TNuDOMNode* node = childrenOf(document)->first(); node != nullptr;
             node = NodeLinks::next(*node)) {
            writeLeaf(*node);
        }
        if (const TNuDOMElement* root = document.GetRootNode()) {
            writeElement(*root, 0, false);
        }
    }

    /// An element with everything below it.
    /// \param depth     the number of elements around it
    /// \param preserves whether the elements around it preserve space
    void writeElement(const TNuDOMElement& root, std::int64_t depth, bool preserves) {
        level_ = depth - baseLevel_;
        preserves_ = preserves;
        const TNuDOMNode* node = &root;
        for (;;) {
            // 1. The node, and down to its children.
            if (node->get_nodeType() != host::ELEMENT_NODE) {
                writeLeaf(*node);
            } else {
                const auto& element = static_cast<const TNuDOMElement&>(*node);
                if (const TNuDOMNode* child = openElement(element)) {
                    node = child;
                    continue;
                }
            }
            // 2. On, after the end of each element that has no more children.
            while (node != &root && NodeLinks::next(*node) == nullptr) {
                node = NodeLinks::parent(*node);
                closeElement(static_cast<const TNuDOMElement&>(*node));
            }
            if (node == &root) {
                return;
            }
            node = NodeLinks::next(*node);
        }
    }

    /// A node that cannot have children and is written by itself.
    /// \param depth     the number of elements around it
    /// \param preserves whether these preserve space
    void writeSingle(const TNuDOMNode& node, std::int64_t depth, bool preserves) {
        // What stands in no element is not indented, whatever the base level.
        level_ = depth > 0 ? depth - baseLevel_ : 0;
        preserves_ = preserves;
        writeLeaf(node);
    }

private:
    /// Writes the start of an element; gives its first child, null when that was all.
    const TNuDOMNode* openElement(const TNuDOMElement& element) {
        // 1. What the element says about space is about what is inside of it, not about text beside
        // it.
        const bool isInText = preserves_ && characters_.keepsContent();
        if (spaceName_ != nullptr) {
            enterSpace(element);
        }
        // 2. The tag, on a line of its own where that changes nothing.
        const auto& name = characters_.name(NodeContext::name(element));
        if (isBroken() && !isInText) {
            if (out_.breaksBeforeElement()) {
                out_.put("\r\n", indentation(level_), "<", name);
            } else {
                out_.put(indentation(level_), "<", name);
            }
        } else {
            out_.put("<", name);
        }
        for (const TNuDOMAttribute& attribute : element.Attributes()) {
            writeAttribute(attribute);
        }
        // 3. Its end, or what is inside of it.
        const TNuDOMNode* child = element.get_firstChild();
        if (child == nullptr) {
            out_.put("/>");
            leaveElement(element);
        } else {
            out_.put(">");
            ++level_;
            hasElements_ = false;
            if (isBroken() && characters_.keepsContent() && !holdsElementsOnly(*child)) {
                outerSpaces_.push_back({&element, preserves_});
                preserves_ = true;
            }
        }
        return child;
    }

    void closeElement(const TNuDOMElement& element) {
        --level_;
        const auto& name = characters_.name(NodeContext::name(element));
        if (hasElements_ && isBroken()) {
            out_.put("\r\n", indentation(level_), "</", name, ">");
        } else {
            out_.put("</", name, ">");
        }
        leaveElement(element);
    }

    void writeAttribute(const TNuDOMAttribute& attribute) {
        const auto& name = characters_.name(NodeContext::name(attribute));
        const StoredText& value = NodeText::stored(attribute);
        if (value.isNarrow()) [[likely]] {
            out_.put(" ", name, "=\"", characters_.value(value.bytes()), "\"");
        } else {
            out_.put(" ", name, "=\"", characters_.value(value), "\"");
        }
    }

    void writeLeaf(const TNuDOMNode& node) {
        switch (node.get_nodeType()) {
        case host::ATTRIBUTE_NODE:
            return writeAttribute(static_cast<const TNuDOMAttribute&>(node));
        case host::TEXT_NODE:
            return out_.putText(
                characters_.text(NodeText::stored(static_cast<const TNuDOMText&>(node))));
        case host::CDATA_SECTION_NODE:
            return writeCData(static_cast<const TNuDOMCDATA&>(node));
        case host::COMMENT_NODE:
            return writeComment(static_cast<const TNuDOMComment&>(node));
        default:
            return writeInstruction(static_cast<const TNuDOMProcessingInstruction&>(node));
        }
    }

    void writeCData(const TNuDOMCDATA& section) {
        const auto& text = characters_.section(NodeText::stored(section));
        if (isBroken()) {
            out_.put("\r\n", indentation(level_), "<![CDATA[", text, "]]>\r\n",
                     indentation(level_ - 1));
        } else {
            out_.put("<![CDATA[", text, "]]>");
        }
    }

    void writeComment(const TNuDOMComment& comment) {
        // Deliberate: a formatted comment begins a line even first of all and inside elements that
        // preserve space; only its indentation depends on them.
        if (breaksLeaves()) {
            out_.put("\r\n", indentation(preserves_ ? 0 : level_));
        }
        out_.put("<!--", characters_.comment(NodeText::stored(comment)), "-->");
    }

    void writeInstruction(const TNuDOMProcessingInstruction& instruction) {
        // Deliberate: the same here, once the stream holds a few bytes.
        if (breaksLeaves() && out_.breaksBeforeInstruction()) {
            out_.put("\r\n", indentation(preserves_ ? 0 : level_));
        }
        out_.put("<?", characters_.name(NodeContext::name(instruction)), " ",
                 characters_.instruction(NodeText::stored(instruction)), "?>");
    }

    [[nodiscard]] Indentation indentation(std::int64_t level) const noexcept {
        return {level, width_};
    }

    /// Whether what is written now stands on a line of its own.
    [[nodiscard]] bool isBroken() const noexcept { return isFormatted_ && !preserves_; }

    /// Whether comments and instructions stand on lines of their own.
    [[nodiscard]] bool breaksLeaves() const noexcept {
        return isFormatted_ && !(preserves_ && characters_.keepsContent());
    }

    /// Whether line breaks between children from `first` on are no content: there is an element
    /// among them and no text.
    static bool holdsElementsOnly(const TNuDOMNode& first) noexcept {
        bool holdsElement = false;
        for (const TNuDOMNode* node = &first; node != nullptr; node = NodeLinks::next(*node)) {
            const auto type = node->get_nodeType();
            if (type == host::TEXT_NODE || type == host::CDATA_SECTION_NODE) {
                return false;
            }
            holdsElement = holdsElement || type == host::ELEMENT_NODE;
        }
        return holdsElement;
    }

    /// From here on what the element itself says about space counts.
    void enterSpace(const TNuDOMElement& element) {
        if (const TNuDOMAttribute* attribute = findSpaceAttribute(element, *spaceName_)) {
            outerSpaces_.push_back({&element, preserves_});
            preserves_ = saysPreserve(*attribute);
        }
    }

    void leaveElement(const TNuDOMElement& element) {
        hasElements_ = true;
        while (!outerSpaces_.empty() && outerSpaces_.back().element == &element) {
            preserves_ = outerSpaces_.back().preserves;
            outerSpaces_.pop_back();
        }
    }

    /// What counted around an element that says something about space, or holds text.
    struct OuterSpace {
        const TNuDOMElement* element;
        bool preserves;
    };

    Output<Unit>& out_;
    [[no_unique_address]] Characters characters_;
    bool isFormatted_;
    std::int64_t baseLevel_;
    std::uint8_t width_;
    /// The name xml:space when the text is formatted and any node has that name.
    const NodeName* spaceName_;

    /// How far the nodes at this place are indented.
    std::int64_t level_ = 0;
    /// Whether space is preserved at this place.
    bool preserves_ = false;
    /// Whether there was an element among the children so far.
    bool hasElements_ = false;
    std::vector<OuterSpace> outerSpaces_;
};

} // namespace nu
