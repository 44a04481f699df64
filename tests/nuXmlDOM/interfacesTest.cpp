#include "nuXmlDOM.h"

#include <filesystem>
#include <functional>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

#include "common/memoryStream.h"
#include "host/com/boundary.h"
#include "support/foreignNode.h"

namespace {

using host::Ref;
using host::ResultCode;

constexpr std::string_view sanitizers = NUXML_SANITIZE;

std::u16string takeDescription() {
    Ref<host::IErrorInfo> information;
    std::u16string description = u"-";
    if (host::GetErrorInfo(information) == host::resultOk) {
        information->GetDescription(description);
    }
    return description;
}

// What an operation is to clear before it does anything.

struct Former {
    operator std::u16string() const { return u"former"; }
    operator bool() const { return true; }
    operator host::DOMLength() const { return 77; }
    operator std::int32_t() const { return 77; }
    operator host::DOMNodeType() const { return host::NOTATION_NODE; }
    /// An object that nobody may put into the handle it comes from.
    template <class Interface> operator Ref<Interface>() const {
        static const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
        static const auto someElement = document->createElement(u"former");
        static const auto someText = document->createTextNode(u"former");
        auto found = host::queryInterface<Interface>(someElement.get());
        return found ? found : host::queryInterface<Interface>(someText.get());
    }
};

std::u16string show(const std::u16string& text) { return text; }
std::u16string show(bool value) { return value ? u"true" : u"false"; }
template <class Number> std::u16string show(Number number) {
    const std::string digits = std::to_string(static_cast<long>(number));
    return {digits.begin(), digits.end()};
}
/// The name of a node, the names of the members of a list, "null".
template <class Interface> std::u16string show(const Ref<Interface>& handle) {
    std::u16string name = u"null";
    if (const auto node = handle.template as<host::IDOMNode>()) {
        node->get_nodeName(name);
    } else if (const auto list = handle.template as<host::IDOMNodeList>()) {
        host::DOMLength length = 0;
        list->get_length(length);
        name = u"[";
        Ref<host::IDOMNode> member;
        for (host::DOMLength index = 0; index < length; ++index) {
            list->get_item(index, member);
            name += (index == 0 ? u"" : u" ") + show(member);
        }
        name += u"]";
    } else if (handle) {
        name = u"object";
    }
    return name;
}

/// Runs an operation without a result: "ok", or "! " and the description of the error.
template <class Operation> std::u16string outcome(Operation&& operation) {
    takeDescription();
    const ResultCode code = operation();
    EXPECT_EQ(code, code < 0 ? host::resultUnexpected : host::resultOk);
    const std::u16string description = takeDescription();
    EXPECT_EQ(description == u"-", code == host::resultOk);
    return code < 0 ? u"! " + description : u"ok";
}

/// The same with a result, which is shown. After a failure it is checked to be cleared.
template <class Result, class Operation> std::u16string outcome(Operation&& operation) {
    Result result = Former();
    std::u16string shown = outcome([&] { return operation(result); });
    if (shown == u"ok") {
        return show(result);
    }
    EXPECT_EQ(result, Result());
    return shown;
}

/// The outcome of an operation of an interface that the object may yet have to be asked for.
template <class Interface, class Object, class... Parameters, class... Arguments>
std::u16string call(const Ref<Object>& object,
                    ResultCode (Interface::*operation)(Parameters...) noexcept,
                    Arguments... arguments) {
    const auto interface = object.template as<Interface>();
    if constexpr (sizeof...(Parameters) == sizeof...(Arguments)) {
        return outcome([&] { return (interface.get()->*operation)(arguments...); });
    } else {
        using Results = std::tuple<std::remove_reference_t<Parameters>...>;
        using Result = std::tuple_element_t<sizeof...(Arguments), Results>;
        return outcome<Result>(
            [&](Result& result) { return (interface.get()->*operation)(arguments..., result); });
    }
}

struct Row {
    std::u16string got;
    std::u16string expected;
};

void check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(row.got, row.expected) << "row " << &row - rows.data();
    }
}

template <class Interface, class Maker> Ref<Interface> made(Maker&& maker) {
    Ref<Interface> handle;
    EXPECT_EQ(maker(handle), host::resultOk);
    EXPECT_TRUE(handle);
    return handle;
}

/// A document made through interfaces only: one node of each kind.
struct Sample {
    Sample() {
        link(document, root);
        root->setAttribute(u"id", u"1");
        root->getAttributeNode(u"id", attribute);
        link(root, text);
        link(root, child);
        link(root, section);
        link(root, comment);
        link(root, instruction);
    }
    template <class Parent, class Child>
    static void link(const Ref<Parent>& parent, const Ref<Child>& child) {
        Ref<host::IDOMNode> none;
        ASSERT_EQ(parent->appendChild(child.get(), none), host::resultOk);
    }

    Ref<host::IDOMImplementation> implementation = TNuDOMVendor().DOMImplementation();
    Ref<host::IDOMDocument> document = made<host::IDOMDocument>(
        [&](auto& out) { return implementation->createDocument(u"", u"", nullptr, out); });
    Ref<host::IDOMElement> root = element(u"root");
    Ref<host::IDOMElement> child = element(u"p:child");
    Ref<host::IDOMAttr> attribute;
    Ref<host::IDOMText> text =
        made<host::IDOMText>([&](auto& out) { return document->createTextNode(u"a<b", out); });
    Ref<host::IDOMCDATASection> section = made<host::IDOMCDATASection>(
        [&](auto& out) { return document->createCDATASection(u"c&d", out); });
    Ref<host::IDOMComment> comment =
        made<host::IDOMComment>([&](auto& out) { return document->createComment(u"note", out); });
    Ref<host::IDOMProcessingInstruction> instruction = made<host::IDOMProcessingInstruction>(
        [&](auto& out) { return document->createProcessingInstruction(u"go", u"on", out); });

    Ref<host::IDOMElement> element(std::u16string_view name) const {
        return made<host::IDOMElement>(
            [&](auto& out) { return document->createElement(name, out); });
    }
};

TEST(Interfaces, everyKindHasItsOwnAndOneIdentity) {
    const struct {
        std::string_view name;
        host::InterfaceId id;
    } interfaces[] = {
        {"Object", INuDomObject::Id},         {"Node", host::IDOMNode::Id},
        {"NodeEx", host::IDOMNodeEx::Id},     {"Select", host::IDOMNodeSelect::Id},
        {"NuNode", INuDOMNode::Id},           {"Element", host::IDOMElement::Id},
        {"NuElement", INuDOMElement::Id},     {"Attr", host::IDOMAttr::Id},
        {"NuAttribute", INuDOMAttribute::Id}, {"Data", host::IDOMCharacterData::Id},
        {"Text", host::IDOMText::Id},         {"CDATA", host::IDOMCDATASection::Id},
        {"Comment", host::IDOMComment::Id},   {"PI", host::IDOMProcessingInstruction::Id},
        {"Document", host::IDOMDocument::Id}, {"NuDocument", INuDOMDocument::Id},
        {"Persist", host::IDOMPersist::Id},   {"List", host::IDOMNodeList::Id},
        {"Map", host::IDOMNamedNodeMap::Id},  {"Implementation", host::IDOMImplementation::Id},
    };
    const Sample sample;
    Ref<host::IDOMNodeList> children;
    Ref<host::IDOMNamedNodeMap> attributes;
    ASSERT_EQ(sample.root->get_childNodes(children), host::resultOk);
    ASSERT_EQ(sample.root->get_attributes(attributes), host::resultOk);
    const std::string node = "Object Node NodeEx Select NuNode ";
    const struct {
        Ref<host::IUnknown> object;
        std::string offered;
    } table[] = {
        {sample.root, node + "Element NuElement "},
        {sample.attribute, node + "Attr NuAttribute "},
        {sample.text, node + "Data Text "},
        {sample.section, node + "Data Text CDATA "},
        {sample.comment, node + "Data Comment "},
        {sample.instruction, node + "PI "},
        {sample.document, node + "Document NuDocument Persist "},
        {children, "Object List "},
        {attributes, "Object Map "},
        {sample.implementation, "Object Implementation "},
    };
    for (const auto& row : table) {
        TNuDOMObject* const object = row.object.as<INuDomObject>()->AsObject();
        const auto identity = row.object.as<host::IUnknown>();
        const std::int32_t count = object->RefCount();
        std::string offered;
        for (const auto& [name, id] : interfaces) {
            void* place = &offered;
            const ResultCode code = row.object->QueryInterface(id, &place);
            ASSERT_EQ(code, place != nullptr ? host::resultOk : host::resultNoInterface);
            EXPECT_EQ(object->RefCount(), place != nullptr ? count + 1 : count);
            if (place != nullptr) {
                offered += std::string(name) + " ";
                // All interfaces begin with the base interface.
                auto* const found = static_cast<host::IUnknown*>(place);
                EXPECT_EQ(host::queryInterface<host::IUnknown>(found), identity) << name;
                EXPECT_EQ(host::queryInterface<INuDomObject>(found)->AsObject(), object) << name;
                EXPECT_EQ(host::queryInterface<host::IUnknown>(object), identity);
                found->_Release();
            }
        }
        EXPECT_EQ(offered, row.offered);
    }
}

TEST(Interfaces, giveWhatTheNodesGive) {
    using namespace host;
    const Sample s;
    const std::u16string no = u"! Not supported";
    const std::u16string_view empty;
    check({
        {call(s.root, &IDOMNode::get_nodeName), u"root"},
        {call(s.document, &IDOMNode::get_nodeName), u"#document"},
        {call(s.section, &IDOMNode::get_nodeType), u"4"},
        {call(s.child, &IDOMNode::get_prefix), u"p"},
        {call(s.child, &IDOMNode::get_localName), u"child"},
        {call(s.child, &IDOMNode::get_namespaceURI), u""},
        {call(s.child, &IDOMNode::set_prefix, empty), u"ok"},
        {call(s.child, &IDOMNode::set_prefix, u"a b"), u"! Invalid XML Name"},
        {call(s.child, &IDOMNode::get_nodeName), u":child"},
        {call(s.child, &IDOMNode::set_prefix, empty), u"ok"},
        {call(s.child, &INuDOMNode::set_nodeName, u"x"), u"! Modifying a NodeName is not allowed."},
        {call(s.child, &INuDOMNode::NodePath, false), u"/root/child"},
        {call(s.text, &IDOMNode::supports, u"XML", u"2.0"), u"true"},
        {call(s.text, &IDOMNode::supports, u"XML", empty), u"false"},

        {call(s.text, &IDOMNode::get_nodeValue), u"a<b"},
        {call(s.comment, &IDOMNode::set_nodeValue, u"a--b"), u"ok"},
        {call(s.comment, &IDOMNode::set_nodeValue, u"--"), u"! A comment may not contain \"--\""},
        {call(s.comment, &IDOMNode::get_nodeValue), u""},
        {call(s.document, &IDOMNode::set_nodeValue, u"x"), no},
        {call(s.root, &IDOMNodeEx::get_text), u"a<bc&d"},
        {call(s.child, &IDOMNodeEx::set_text, u"t"), u"ok"},
        {call(s.text, &IDOMNodeEx::get_text), no},
        {call(s.text, &IDOMNodeEx::set_text, u"t"), no},

        {call(s.child, &IDOMNode::get_parentNode), u"root"},
        {call(s.document, &IDOMNode::get_parentNode), u"null"},
        {call(s.text, &INuDOMNode::get_parentNodeEx), u"root"},
        {call(s.root, &IDOMNode::get_childNodes), u"[#text child #cdata-section #comment go]"},
        {call(s.text, &IDOMNode::get_childNodes), no},
        {call(s.root, &IDOMNode::get_firstChild), u"#text"},
        {call(s.root, &IDOMNode::get_lastChild), u"go"},
        {call(s.text, &IDOMNode::get_firstChild), no},
        {call(s.child, &IDOMNode::get_previousSibling), u"#text"},
        {call(s.child, &IDOMNode::get_nextSibling), u"#cdata-section"},
        {call(s.text, &IDOMNode::get_nextSibling), no},
        {call(s.root, &IDOMNode::get_attributes), u"object"},
        {call(s.document, &IDOMNode::get_attributes), no},
        {call(s.attribute, &IDOMNode::get_ownerDocument), u"#document"},
        {call(s.root, &IDOMNode::hasChildNodes), u"true"},
        {call(s.text, &IDOMNode::hasChildNodes), u"false"},

        {call(s.attribute, &IDOMAttr::get_name), u"id"},
        {call(s.attribute, &IDOMAttr::get_value), u"1"},
        {call(s.attribute, &IDOMAttr::set_value, u"2"), u"ok"},
        {call(s.attribute, &IDOMAttr::get_specified), u"false"},
        {call(s.attribute, &IDOMAttr::get_ownerElement), u"root"},
        {call(s.attribute, &INuDOMAttribute::get_IsNamespace), u"false"},
        {call(s.root, &IDOMElement::get_tagName), u"root"},
        {call(s.root, &IDOMElement::getAttribute, u"id"), u"2"},
        {call(s.root, &IDOMElement::getAttribute, u"ID"), u""},
        {call(s.root, &IDOMElement::getAttributeNode, u"ID"), u"null"},
        {call(s.root, &IDOMElement::hasAttribute, u"id"), u"true"},
        {call(s.root, &IDOMElement::setAttributeNS, u"u", u"xmlns:p", u"u"), u"ok"},
        {call(s.root, &IDOMElement::setAttributeNS, u"u", u"p:a", u"5"), u"ok"},
        {call(s.root, &IDOMElement::getAttributeNS, u"u", u"a"), u"5"},
        {call(s.root, &IDOMElement::hasAttributeNS, u"v", u"a"), u"false"},
        {call(s.root, &IDOMElement::getAttributeNodeNS, u"u", u"a"), u"p:a"},
        {call(s.root, &IDOMElement::removeAttributeNS, u"u", u"a"), u"ok"},
        {call(s.root, &IDOMElement::removeAttribute, u"p:a"), u"ok"},
        {call(s.root, &INuDOMElement::AttribNodeByName, u"X:ID",
              TNuDOMSelectOptions{soCaseInsensitive, soIgnoreNamespace}),
         u"id"},
        {call(s.root, &INuDOMElement::AttribNodeByName, u"no", soRaise),
         u"! There is no attribute \"no\""},

        {call(s.root, &INuDOMElement::get_childElements), u"[child]"},
        {call(s.root, &INuDOMElement::FirstChildElement), u"child"},
        {call(s.child, &INuDOMElement::GetParentElement), u"root"},
        {call(s.root, &INuDOMElement::GetParentElement), u"! The node is not a TNuDOMElement."},
        {call(s.child, &INuDOMElement::get_index), u"0"},
        {call(s.root, &INuDOMElement::GetCDATA), u"c&d"},
        {call(s.root, &INuDOMElement::SetPreseveSpace, true), u"ok"},
        {call(s.child, &INuDOMElement::GetPreserveSpace), u"true"},
        {call(s.root, &INuDOMElement::AddCDATA, u"e"), u"#cdata-section"},
        {call(s.root, &INuDOMElement::AddComment, u"f"), u"#comment"},
        {call(s.root, &INuDOMElement::InsertComment, u"g", rdpBefore, s.text.get()), u"#comment"},
        {call(s.root, &INuDOMElement::InsertCDATA, u"h", rdpAfter, nullptr),
         u"! A reference child is required for this operation."},
        {call(s.root, &IDOMNode::get_childNodes),
         u"[#comment #text child #cdata-section #comment go #cdata-section #comment]"},

        {call(s.text, &IDOMCharacterData::get_length), u"3"},
        {call(s.text, &IDOMCharacterData::substringData, 2, 2), u"<b"},
        {call(s.text, &IDOMCharacterData::insertData, 1, u"X"), u"ok"},
        {call(s.text, &IDOMCharacterData::deleteData, 0, 1), u"ok"},
        {call(s.text, &IDOMCharacterData::replaceData, 0, 1, u"YZ"), u"ok"},
        {call(s.text, &IDOMCharacterData::appendData, u"."), u"ok"},
        {call(s.text, &IDOMCharacterData::get_data), u"YZ<b."},
        {call(s.section, &IDOMText::splitText, 1), u"#text"},
        {call(s.section, &IDOMCharacterData::set_data, u"]]>"),
         u"! A CDATA element may not contain \"<![\" or \"]]>\""},
        {call(s.instruction, &IDOMProcessingInstruction::get_target), u"go"},
        {call(s.instruction, &IDOMProcessingInstruction::set_data, u"off"), u"ok"},
        {call(s.instruction, &IDOMProcessingInstruction::get_data), u"off"},

        {call(s.document, &IDOMDocument::get_documentElement), u"root"},
        {call(s.document, &INuDOMDocument::get_rootNode), u"root"},
        {call(s.document, &IDOMDocument::set_documentElement, s.child.get()),
         u"! It is not possible to replace an existing rootnode by another."},
        {call(s.document, &IDOMDocument::createElement, empty),
         u"! An empty NodeName is not allowed."},
        {call(s.document, &IDOMDocument::createElementNS, u"u", u"p:e"), u"p:e"},
        {call(s.document, &IDOMDocument::createAttributeNS, u"u", u"p:e"), u"p:e"},
        {call(s.document, &IDOMDocument::get_domImplementation), u"object"},
        {call(s.document, &INuDOMDocument::AddProcessingInstruction, u"xml", u"encoding=\"UTF-8\""),
         u"ok"},
        {call(s.document, &INuDOMDocument::GetProcessingInstruction, u"xml"),
         u"encoding=\"UTF-8\""},
        {call(s.document, &INuDOMDocument::GetEncoding), u"utf-8"},
        {call(s.document, &IDOMPersist::asyncLoadState), u"0"},
    });
}

TEST(Interfaces, refuseWhatNoNodeSupportsWhateverItIsGiven) {
    using namespace host;
    const Sample s;
    IDOMNode* const none = nullptr;
    const std::u16string no = u"! Not supported";
    const std::u16string notImplemented = u"! Not implemented";
    const std::u16string_view empty;
    for (const Ref<IDOMNode>& node :
         {Ref<IDOMNode>(s.root), Ref<IDOMNode>(s.text), Ref<IDOMNode>(s.document)}) {
        using ToText = ResultCode (IDOMNodeEx::*)(IDOMNode*, std::u16string&) noexcept;
        using ToDocument = ResultCode (IDOMNodeEx::*)(IDOMNode*, IDOMDocument*) noexcept;
        check({
            {call(node, &IDOMNode::replaceChild, none, none), no},
            {call(node, &IDOMNode::cloneNode, true), no},
            {call(node, &IDOMNode::normalize), no},
            {call(node, static_cast<ToText>(&IDOMNodeEx::transformNode), none), no},
            {call(node, static_cast<ToDocument>(&IDOMNodeEx::transformNode), none, nullptr), no},
        });
    }
    Ref<IDOMNamedNodeMap> map;
    ASSERT_EQ(s.root->get_attributes(map), resultOk);
    check({
        {call(s.document, &IDOMDocument::createDocumentFragment), no},
        {call(s.document, &IDOMDocument::createEntityReference, u"e"), no},
        {call(s.document, &IDOMDocument::get_doctype), no},
        {call(s.document, &IDOMDocument::importNode, none, true), no},
        {call(s.document, &IDOMPersist::set_OnAsyncLoad, nullptr), no},
        {call(map, &IDOMNamedNodeMap::setNamedItem, none), notImplemented},
        {call(map, &IDOMNamedNodeMap::setNamedItemNS, none), notImplemented},
        {call(s.implementation, &IDOMImplementation::createDocumentType, empty, empty, empty),
         notImplemented},
        {call(s.text, &IDOMNode::appendChild, none), no},
        {call(s.comment, &IDOMNode::insertBefore, none, none), no},
        {call(s.attribute, &IDOMNode::removeChild, none), no},
    });
}

TEST(Interfaces, listsAndMapsAnswerByIndexAndName) {
    using namespace host;
    const Sample s;
    Ref<IDOMNodeList> list;
    Ref<IDOMNamedNodeMap> map;
    ASSERT_EQ(s.root->get_childNodes(list), resultOk);
    ASSERT_EQ(s.root->get_attributes(map), resultOk);
    check({
        {call(list, &IDOMNodeList::get_length), u"5"},
        {call(list, &IDOMNodeList::get_item, 1), u"p:child"},
        {call(list, &IDOMNodeList::get_item, 5), u"! List index out of bounds (5)"},
        {call(list, &IDOMNodeList::get_item, -1), u"! List index out of bounds (-1)"},
        {call(map, &IDOMNamedNodeMap::get_length), u"1"},
        {call(map, &IDOMNamedNodeMap::get_item, 0), u"id"},
        {call(map, &IDOMNamedNodeMap::getNamedItem, u"Id"), u"null"},
        {call(map, &IDOMNamedNodeMap::getNamedItem, u"id"), u"id"},
        {call(map, &IDOMNamedNodeMap::getNamedItemNS, u"", u"id"), u"id"},
        {call(map, &IDOMNamedNodeMap::removeNamedItemNS, u"u", u"id"), u"null"},
        {call(map, &IDOMNamedNodeMap::removeNamedItem, u"id"), u"id"},
        {call(map, &IDOMNamedNodeMap::get_length), u"0"},
        {call(s.attribute, &IDOMAttr::get_value), u"1"},
    });
}

TEST(Interfaces, changeTheTreeWithNodesOfTheirOwnOnly) {
    using namespace host;
    const Sample s;
    const auto foreign = makeRef<support::ForeignNode>();
    IDOMNode* const none = nullptr;
    const auto other = s.element(u"other");
    const auto twin =
        made<IDOMAttr>([&](auto& out) { return s.document->createAttribute(u"id", out); });
    check({
        // What comes in is not given back.
        {call(s.child, &IDOMNode::appendChild, other.get()), u"null"},
        {call(other, &IDOMNode::get_parentNode), u"p:child"},
        {call(s.root, &IDOMNode::insertBefore, other.get(), s.child.get()), u"null"},
        {call(s.child, &IDOMNode::get_previousSibling), u"other"},
        {call(s.root, &IDOMElement::setAttributeNode, twin.get()), u"null"},
        // What leaves is.
        {call(s.root, &IDOMNode::removeChild, other.get()), u"other"},
        {call(other, &IDOMNode::get_parentNode), u"null"},
        {call(s.root, &IDOMElement::removeAttributeNode, twin.get()), u"id"},
        {call(s.attribute, &IDOMAttr::get_ownerElement), u"null"},
        {call(twin, &IDOMAttr::get_ownerElement), u"root"},
        // What cannot come in.
        {call(s.root, &IDOMNode::appendChild, none), u"! A node is required for this operation."},
        {call(s.root, &IDOMNode::appendChild, s.root.get()),
         u"! Nodes of class TNuDOMElement can't be parents of TNuDOMElement nodes."},
        {call(s.document, &IDOMNode::appendChild, s.child.get()),
         u"! A document can only have 1 rootnode"},
        {call(s.root, &IDOMNode::insertBefore, s.text.get(), none),
         u"! A reference child is required for this operation."},
        {call(s.text, &IDOMNode::appendChild, s.comment.get()), u"! Not supported"},
        {call(s.root, &IDOMElement::setAttributeNode, nullptr),
         u"! A node is required for this operation."},
    });
    Ref<IDOMNode> result = s.root;
    EXPECT_EQ(s.root->appendChild(foreign.get(), result), resultNoInterface);
    EXPECT_FALSE(result);
    EXPECT_EQ(takeDescription(), u"The node is one of another library.");
    // A foreign reference is noticed before the node has left its place.
    EXPECT_EQ(s.root->insertBefore(s.comment.get(), foreign.get(), result), resultNoInterface);
    EXPECT_EQ(call(s.comment, &IDOMNode::get_parentNode), u"root");
    // A result may go into the handle that the call is made through.
    Ref<IDOMNode> node = s.section;
    EXPECT_EQ(node->get_parentNode(node), resultOk);
    EXPECT_EQ(show(node), u"root");
}

TEST(Interfaces, reachWhatTheLibraryAdds) {
    using namespace host;
    using Element = Ref<INuDOMElement>;
    using Attribute = Ref<INuDOMAttribute>;
    const Sample s;
    const auto root = s.root.as<INuDOMElement>();
    const auto document = s.document.as<INuDOMDocument>();
    ASSERT_EQ(s.root->setAttribute(u"xmlns:q", u"u"), resultOk);
    const auto one = [&](auto&& operation) { return outcome<Element>(operation); };
    check({
        {one([&](Element& out) { return root->AddElement(u"a", out); }), u"a"},
        {one([&](Element& out) { return root->AddElement(u"q:b", u"u", out); }), u"q:b"},
        {one([&](Element& out) { return root->InsertElement(u"c", rdpFirst, nullptr, out); }),
         u"c"},
        {one([&](Element& out) {
             return root->InsertElement(u"d", u"", rdpAfter, s.text.get(), out);
         }),
         u"d"},
        {one([&](Element& out) { return root->InsertElement(u"e", rdpBefore, nullptr, out); }),
         u"! A reference child is required for this operation."},
        {call(root, &INuDOMElement::get_childElements), u"[d c p:child a q:b]"},
        {one([&](Element& out) { return root->GetChildElement(u"b", {}, out); }), u"null"},
        {one([&](Element& out) { return root->GetChildElement(u"b", u"u", {}, out); }), u"q:b"},
        {one([&](Element& out) { return root->GetChildElement(u"b", soRaise, out); }),
         u"! There is no childelement \"b\"."},
        {one([&](Element& out) { return root->RemoveElement(u"a", out); }), u"a"},
        {one([&](Element& out) { return root->RemoveElement(u"a", out); }), u"null"},
        {one([&](Element& out) { return root->RemoveElement(u"b", u"u", out); }), u"q:b"},
        {one([&](Element& out) { return root->RemoveElement(root.get(), out); }), u"root"},
        {one([&](Element& out) { return document->get_rootNode(out); }), u"null"},
        {one([&](Element& out) { return document->CreateRootNode(u"new", out); }), u"new"},
        {one([&](Element& out) { return document->CreateRootNode(u"new", u"u", out); }),
         u"! A document can only have 1 rootnode"},
        {outcome<Attribute>([&](Attribute& out) { return root->FindNamespace(u"u", true, out); }),
         u"xmlns:q"},
        {outcome<Attribute>(
             [&](Attribute& out) { return root->FindNamespace(u"u", u"", true, out); }),
         u"null"},
        {outcome<std::u16string>([&](std::u16string& out) {
             return root->AttributeByName(u"id", TNuDOMSelectOptions(), out);
         }),
         u"1"},
        {call(document, &INuDOMDocument::Clear), u"ok"},
    });
}

TEST(Interfaces, loadSelectAndWrite) {
    using namespace host;
    const Sample s;
    const auto persist = s.document.as<IDOMPersist>();
    const auto document = s.document.as<INuDOMDocument>();
    const auto missing = std::filesystem::temp_directory_path() / u"nuxml-no-such-file.xml";
    const std::u16string longerName(u"/dev/null\0x", 11);
    TNuMemoryStream stream;
    check({
        {call(document, &IDOMPersist::loadxml, u"<r><a n=\"1\"/>t<b><a n=\"2\"/></b></r>"),
         u"true"},
        {call(document, &IDOMNodeEx::get_xml), u"<r><a n=\"1\"/>t<b><a n=\"2\"/></b></r>"},
        {call(document, &IDOMDocument::getElementsByTagName, u"a"), u"[a a]"},
        {outcome<Ref<IDOMNodeList>>([&](Ref<IDOMNodeList>& out) {
             return document.as<IDOMNodeSelect>()->selectNodes(u"//*", out);
         }),
         u"[r a b a]"},
        {outcome<Ref<IDOMNode>>([&](Ref<IDOMNode>& out) {
             return document->selectNode(u"/R/B", soCaseInsensitive, out);
         }),
         u"b"},
        {outcome<Ref<IDOMNode>>(
             [&](Ref<IDOMNode>& out) { return document->selectNode(u"/R/B", {}, out); }),
         u"null"},
        {outcome([&] { return persist->saveToStream(stream); }), u"ok"},
        {outcome<bool>([&](bool& out) {
             stream.Seek(0, SeekOrigin::Beginning);
             return document->LoadFromStream(stream, out);
         }),
         u"! A document can only have 1 rootnode"},
        {outcome<bool>([&](bool& out) { return persist->loadxml(u"<r>", out); }),
         call(document, &INuDOMNode::set_innerxml, u"<r>")},
        {call(document, &INuDOMDocument::LoadFromFile, missing.u16string()),
         u"! There is no file \"" + missing.u16string() + u"\""},
        {call(document, &INuDOMDocument::SaveToFile, (missing / u"x").u16string(), true)
             .substr(0, 2),
         u"! "},
        // A name that goes on behind a NUL is not that of the file that it begins with.
        {call(document, &INuDOMDocument::SaveToFile, longerName, false).substr(0, 2), u"! "},
        {call(document, &INuDOMDocument::LoadFromFile, longerName).substr(0, 2), u"! "},
    });
}

/// The bytes in use that an operation leaves behind when it is run again.
std::size_t bytesLeftBy(const std::function<void()>& operation) {
    operation();
    const auto inUse = [] {
        const struct mallinfo2 state = mallinfo2();
        return state.uordblks + state.hblkhd;
    };
    const std::size_t before = inUse();
    operation();
    return inUse() - before;
}

TEST(Interfaces, anyOfThemKeepsTheDocument) {
    using namespace host;
    const struct {
        const char* name;
        std::function<Ref<IUnknown>(const Sample&)> keep;
    } table[] = {
        {"attribute", [](const Sample& s) { return Ref<IUnknown>(s.attribute); }},
        {"text", [](const Sample& s) { return Ref<IUnknown>(s.text); }},
        {"list",
         [](const Sample& s) {
             Ref<IDOMNodeList> list;
             s.child->get_childNodes(list);
             return Ref<IUnknown>(list);
         }},
        {"map",
         [](const Sample& s) {
             Ref<IDOMNamedNodeMap> map;
             s.root->get_attributes(map);
             return Ref<IUnknown>(map);
         }},
        {"removed",
         [](const Sample& s) {
             Ref<IDOMNode> removed;
             s.root->removeChild(s.child.get(), removed);
             return Ref<IUnknown>(removed);
         }},
    };
    for (const auto& row : table) {
        const std::size_t left = bytesLeftBy([&] {
            Ref<IUnknown> kept = row.keep(Sample());
            TNuDOMDocument* const document = kept.as<INuDomObject>()->AsObject()->OwnerDocument();
            ASSERT_NE(document, nullptr);
            EXPECT_EQ(document->RefCount(), 0);
            EXPECT_EQ(document->GetRootNode()->get_nodeName(), u"root") << row.name;
        });
        if (sanitizers.empty()) {
            EXPECT_EQ(left, 0U) << row.name;
        }
    }
}

/// Threads that work on nothing but references, of one document, and of which any may be the one
/// that drops the last.
TEST(Interfaces, threadsTakeAndDropReferencesOfOneDocument) {
    using namespace host;
    for (int round = 0; round < 50; ++round) {
        std::vector<Ref<IUnknown>> kept[2];
        {
            const Sample s;
            const auto loose = s.element(u"loose");
            kept[0] = {s.document, s.text, s.child, loose, s.attribute};
            kept[1] = {s.root, s.text, s.comment, loose, s.section};
        }
        const auto work = [](std::vector<Ref<IUnknown>> objects) {
            for (int turn = 0; turn < 200; ++turn) {
                for (const Ref<IUnknown>& object : objects) {
                    const Ref<IUnknown> copy = object;
                    EXPECT_TRUE(object.as<IDOMNodeEx>());
                }
            }
        };
        std::thread first(work, std::move(kept[0]));
        std::thread second(work, std::move(kept[1]));
        first.join();
        second.join();
    }
}

TEST(Implementation, isFoundByItsVendorAndMakesDocuments) {
    using namespace host;
    TDOMVendor* const vendor = DOMVendors().Find(u"Keldon");
    ASSERT_NE(vendor, nullptr);
    EXPECT_EQ(vendor->Description(), u"Keldon");
    const Ref<IDOMImplementation> implementation = CreateDOMImplementation(u"Keldon");
    Ref<IDOMDocument> document;
    const auto create = [&](std::u16string_view uri, std::u16string_view name) {
        return call(implementation, &IDOMImplementation::createDocument, uri, name, nullptr);
    };
    const std::u16string_view empty;
    check({
        {call(implementation, &IDOMImplementation::hasFeature, u"xMl", u"1.0"), u"true"},
        {call(implementation, &IDOMImplementation::hasFeature, u"xml", empty), u"false"},
        {call(implementation, &IDOMImplementation::hasFeature, u"core", u"2.0"), u"false"},
        {create(u"u", u"p:r"), u"#document"},
        {create(u"u", u"a b"), u"! Invalid XML Name"},
        // No document type can be made, so any object passes for one.
        {outcome<Ref<IDOMDocument>>([&](Ref<IDOMDocument>& out) {
             const auto foreign = makeRef<support::ForeignNode>();
             return implementation->createDocument(
                 u"", u"", reinterpret_cast<IDOMDocumentType*>(foreign.get()), out);
         }),
         u"! The doctype functionality is not implemented"},
    });
    const struct {
        std::u16string_view name, declaration;
    } table[] = {{u"p:r", u"xmlns:p"}, {u"r", u"xmlns"}, {u":r", u"xmlns:"}};
    for (const auto& row : table) {
        for (const std::u16string_view uri : {u"u", u""}) {
            const auto made = TNuDOMImplementation::Create()->createDocument(uri, row.name);
            EXPECT_EQ(made->GetRootNode()->get_nodeName(), row.name);
            ASSERT_TRUE(made->GetRootNode()->HasAttribute(row.declaration));
            EXPECT_EQ(made->GetRootNode()->getAttribute(row.declaration), uri);
            EXPECT_EQ(made->GetRootNode()->get_namespaceURI(), uri);
        }
    }
    EXPECT_EQ(TNuDOMImplementation::Create()->createDocument(u"u", u"")->GetRootNode(), nullptr);
}

} // namespace
