#include "nuXmlDOM/write/nodeSaving.h"

#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/write/nodeWriter.h"
#include "nuXmlDOM/write/targets.h"

namespace nu {

namespace {

/// The length of the block in front of a string, where a small one does.
constexpr std::size_t stringCapacity = 4096;

/// The depth that is not indented when a node is written by itself.
std::int64_t ownLevel(const TNuDOMNode& node) noexcept {
    return is<TNuDOMElement>(node) ? depthOf(node) : 0;
}

std::uint64_t outputLimit(const TNuDOMNode& node) noexcept {
    return node.OwnerDocument()->Limits().OutputBytes;
}

bool isInPreservedSpace(const TNuDOMNode& node) {
    const TNuDOMElement* parent = NodeLinks::parentElement(node);
    return parent != nullptr && parent->GetPreserveSpace();
}

template <class Characters, class Unit>
void putNode(const TNuDOMNode& node, Output<Unit>& output, const WriteOptions& options) {
    NodeWriter<Unit, Characters> writer(output, *node.OwnerDocument(), options.formatted,
                                        options.baseLevel, options.indentation);
    if (is<TNuDOMDocument>(node)) {
        writer.writeDocument(static_cast<const TNuDOMDocument&>(node));
        return;
    }
    // Where it stands shows only in the line breaks.
    const std::int64_t depth = options.formatted ? depthOf(node) : 0;
    const bool preserves = options.formatted && isInPreservedSpace(node);
    if (is<TNuDOMElement>(node)) {
        writer.writeElement(static_cast<const TNuDOMElement&>(node), depth, preserves);
    } else {
        writer.writeSingle(node, depth, preserves);
    }
}

template <class Unit> std::basic_string<Unit> textOf(const TNuDOMNode& node, bool formatted) {
    checkWritable(node, formatted);
    std::basic_string<Unit> text;
    StringTarget<Unit> target(text);
    Output<Unit> output(target, outputLimit(node), stringCapacity);
    putNode<AllCharacters>(node, output, {formatted, false, ownLevel(node)});
    output.finish();
    return text;
}

/// Deliberate: only the child elements. One that is formatted and not the first begins a line.
NuXmlString innerTextOf(const TNuDOMNode& node, bool formatted) {
    if (!is<TNuDOMElement>(node)) {
        return textOf<char16_t>(node, formatted);
    }
    const auto& element = static_cast<const TNuDOMElement&>(node);
    const std::int64_t level = depthOf(element) + 1;
    const bool preserves = formatted && element.GetPreserveSpace();
    NuXmlString text;
    StringTarget<char16_t> target(text);
    Output<char16_t> output(target, outputLimit(node), stringCapacity);
    NodeWriter<char16_t> writer(output, *element.OwnerDocument(), formatted, level,
                                WriteOptions().indentation);
    for (const TNuDOMElement& child : element.ChildElements()) {
        writer.writeElement(child, level, preserves);
    }
    output.finish();
    return text;
}

} // namespace

std::int64_t depthOf(const TNuDOMNode& node) noexcept {
    std::int64_t depth = 0;
    for (const TNuDOMElement* element = NodeLinks::parentElement(node); element != nullptr;
         element = NodeLinks::parentElement(*element)) {
        ++depth;
    }
    return depth;
}

void checkWritable(const TNuDOMNode& node, bool formatted) {
    if (formatted && is<TNuDOMCDATA>(node) && NodeLinks::parentElement(node) == nullptr) {
        raiseInvalidCast(TNuDOMElement::Class.name);
    }
}

void saveWide(const TNuDOMNode& node, host::TStream& stream, WriteOptions options) {
    checkWritable(node, options.formatted);
    // Deliberate: a document puts a mark at the start of a file by itself, in memory it does not.
    options.marked = options.marked || (is<TNuDOMDocument>(node) &&
                                        dynamic_cast<host::TFileStream*>(&stream) != nullptr &&
                                        stream.GetPosition() == 0);
    WideStreamTarget target(stream);
    writeNode(node, target, options);
}

template <class Unit>
void writeNode(const TNuDOMNode& node, OutputTarget<Unit>& target, const WriteOptions& options) {
    Output<Unit> output(target, outputLimit(node));
    if (options.marked) {
        output.putMark();
    }
    if (options.keepsContent) {
        putNode<ExactCharacters>(node, output, options);
    } else {
        putNode<AllCharacters>(node, output, options);
    }
    output.finish();
}

void writeInCodePage(const TNuDOMDocument& document, OutputTarget<char>& target,
                     const WriteOptions& options, std::uint32_t codePage) {
    Output<char> output(target, outputLimit(document));
    NodeWriter<char, PageCharacters> writer(output, *document.OwnerDocument(), options.formatted,
                                            options.baseLevel, options.indentation,
                                            PageCharacters(codePage, options.keepsContent));
    writer.writeDocument(document);
    output.finish();
}

template void writeNode(const TNuDOMNode&, OutputTarget<char>&, const WriteOptions&);
template void writeNode(const TNuDOMNode&, OutputTarget<char16_t>&, const WriteOptions&);

} // namespace nu

void TNuDOMNode::SaveToStream(host::TStream& stream) { _SaveToStream(stream, false, 0); }

void TNuDOMNode::_SaveToStream(host::TStream& stream, bool formatted) {
    nu::saveWide(*this, stream, {formatted, false, nu::ownLevel(*this)});
}

void TNuDOMNode::_SaveToStream(host::TStream& stream, bool formatted, std::int32_t baseLevel) {
    nu::saveWide(*this, stream, {formatted, false, baseLevel});
}

NuXmlString TNuDOMNode::get_xml() const { return nu::textOf<char16_t>(*this, false); }

NuXmlString TNuDOMNode::get_formattedXml() const { return nu::textOf<char16_t>(*this, true); }

std::string TNuDOMNode::Xml() const { return nu::textOf<char>(*this, false); }

std::string TNuDOMNode::FormattedXml() const { return nu::textOf<char>(*this, true); }

NuXmlString TNuDOMNode::get_innerxml() const { return nu::innerTextOf(*this, false); }

NuXmlString TNuDOMNode::get_formattedInnerXml() const { return nu::innerTextOf(*this, true); }
