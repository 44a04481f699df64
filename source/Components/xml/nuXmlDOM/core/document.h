#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

#include "host/com/stream.h"
#include "host/dom/extensions.h"
#include "host/runtime/stream.h"
#include "nuXmlDOM/core/cdata.h"
#include "nuXmlDOM/core/comment.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/limits.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/processingInstruction.h"

/// \file
/// The document.

class TNuDOMImplementation;
class TNuLoadReport;
struct TNuConformingOptions;

namespace nu {

class DocumentLifetime;
class DocumentParts;

} // namespace nu

/// How a document is saved.
struct TNuSaveOptions {
    /// Whether elements, comments, CDATA sections and instructions get lines of their own, indented
    /// by depth.
    bool formatted = false;
    /// Whether UTF-8 and UTF-16 begin with a mark; 8-bit pages have none.
    bool writeByteOrderMark = false;
    /// Whether every parser of XML must read the content that the tree has: elements that hold text
    /// get no line breaks inside, also when formatted, and line breaks and tabs in values are
    /// written as references.
    bool keepContent = false;
    /// What is written, whatever the declaration names: cNuCodePageUtf8, cNuCodePageUtf16 or a page
    /// of single bytes. 0: by the declaration.
    std::uint32_t codePage = 0;
    /// The blanks of each level, where it is formatted.
    std::uint8_t indentation = 2;
};

/// A document: the root of a tree, and what makes and owns all nodes of it.
///
/// Right below it stand one element at most, the document element, and processing instructions and
/// comments. Hold a document in a handle (NuRef): it goes with the last handle or interface to
/// anything in it. One document is for one thread at a time, apart from taking and dropping
/// references.
class NUXML_API TNuDOMDocument final : public TNuDOMNode {
public:
    /// What stands for this kind of node in messages; _CreateNode refuses it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::DOCUMENT_NODE;

    /// An empty document.
    [[nodiscard]] static NuRef<TNuDOMDocument> Create();
    /// Destroys the document although nobody has let go of it. Throws host::EInvalidPointer, and
    /// changes nothing, when a reference to anything in it is held.
    void Destroy();

    /// \name The document element
    /// @{

    /// The document element; null in an empty document.
    [[nodiscard]] TNuDOMElement* GetRootNode() noexcept { return documentElement_; }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* GetRootNode() const noexcept { return documentElement_; }
    /// The document element; null in an empty document.
    [[nodiscard]] TNuDOMElement* get_rootNode() noexcept { return documentElement_; }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* get_rootNode() const noexcept { return documentElement_; }
    /// The document element, by its name in W3C DOM; null in an empty document.
    [[nodiscard]] TNuDOMElement* get_documentElement() noexcept { return documentElement_; }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* get_documentElement() const noexcept {
        return documentElement_;
    }
    /// Throws ENuDomNoModificationAllowed when there is one.
    void set_documentElement(TNuDOMElement& element);
    /// Makes the document element. Throws ENuDomHierarchyRequest when there is one.
    TNuDOMElement& CreateRootNode(std::u16string_view name);
    /// The same in UTF-8.
    TNuDOMElement& CreateRootNode(const TNuUtf8Text& name) { return CreateRootNode(name.view()); }
    /// The same; `namespaceURI` is only noted on the element (GetCreationNamespaceURI), nothing is
    /// declared.
    TNuDOMElement& CreateRootNode(std::u16string_view name, std::u16string_view namespaceURI);
    /// The same in UTF-8.
    TNuDOMElement& CreateRootNode(const TNuUtf8Text& name, const TNuUtf8Text& namespaceURI) {
        return CreateRootNode(name.view(), namespaceURI.view());
    }
    /// Takes everything out of the document. Throws host::EInvalidPointer before an instruction or
    /// comment that is held.
    void Clear();
    /// @}

    /// \name Making nodes
    /// Nodes outside of the tree, until they are put somewhere. Names throw as
    /// TNuDOMNode::set_nodeName does, values as the set_nodeValue of the kind.
    /// @{

    /// An element without attributes and children.
    [[nodiscard]] NuRef<TNuDOMElement> createElement(std::u16string_view name);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElement> createElement(const TNuUtf8Text& name) {
        return createElement(name.view());
    }
    /// The same by its qualified name; the URI is only noted (GetCreationNamespaceURI), the
    /// declarations in scope decide where it stands.
    [[nodiscard]] NuRef<TNuDOMElement> createElementNS(std::u16string_view namespaceURI,
                                                       std::u16string_view qualifiedName);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElement> createElementNS(const TNuUtf8Text& namespaceURI,
                                                       const TNuUtf8Text& qualifiedName) {
        return createElementNS(namespaceURI.view(), qualifiedName.view());
    }
    /// An attribute with an empty value; TNuDOMElement::setAttributeNode puts it on an element.
    [[nodiscard]] NuRef<TNuDOMAttribute> createAttribute(std::u16string_view name);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMAttribute> createAttribute(const TNuUtf8Text& name) {
        return createAttribute(name.view());
    }
    /// The same by its qualified name; the URI is only noted, as for createElementNS.
    [[nodiscard]] NuRef<TNuDOMAttribute> createAttributeNS(std::u16string_view namespaceURI,
                                                           std::u16string_view qualifiedName);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMAttribute> createAttributeNS(const TNuUtf8Text& namespaceURI,
                                                           const TNuUtf8Text& qualifiedName) {
        return createAttributeNS(namespaceURI.view(), qualifiedName.view());
    }
    /// A text; `data` is what is meant, and escaped where it is written.
    [[nodiscard]] NuRef<TNuDOMText> createTextNode(std::u16string_view data);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMText> createTextNode(const TNuUtf8Text& data) {
        return createTextNode(data.view());
    }
    /// A comment outside of the tree; throws for its text as TNuDOMComment::set_nodeValue does.
    [[nodiscard]] NuRef<TNuDOMComment> createComment(std::u16string_view data);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMComment> createComment(const TNuUtf8Text& data) {
        return createComment(data.view());
    }
    /// A CDATA section; throws for its text as TNuDOMCDATA::set_nodeValue does.
    [[nodiscard]] NuRef<TNuDOMCDATA> createCDATASection(std::u16string_view data);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMCDATA> createCDATASection(const TNuUtf8Text& data) {
        return createCDATASection(data.view());
    }
    /// An instruction; `data` is written as it is and not checked for "?>".
    [[nodiscard]] NuRef<TNuDOMProcessingInstruction>
    createProcessingInstruction(std::u16string_view target, std::u16string_view data);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMProcessingInstruction>
    createProcessingInstruction(const TNuUtf8Text& target, const TNuText& data) {
        return createProcessingInstruction(target.view(), data.view());
    }
    /// Never supported.
    void createDocumentFragment();
    /// Never supported: references are resolved where values are read.
    void createEntityReference(std::u16string_view name);
    /// Never supported: the tree has no document type.
    void get_doctype() const;
    /// Never supported. CreateCopy copies a node of another document, and appendChild adopts one.
    NuRef<TNuDOMNode> importNode(TNuDOMNode& node, bool deep);

    /// Makes a node of a class that has a name and puts it below `parent`, if there is one. Throws
    /// ENuDomNotSupported for the class of documents.
    TNuDOMNode& _CreateNode(const TNuDOMNodeClass& nodeClass, std::u16string_view name,
                            std::u16string_view namespaceURI, TNuDOMNode* parent,
                            TNuDOMPosition position, TNuDOMNode* reference);
    /// Makes a node of a class of character data and puts it below `parent`, if there is one.
    TNuDOMCharacterData& _CreateCharacterData(const TNuDOMNodeClass& nodeClass,
                                              std::u16string_view value, TNuDOMNode* parent,
                                              TNuDOMPosition position, TNuDOMNode* reference);
    /// Makes an element, notes the URI on it and puts it below `parent`, if there is one.
    TNuDOMElement& _CreateElement(std::u16string_view name, std::u16string_view namespaceURI,
                                  TNuDOMNode* parent, TNuDOMPosition position,
                                  TNuDOMNode* reference);
    /// @}

    /// \name Copying
    /// See TNuDOMNode::AddCopy.
    /// @{

    /// A copy of a node, of this document or another one, outside of the tree.
    template <class Node> [[nodiscard]] NuRef<Node> CreateCopy(const Node& node) {
        return static_cast<Node*>(copy(node).get());
    }
    /// A copy of the document, with its limits.
    [[nodiscard]] NuRef<TNuDOMDocument> CreateCopy() const;
    /// @}

    /// \name Processing instructions right below the document
    /// @{

    /// The data of the first one of that target, "" without one.
    [[nodiscard]] NuXmlString GetProcessingInstruction(std::u16string_view target) const;
    /// The same in UTF-8.
    [[nodiscard]] std::string GetProcessingInstruction(const TNuUtf8Text& target) const;
    /// Sets the data of the first one of that target, or makes one: at the front for "xml", in any
    /// letter case, else at the end.
    void SetProcessingInstruction(std::u16string_view target, std::u16string_view data);
    /// The same in UTF-8.
    void SetProcessingInstruction(const TNuUtf8Text& target, const TNuText& data) {
        SetProcessingInstruction(target.view(), data.view());
    }
    /// The same as SetProcessingInstruction: a second one of a target is not added.
    void AddProcessingInstruction(std::u16string_view target, std::u16string_view data);
    /// The same in UTF-8.
    void AddProcessingInstruction(const TNuUtf8Text& target, const TNuText& data) {
        AddProcessingInstruction(target.view(), data.view());
    }
    /// @}

    /// \name Finding elements
    /// @{

    /// The first element with an attribute whose local name is "id" and whose value is `id`, both
    /// in any letter case; in the order of a path "//*". Deliberate: quotes in `id` are dropped, as
    /// they are in a path, so no value with quotes is found.
    [[nodiscard]] TNuDOMElement* getElementById(std::u16string_view id);
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMElement* getElementById(const TNuUtf8Text& id) {
        return getElementById(id.view());
    }
    /// The elements of the document of that qualified name, in the order of a path "//name"; "*" is
    /// any name. The list does not follow the changes of the tree.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagName(std::u16string_view name);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagName(const TNuUtf8Text& name) {
        return getElementsByTagName(name.view());
    }
    /// The same by local name and resolved namespace.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagNameNS(std::u16string_view namespaceURI,
                                                                  std::u16string_view localName);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagNameNS(const TNuUtf8Text& namespaceURI,
                                                                  const TNuUtf8Text& localName) {
        return getElementsByTagNameNS(namespaceURI.view(), localName.view());
    }
    /// A new list of the elements at `path`, in the order of selection.
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(std::u16string_view path,
                                                             TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(const TNuUtf8Text& path,
                                                             TNuDOMSelectOptions options = {}) {
        return CreateElementList(path.view(), options);
    }
    /// The only element at `path`; null without one. Throws ENuDomException when there are more.
    TNuDOMElement* SelectSingleElement(std::u16string_view path, TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    TNuDOMElement* SelectSingleElement(const TNuUtf8Text& path, TNuDOMSelectOptions options = {}) {
        return SelectSingleElement(path.view(), options);
    }
    /// @}

    /// \name Loading
    /// Deliberate: only loadxml and set_innerxml clear the document before; the others put what
    /// they read behind what is there, so a second document element throws ENuDomHierarchyRequest.
    /// What is wrong with the XML throws as TNuSAXXMLReader::Parse does, with the name of the file
    /// where there is one; what was read before stays.
    ///
    /// White space that stands alone between tags, comments or instructions is not loaded, so a
    /// text of white space alone does not survive saving and loading. It does where
    /// xml:space="preserve" stands on its element or further up, in a CDATA section, beside other
    /// characters in the same text, and when TNuConformingOptions ask for it with cwAll (cwInline:
    /// without line breaks).
    /// @{

    /// Throws host::EReadError when there is no such file.
    bool LoadFromFile(const std::filesystem::path& fileName);
    /// From the position of the stream on.
    bool LoadFromStream(host::TStream& stream);
    /// The same with a counted stream, which may be dropped afterwards. Throws what its failure
    /// code says (host::checkResult).
    bool loadFromStream(host::IStream* stream);
    /// The document that the text is, in the place of what was there. A declared encoding has no
    /// meaning here.
    bool loadxml(std::u16string_view xml);
    /// The text is UTF-8, whatever its declaration says.
    bool loadxml(const TNuUtf8Text& xml) { return loadxml(xml.view()); }
    /// XML text (it begins with "<"), the name of a file, or a stream.
    bool load(const host::DOMSource& source);
    /// XML text or the name of a file, in UTF-8.
    bool load(const TNuUtf8Text& source) { return load(source.view()); }
    /// The same, read as the XML standard means it: what is not well-formed throws ENuXmlFault.
    /// `report`, if there is one, receives what was wrong, the fatal fault included.
    bool LoadFromFile(const std::filesystem::path& fileName, const TNuConformingOptions& options,
                      TNuLoadReport* report = nullptr);
    /// See LoadFromFile with options. The stream is read from its position on and stays the
    /// caller's.
    bool LoadFromStream(host::TStream& stream, const TNuConformingOptions& options,
                        TNuLoadReport* report = nullptr);
    /// See LoadFromFile with options.
    bool loadxml(std::u16string_view xml, const TNuConformingOptions& options,
                 TNuLoadReport* report = nullptr);
    /// The same in UTF-8.
    bool loadxml(const TNuUtf8Text& xml, const TNuConformingOptions& options,
                 TNuLoadReport* report = nullptr) {
        return loadxml(xml.view(), options, report);
    }
    /// See LoadFromFile with options and load.
    bool load(const host::DOMSource& source, const TNuConformingOptions& options,
              TNuLoadReport* report = nullptr);
    /// The same in UTF-8.
    bool load(const TNuUtf8Text& source, const TNuConformingOptions& options,
              TNuLoadReport* report = nullptr) {
        return load(source.view(), options, report);
    }
    /// Read by the rules of the reader alone, which forgives much and tells the report.
    bool LoadFromFile(const std::filesystem::path& fileName, TNuLoadReport& report);
    /// See LoadFromFile with a report. The stream is read from its position on.
    bool LoadFromStream(host::TStream& stream, TNuLoadReport& report);
    /// See LoadFromFile with a report.
    bool loadxml(std::u16string_view xml, TNuLoadReport& report);
    /// The same in UTF-8.
    bool loadxml(const TNuUtf8Text& xml, TNuLoadReport& report) {
        return loadxml(xml.view(), report);
    }
    /// See LoadFromFile with a report and load.
    bool load(const host::DOMSource& source, TNuLoadReport& report);
    /// The same in UTF-8.
    bool load(const TNuUtf8Text& source, TNuLoadReport& report) {
        return load(source.view(), report);
    }
    /// Always 0: loading is done when the call is.
    [[nodiscard]] std::int32_t asyncLoadState() const noexcept { return 0; }
    /// Whether the document is being loaded.
    [[nodiscard]] bool IsLoading() const noexcept;
    /// @}

    /// \name Saving
    /// In the encoding that the document's XML declaration names: UTF-8, UTF-16 (or UCS), else the
    /// 8-bit code page of the system. Where that is UTF-8, as almost everywhere, a single-byte page
    /// that the declaration names (see common/codePage.h) is written instead, so that others can
    /// read the document; under any other name only ASCII is written, which almost every encoding
    /// has.
    ///
    /// What a page lacks becomes a character reference in texts and values and between two CDATA
    /// sections, and "?" in comments. In a name or an instruction it throws host::EConvertError;
    /// SetEncoding(u"UTF-8") helps.
    ///
    /// Text of white space alone is written, but loading drops it: see there what keeps it.
    /// @{

    /// The encoding of the declaration in lower case, "" without one.
    [[nodiscard]] NuXmlString GetEncoding() const;
    /// Makes the declaration name an encoding, and makes a declaration where there is none.
    void SetEncoding(std::u16string_view name);
    /// The same in UTF-8.
    void SetEncoding(const TNuUtf8Text& name) { SetEncoding(name.view()); }
    /// Without line breaks of its own and without a byte-order mark, from the position of the
    /// stream on.
    void SaveToStream(host::TStream& stream) { SaveToStream(stream, false, false); }
    /// Throws host::Exception ("Failed to write all the data!") when an 8-bit save is cut short,
    /// and what the stream throws.
    void SaveToStream(host::TStream& stream, bool formatted, bool writeByteOrderMark);
    /// In the form that the options name.
    void SaveToStream(host::TStream& stream, const TNuSaveOptions& options);
    /// The same with a counted stream: without line breaks and without a mark.
    void SaveToStream(host::IStream* stream);
    /// Replaces the file when everything is written; after a failure the old file is there as it
    /// was. Begins with a byte-order mark.
    void SaveToFile(const std::filesystem::path& fileName, bool formatted = false);
    /// The same, not formatted, for callers that have the name of the file as UTF-16.
    void save(std::u16string_view fileName);
    /// The same in UTF-8.
    void save(const TNuUtf8Text& fileName) { save(fileName.view()); }
    /// @}

    /// \name Limits
    /// For documents, and paths, of strangers. They hold from the next operation on.
    /// @{

    /// The limits in force; by default there are none.
    [[nodiscard]] const TNuDOMLimits& Limits() const noexcept;
    /// Sets all limits at once; what the tree holds already is not looked at.
    void SetLimits(const TNuDOMLimits& limits) noexcept;
    /// @}

    /// A new object that tells what the implementation can do.
    [[nodiscard]] NuRef<TNuDOMImplementation> get_domImplementation() const;

    /// \name What TNuDOMNode describes
    /// @{

    using TNuDOMNode::CreateNodeList;
    using TNuDOMNode::FirstChild;
    using TNuDOMNode::get_firstChild;
    using TNuDOMNode::get_lastChild;
    using TNuDOMNode::LastChild;
    using TNuDOMNode::SelectSingleNode;
    using TNuDOMNode::set_innerxml;
    [[nodiscard]] NuXmlString get_nodeName() const override;
    void set_innerxml(std::u16string_view xml) override;
    /// The instructions and comments, then the document element.
    [[nodiscard]] TNuDOMNodeList& get_childNodes() override;
    [[nodiscard]] TNuDOMNode* get_firstChild() override;
    [[nodiscard]] TNuDOMNode* get_lastChild() override;
    [[nodiscard]] bool hasChildNodes() const override { return get_firstChild() != nullptr; }
    [[nodiscard]] TNuDOMNode* FirstChild() override { return get_firstChild(); }
    [[nodiscard]] TNuDOMNode* LastChild() override { return get_lastChild(); }
    void appendChild(TNuDOMNode& child) override;
    void insertBefore(TNuDOMNode& child, TNuDOMNode* reference) override;
    NuRef<TNuDOMNode> removeChild(TNuDOMNode& child) override;
    NuRef<TNuDOMNodeList> CreateNodeList(std::u16string_view path,
                                         TNuDOMSelectOptions options = {}) override;
    TNuDOMNode* SelectSingleNode(std::u16string_view path,
                                 TNuDOMSelectOptions options = {}) override;
    /// @}

    /// \cond internal
    [[nodiscard]] nu::DocumentParts& parts() const noexcept { return *parts_; }
    /// \endcond

private:
    friend class nu::DocumentLifetime;

    TNuDOMDocument();
    ~TNuDOMDocument();

    NUXML_LOCAL void _addChild(TNuDOMNode& child, TNuDOMPosition position,
                               TNuDOMNode* reference) override;
    NUXML_LOCAL void _removeChild(TNuDOMNode& child) override;
    [[nodiscard]] NUXML_LOCAL TNuDOMProcessingInstruction*
    findInstruction(std::u16string_view target) const;
    [[nodiscard]] NuRef<TNuDOMNode> copy(const TNuDOMNode& node);
    template <class Node>
    NuRef<Node> createNamed(std::u16string_view name, std::u16string_view uri);
    template <class Node> NuRef<Node> createText(std::u16string_view data);

    const std::unique_ptr<nu::DocumentParts> parts_;
    TNuDOMElement* documentElement_ = nullptr;
};
