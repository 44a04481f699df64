#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/support/anyCalls.h"
#include "nuXmlDOM.h"
#include "nuXmlSax.h"

/// \file
/// The interfaces that applications reach through the registries of vendors: what their operations
/// are called with, all of them, and what the tree must say of itself at any time.

namespace fuzz {

// Arguments

template <> inline std::u16string pickValue(Pool& pool) {
    static constexpr std::u16string_view texts[] = {
        // names
        u"", u"a", u"b", u"p:a", u"xmlns", u"xmlns:p", u"id", u"*", u"xml", u"xml:space",
        u"xsi:type", u"a b", u":", u"a:b:c",
        // values
        u"u", u"x", u"1", u"preserve", u"true", u"-->", u"]]>", u"\"<&'>", u"\u20AC\xD83D",
        u"a text that has no room in its node", u"http://www.w3.org/2001/XMLSchema-instance",
        // paths
        u"//a", u"a/b", u"../a", u"a[@id='1']", u"//*[b]", u"b[2]/@k", u"a[", u"/", u"///p:a",
        // documents
        u"<a/>", u"<a id='1' xmlns:p='u'><p:b k=\"v\">t</p:b>u<!--c--><![CDATA[d]]><?q w?></a>",
        u"t<b/>&amp;", u"<a><b>", u"<a k='1' k='2'/><a/>", u"<?xml version=\"1.0\"?><!--c--><p:a/>",
        u"<!DOCTYPE a [<!ENTITY e 'f'>]><a xml:space='preserve'> &e; </a>", u"</a>",
        // features
        u"1.0", u"http://xml.org/sax/properties/lexical-handler"};
    const std::size_t index = pool.pick(std::size(texts) + 4);
    return index < std::size(texts) ? std::u16string(texts[index]) : pool.lastText;
}
template <> inline std::int64_t pickValue(Pool& pool) {
    if (pool.lengthOfSpan) {
        return *std::exchange(pool.lengthOfSpan, std::nullopt);
    }
    // Between the largest and the next no offset may be: comments grow as far as it says.
    return pool.pick<std::int64_t>({0, 1, 2, 3, 7, 1000, -1, 40'000,
                                    std::numeric_limits<std::int64_t>::max(),
                                    std::numeric_limits<std::int64_t>::min()});
}
template <> inline std::int32_t pickValue(Pool& pool) {
    return static_cast<std::int32_t>(pickValue<std::int64_t>(pool));
}
template <> inline double pickValue(Pool& pool) {
    return pool.pick({0.0, 1.5, -1e300, std::numeric_limits<double>::quiet_NaN()});
}
template <> inline bool pickValue(Pool& pool) { return pool.pick(2) == 0; }
template <> inline host::TDateTime pickValue(Pool& pool) {
    return host::TDateTime{pickValue<double>(pool)};
}
template <> inline TNuDOMPosition pickValue(Pool& pool) {
    return pool.pick({rdpFirst, rdpLast, rdpBefore, rdpAfter});
}
template <> inline TNuDOMSelectOptions pickValue(Pool& pool) {
    const std::size_t bits = pool.pick(16);
    TNuDOMSelectOptions options;
    for (const auto option : {soCreate, soRaise, soCaseInsensitive, soIgnoreNamespace}) {
        options = (bits & option) != 0 ? options | option : options;
    }
    return options;
}
template <> inline host::Variant pickValue(Pool& pool) {
    switch (pool.pick(5)) {
    case 0:
        return host::null;
    case 1:
        return pickValue<std::int64_t>(pool);
    case 2:
        return pickValue<host::TDateTime>(pool);
    case 3:
        return std::vector<std::uint8_t>{1, 2, 3};
    default:
        return pickValue<std::u16string>(pool);
    }
}
template <> inline host::DOMAsyncLoadEvent pickValue(Pool& /*pool*/) { return {}; }

// Operations

/// Adds all operations of the interfaces. Deliberate: but for those that write a file, or read one,
/// under a name that would come from the bytes.
inline void addInterfaceSteps(std::vector<Step>& steps) {
    using namespace host;
    using Text = std::u16string_view;
    using String = std::u16string;
    using Options = TNuDOMSelectOptions;
    using Element = Ref<INuDOMElement>;
    using Span = const SAXChar*;

    // The tree: what only reads.
    addReadingCalls<
        &IDOMNode::get_nodeName, &IDOMNode::get_nodeValue, &IDOMNode::get_nodeType,
        &IDOMNode::get_parentNode, &IDOMNode::get_childNodes, &IDOMNode::get_firstChild,
        &IDOMNode::get_lastChild, &IDOMNode::get_previousSibling, &IDOMNode::get_nextSibling,
        &IDOMNode::get_attributes, &IDOMNode::get_ownerDocument, &IDOMNode::get_namespaceURI,
        &IDOMNode::get_prefix, &IDOMNode::get_localName, &IDOMNode::hasChildNodes,
        &IDOMNode::supports, &IDOMNode::replaceChild, &IDOMNode::cloneNode, &IDOMNode::normalize,
        &IDOMNodeList::get_item, &IDOMNodeList::get_length, &IDOMNamedNodeMap::get_item,
        &IDOMNamedNodeMap::get_length, &IDOMNamedNodeMap::getNamedItem,
        &IDOMNamedNodeMap::setNamedItem, &IDOMNamedNodeMap::getNamedItemNS,
        &IDOMNamedNodeMap::setNamedItemNS, &IDOMNodeEx::get_text, &IDOMNodeEx::get_xml,
        With<IDOMNode*, String&>::of(&IDOMNodeEx::transformNode),
        With<IDOMNode*, IDOMDocument*>::of(&IDOMNodeEx::transformNode), &IDOMNodeSelect::selectNode,
        &IDOMNodeSelect::selectNodes>(steps);
    addReadingCalls<&IDOMCharacterData::get_data, &IDOMCharacterData::get_length,
                    &IDOMCharacterData::substringData, &IDOMProcessingInstruction::get_target,
                    &IDOMProcessingInstruction::get_data, &IDOMAttr::get_name,
                    &IDOMAttr::get_specified, &IDOMAttr::get_value, &IDOMAttr::get_ownerElement,
                    &INuDOMAttribute::get_IsNamespace>(steps);
    addReadingCalls<
        &IDOMElement::get_tagName, &IDOMElement::getAttribute, &IDOMElement::hasAttribute,
        &IDOMElement::getAttributeNode, &IDOMElement::getAttributeNS, &IDOMElement::hasAttributeNS,
        &IDOMElement::getAttributeNodeNS, &IDOMElement::getElementsByTagName,
        &IDOMElement::getElementsByTagNameNS,
        With<Text, bool, Ref<INuDOMAttribute>&>::of(&INuDOMElement::FindNamespace),
        With<Text, Text, bool, Ref<INuDOMAttribute>&>::of(&INuDOMElement::FindNamespace),
        &INuDOMElement::GetChildElementEx, &INuDOMElement::FirstChildElement,
        &INuDOMElement::GetParentElement, &INuDOMElement::get_index,
        &INuDOMElement::get_childElements, &INuDOMElement::GetCDATA,
        &INuDOMElement::GetPreserveSpace, &INuDOMElement::GetVarValue, &INuDOMElement::GetValueEx,
        &INuDOMElement::GetAsString, &INuDOMElement::GetAsInteger, &INuDOMElement::GetAsInt64,
        &INuDOMElement::GetAsBoolean, &INuDOMElement::GetAsDouble, &INuDOMElement::GetAsDateTime>(
        steps);
    addReadingCalls<
        &IDOMDocument::get_doctype, &IDOMDocument::get_domImplementation,
        &IDOMDocument::get_documentElement, &IDOMDocument::createElement,
        &IDOMDocument::createElementNS, &IDOMDocument::createAttribute,
        &IDOMDocument::createAttributeNS, &IDOMDocument::createTextNode,
        &IDOMDocument::createComment, &IDOMDocument::createCDATASection,
        &IDOMDocument::createProcessingInstruction, &IDOMDocument::createDocumentFragment,
        &IDOMDocument::createEntityReference, &IDOMDocument::importNode,
        &IDOMDocument::getElementsByTagName, &IDOMDocument::getElementsByTagNameNS,
        &IDOMDocument::getElementById, &IDOMImplementation::hasFeature,
        &IDOMImplementation::createDocumentType, &IDOMImplementation::createDocument,
        &INuDOMNode::get_parentNodeEx, &INuDOMNode::NodePath, &INuDOMNode::get_formattedXml,
        &INuDOMNode::get_innerxml, &INuDOMNode::get_formattedInnerXml,
        With<TStream&>::of(&INuDOMNode::SaveToStream), &INuDOMDocument::get_rootNode,
        &INuDOMDocument::GetProcessingInstruction, &INuDOMDocument::GetEncoding,
        With<TStream&, bool, bool>::of(&INuDOMDocument::SaveToStream), &IDOMPersist::asyncLoadState,
        &IDOMPersist::set_OnAsyncLoad, With<TStream&>::of(&IDOMPersist::saveToStream),
        With<IStream*>::of(&IDOMPersist::saveToStream)>(steps);

    // The tree: what changes it, or may.
    addCalls<
        &IDOMNode::set_nodeValue, &IDOMNode::set_prefix, &IDOMNode::insertBefore,
        &IDOMNode::removeChild, &IDOMNode::appendChild, &IDOMNode::appendChild,
        &IDOMNamedNodeMap::removeNamedItem, &IDOMNamedNodeMap::removeNamedItemNS,
        &IDOMNodeEx::set_text, &INuDOMNode::set_nodeName, &INuDOMNode::set_innerxml,
        With<Text, Options, Ref<IDOMNode>&>::of(&INuDOMNode::selectNode),
        With<Text, Options, Ref<IDOMNodeList>&>::of(&INuDOMNode::selectNodes),
        &IDOMCharacterData::set_data, &IDOMCharacterData::appendData,
        &IDOMCharacterData::insertData, &IDOMCharacterData::deleteData,
        &IDOMCharacterData::replaceData, &IDOMText::splitText, &IDOMProcessingInstruction::set_data,
        &IDOMAttr::set_value, &IDOMDocument::set_documentElement,
        With<Text, Element&>::of(&INuDOMDocument::CreateRootNode),
        With<Text, Text, Element&>::of(&INuDOMDocument::CreateRootNode), &INuDOMDocument::Clear,
        &INuDOMDocument::SelectSingleElement, &INuDOMDocument::SetProcessingInstruction,
        &INuDOMDocument::AddProcessingInstruction, &INuDOMDocument::LoadFromStream,
        &IDOMPersist::loadxml, With<TStream&, bool&>::of(&IDOMPersist::loadFromStream),
        With<IStream*, bool&>::of(&IDOMPersist::loadFromStream)>(steps);
    addCalls<
        &IDOMElement::setAttribute, &IDOMElement::removeAttribute, &IDOMElement::setAttributeNode,
        &IDOMElement::removeAttributeNode, &IDOMElement::setAttributeNS,
        &IDOMElement::removeAttributeNS, &IDOMElement::setAttributeNodeNS,
        &INuDOMElement::AttribNodeByName,
        With<Text, Options, String&>::of(&INuDOMElement::AttributeByName),
        With<Text, Text, Options, String&>::of(&INuDOMElement::AttributeByName),
        With<Text, Element&>::of(&INuDOMElement::AddElement),
        With<Text, Text, Element&>::of(&INuDOMElement::AddElement),
        With<Text, TNuDOMPosition, IDOMNode*, Element&>::of(&INuDOMElement::InsertElement),
        With<Text, Text, TNuDOMPosition, IDOMNode*, Element&>::of(&INuDOMElement::InsertElement),
        &INuDOMElement::AddComment, &INuDOMElement::InsertComment, &INuDOMElement::AddCDATA,
        &INuDOMElement::InsertCDATA,
        With<Text, Options, Element&>::of(&INuDOMElement::GetChildElement),
        With<Text, Text, Options, Element&>::of(&INuDOMElement::GetChildElement),
        &INuDOMElement::SelectSingleElement,
        With<Text, Element&>::of(&INuDOMElement::RemoveElement),
        With<Text, Text, Element&>::of(&INuDOMElement::RemoveElement),
        With<INuDOMElement*, Element&>::of(&INuDOMElement::RemoveElement),
        &INuDOMElement::SetPreseveSpace, &INuDOMElement::SetVarValue, &INuDOMElement::SetAsString,
        &INuDOMElement::SetAsInteger, &INuDOMElement::SetAsInt64, &INuDOMElement::SetAsBoolean,
        &INuDOMElement::SetAsDouble, &INuDOMElement::SetAsDateTime>(steps);

    // Readers, attributes and handlers.
    using Reader = IBufferedXMLReader;
    addCalls<&Reader::getFeature, &Reader::setFeature, &Reader::getProperty,
             &Reader::getContentHandler, &Reader::setContentHandler, &Reader::getDTDHandler,
             &Reader::setDTDHandler, &Reader::getEntityResolver, &Reader::setEntityResolver,
             &Reader::getErrorHandler, &Reader::setErrorHandler,
             With<const Ref<IInputSource>&>::of(&Reader::Parse), With<Text>::of(&Reader::Parse),
             With<Text>::of(&Reader::Parse), &IProperty::getName, &IInterfaceProperty::getValue,
             &IInterfaceProperty::setValue>(steps);
    addCalls<&IBufferedAttributes::getLength,
             With<SAXLength, Span&, SAXLength&>::of(&IBufferedAttributes::getURI),
             &IBufferedAttributes::getLocalName, &IBufferedAttributes::getQName,
             With<SAXLength, Span&, SAXLength&>::of(&IBufferedAttributes::getType),
             With<SAXLength, Span&, SAXLength&>::of(&IBufferedAttributes::getValue),
             With<Span, SAXLength, Span, SAXLength>::of(&IBufferedAttributes::getIndex),
             With<Span, SAXLength>::of(&IBufferedAttributes::getIndex),
             With<Span, SAXLength, Span, SAXLength, Span&, SAXLength&>::of(
                 &IBufferedAttributes::getType),
             With<Span, SAXLength, Span&, SAXLength&>::of(&IBufferedAttributes::getType),
             With<Span, SAXLength, Span, SAXLength, Span&, SAXLength&>::of(
                 &IBufferedAttributes::getValue),
             With<Span, SAXLength, Span&, SAXLength&>::of(&IBufferedAttributes::getValue),
             &IAttributes::getURI, &IAttributes::getLocalName, &IAttributes::getQName,
             With<SAXLength>::of(&IAttributes::getType),
             With<SAXLength>::of(&IAttributes::getValue),
             With<Text, Text>::of(&IAttributes::getIndex), With<Text>::of(&IAttributes::getIndex),
             With<Text, Text>::of(&IAttributes::getType), With<Text>::of(&IAttributes::getType),
             With<Text, Text>::of(&IAttributes::getValue), With<Text>::of(&IAttributes::getValue)>(
        steps);
    using Content = IBufferedContentHandler;
    using Lexical = IBufferedLexicalHandler;
    addCalls<&ILocator::getPublicId, &ILocator::getSystemId, &ILocator::getLineNumber,
             &ILocator::getColumnNumber, &ISAXParseError::getMessage,
             &ISAXParseError::getLineNumber, &Content::setDocumentLocator, &Content::startDocument,
             &Content::endDocument, &Content::startPrefixMapping, &Content::endPrefixMapping,
             &Content::startElement, &Content::endElement, &Content::characters,
             &Content::ignorableWhitespace, &Content::processingInstruction,
             &Content::skippedEntity, &INuSaxContentHandler::EndProlog, &Lexical::comment,
             &Lexical::startCDATA, &Lexical::endCDATA, &Lexical::startDTD, &Lexical::endDTD,
             &Lexical::startEntity, &Lexical::endEntity, &IErrorHandler::warning,
             &IErrorHandler::error, &IErrorHandler::fatalError>(steps);
}

// What must hold at any time

/// The children of a node know it, their neighbours and the document; its attributes know it, too.
inline void checkShape(const host::Ref<host::IDOMNode>& node) {
    host::Ref<host::IDOMNodeList> children;
    host::Ref<host::IDOMDocument> document;
    if (node->get_childNodes(children) < 0 || !children) {
        return;
    }
    node->get_ownerDocument(document);
    host::DOMLength length = 0;
    children->get_length(length);
    host::Ref<host::IDOMNode> previous;
    for (host::DOMLength index = 0; index < length; ++index) {
        host::Ref<host::IDOMNode> child;
        host::Ref<host::IDOMNode> other;
        host::Ref<host::IDOMDocument> itsDocument;
        require(children->get_item(index, child) == host::resultOk && child);
        require(child->get_parentNode(other) == host::resultOk && other == node);
        require(child->get_ownerDocument(itsDocument) == host::resultOk && itsDocument == document);
        const bool hasSiblings = child.as<host::IDOMElement>() && node.as<host::IDOMElement>();
        require(!hasSiblings ||
                (child->get_previousSibling(other) == host::resultOk && other == previous));
        previous = child;
    }
    host::Ref<host::IDOMNode> first;
    host::Ref<host::IDOMNode> last;
    bool hasChildren = false;
    require(node->get_firstChild(first) == host::resultOk && !first == (length == 0));
    require(node->get_lastChild(last) == host::resultOk && last == previous);
    require(node->hasChildNodes(hasChildren) == host::resultOk && hasChildren == (length != 0));
    host::Ref<host::IDOMNamedNodeMap> attributes;
    if (node->get_attributes(attributes) == host::resultOk) {
        attributes->get_length(length);
        for (host::DOMLength index = 0; index < length; ++index) {
            host::Ref<host::IDOMElement> owner;
            require(attributes->get_item(index, first) == host::resultOk && first);
            require(first.as<host::IDOMAttr>()->get_ownerElement(owner) == host::resultOk);
            require(owner == node.as<host::IDOMElement>());
        }
    }
}

} // namespace fuzz
