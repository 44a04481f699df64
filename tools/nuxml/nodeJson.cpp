#include "nodeJson.h"

#include <algorithm>
#include <set>

#include "jsonText.h"

namespace tool {

namespace {

using Place = TNuDOMRange<TNuDOMNode>::Iterator;

bool isElement(const TNuDOMNode& node) noexcept {
    return node.get_nodeType() == host::ELEMENT_NODE;
}

bool isText(const TNuDOMNode& node) noexcept {
    const auto type = node.get_nodeType();
    return type == host::TEXT_NODE || type == host::CDATA_SECTION_NODE;
}

bool isDeclaration(const TNuDOMNode& node) {
    return node.get_nodeType() == host::PROCESSING_INSTRUCTION_NODE &&
           node.get_nodeName() == u"xml";
}

} // namespace

void JsonWriter::write(TNuDOMNode& node) {
    if (isElement(node)) {
        writeElement(static_cast<TNuDOMElement&>(node));
    } else if (node.get_nodeType() == host::DOCUMENT_NODE) {
        writeDocument(static_cast<TNuDOMDocument&>(node), 0);
    } else {
        writeText(node.get_nodeValue());
    }
}

void JsonWriter::writeDocument(TNuDOMDocument& document, std::size_t beforeRoot) {
    // 1. What stands beside the document element, which comes last in the list.
    std::vector<TNuDOMNode*> nodes;
    bool isAlone = true;
    for (TNuDOMNode* node : document.get_childNodes()) {
        if (isKept(*node) && !isDeclaration(*node)) {
            isAlone = isAlone && isElement(*node);
            nodes.push_back(node);
        } else if (beforeRoot > nodes.size()) {
            --beforeRoot; // the declaration
        }
    }
    openBracket('{');
    bool hasMembers = false;
    if (isAlone) {
        beginEntry(hasMembers);
        writeKey({}, nodes.back()->get_nodeName());
        writeElement(static_cast<TNuDOMElement&>(*nodes.back()));
    } else {
        // 2. The element goes to its place among them.
        TNuDOMNode* root = nodes.back();
        nodes.pop_back();
        nodes.insert(
            nodes.begin() + static_cast<std::ptrdiff_t>(std::min(beforeRoot, nodes.size())), root);
        beginEntry(hasMembers);
        writeKey({}, u"#");
        openBracket('[');
        bool hasItems = false;
        for (TNuDOMNode* node : nodes) {
            beginEntry(hasItems);
            writeItem(*node);
            if (isElement(*node)) {
                writeElement(static_cast<TNuDOMElement&>(*node));
                output_.write('}');
            }
        }
        closeBracket(']');
    }
    closeBracket('}');
}

void JsonWriter::writeElement(TNuDOMElement& element) {
    const std::size_t depth = open_.size();
    begin(element);
    while (open_.size() > depth) {
        step();
    }
}

bool JsonWriter::isKept(const TNuDOMNode& node) const noexcept {
    return form_.keepsComments || isElement(node) || isText(node);
}

JsonWriter::Shape JsonWriter::shapeOf(const TNuDOMElement& element) const {
    bool hasText = false;
    bool hasElements = false;
    std::u16string current;
    std::set<std::u16string> former; // no names can be chosen to slow it down
    for (const TNuDOMNode& child : element.ChildNodes()) {
        if (isText(child)) {
            hasText = true;
        } else if (isElement(child)) {
            std::u16string name = child.get_nodeName();
            if (hasElements && name != current && !former.insert(std::move(current)).second) {
                return Shape::Ordered;
            }
            hasElements = true;
            current = std::move(name);
        } else if (isKept(child)) {
            return Shape::Ordered;
        }
    }
    if ((hasText && hasElements) || former.contains(current)) {
        return Shape::Ordered;
    }
    return hasElements || !element.Attributes().empty() ? Shape::Object : Shape::Text;
}

void JsonWriter::begin(TNuDOMElement& element) {
    Open open{&element, shapeOf(element), element.ChildNodes().begin()};
    if (open.shape == Shape::Text) {
        return writeText(element.get_nodeValue());
    }
    openBracket('{');
    for (const TNuDOMAttribute& attribute : element.Attributes()) {
        beginEntry(open.hasMembers);
        writeKey(u"@", attribute.get_nodeName());
        writeText(attribute.get_nodeValue());
    }
    if (open.shape == Shape::Ordered) {
        beginEntry(open.hasMembers);
        writeKey({}, u"#");
        openBracket('[');
        open.hasMembers = false;
    } else if (const std::u16string text = element.get_nodeValue(); !text.empty()) {
        beginEntry(open.hasMembers);
        writeKey({}, u"#text");
        writeText(text);
    }
    open_.push_back(open);
}

void JsonWriter::step() {
    Open& open = open_.back();
    // 1. What is behind the value that was written last.
    if (open.isItem) {
        output_.write('}');
        open.isItem = false;
    }
    if (open.endsArray) {
        closeBracket(']');
        open.endsArray = false;
    }
    // 2. The next one.
    const auto isWritten = [&](const TNuDOMNode& node) {
        return open.shape == Shape::Ordered ? isKept(node) : isElement(node);
    };
    while (open.next != Place() && !isWritten(*open.next)) {
        ++open.next;
    }
    if (open.next == Place()) {
        end();
    } else if (open.shape == Shape::Ordered) {
        stepItem(open);
    } else {
        stepMember(open);
    }
}

void JsonWriter::stepMember(Open& open) {
    auto& element = static_cast<TNuDOMElement&>(*open.next);
    do {
        ++open.next;
    } while (open.next != Place() && !isElement(*open.next));
    const std::u16string name = element.get_nodeName();
    const bool isFollowed = open.next != Place() && open.next->get_nodeName() == name;

    const bool isInArray = open.isInArray;
    open.isInArray = isFollowed;
    open.endsArray = isInArray && !isFollowed;
    if (isInArray) {
        bool hasMembers = true;
        beginEntry(hasMembers);
    } else {
        beginEntry(open.hasMembers);
        writeKey({}, name);
        if (isFollowed) {
            openBracket('[');
            breakLine();
        }
    }
    begin(element);
}

void JsonWriter::stepItem(Open& open) {
    TNuDOMNode& node = *open.next;
    ++open.next;
    beginEntry(open.hasMembers);
    open.isItem = isElement(node);
    writeItem(node);
    if (isElement(node)) {
        begin(static_cast<TNuDOMElement&>(node));
    }
}

void JsonWriter::writeItem(TNuDOMNode& node) {
    if (isText(node)) {
        return writeText(node.get_nodeValue());
    }
    output_.write('{');
    if (isElement(node)) {
        return writeKey({}, node.get_nodeName());
    }
    const bool isComment = node.get_nodeType() == host::COMMENT_NODE;
    writeKey(isComment ? u"" : u"?", isComment ? u"#comment" : node.get_nodeName());
    output_.writeJsonString(node.get_nodeValue());
    output_.write('}');
}

void JsonWriter::end() {
    const Open& open = open_.back();
    if (open.shape == Shape::Ordered) {
        closeBracket(']', open.hasMembers);
    }
    closeBracket('}');
    open_.pop_back();
}

void JsonWriter::beginEntry(bool& hasMembers) {
    if (hasMembers) {
        output_.write(',');
    }
    hasMembers = true;
    breakLine();
}

void JsonWriter::writeKey(std::u16string_view prefix, std::u16string_view name) {
    output_.write('"');
    output_.writeText(prefix, Escapes::Json);
    output_.writeText(name, Escapes::Json);
    output_.write(form_.isIndented ? "\": " : "\":");
}

void JsonWriter::writeText(std::u16string_view text) {
    if (form_.hasNumbers && (isJsonNumber(text) || text == u"true" || text == u"false")) {
        output_.writeText(text, Escapes::None);
    } else {
        output_.writeJsonString(text);
    }
}

void JsonWriter::openBracket(char bracket) {
    output_.write(bracket);
    ++level_;
}

void JsonWriter::closeBracket(char bracket, bool hasMembers) {
    --level_;
    if (hasMembers) {
        breakLine();
    }
    output_.write(bracket);
}

void JsonWriter::breakLine() {
    if (form_.isIndented) {
        output_.write('\n');
        output_.writeSpaces(2 * level_);
    }
}

} // namespace tool
