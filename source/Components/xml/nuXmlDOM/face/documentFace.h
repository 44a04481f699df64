#pragma once

#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/face/nodeFace.h"

namespace nu {

class DocumentFace final : public NodeFace<TNuDOMDocument, host::IDOMPersist> {
public:
    using NodeFace<TNuDOMDocument, host::IDOMPersist>::NodeFace;
    using NodeFace<TNuDOMDocument, host::IDOMPersist>::SaveToStream;
    using ElementResult = host::Ref<INuDOMElement>;
    using ListResult = host::Ref<host::IDOMNodeList>;
    using Text = std::u16string_view;

    // The document element

    Result get_documentElement(host::Ref<host::IDOMElement>& element) noexcept override {
        return giveInterface(element, [&] { return object_.get_documentElement(); });
    }
    Result set_documentElement(host::IDOMElement* element) noexcept override {
        return host::guardCall(
            [&] { object_.set_documentElement(toObject<TNuDOMElement>(element)); });
    }
    Result get_rootNode(ElementResult& element) noexcept override {
        return giveInterface(element, [&] { return object_.get_rootNode(); });
    }
    Result CreateRootNode(Text name, ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& { return object_.CreateRootNode(name); });
    }
    Result CreateRootNode(Text name, Text namespaceURI, ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& { return object_.CreateRootNode(name, namespaceURI); });
    }
    Result Clear() noexcept override {
        return host::guardCall([&] { object_.Clear(); });
    }

    // Making nodes

    Result createElement(Text tagName, host::Ref<host::IDOMElement>& element) noexcept override {
        return giveInterface(element, [&] { return object_.createElement(tagName); });
    }
    Result createElementNS(Text namespaceURI, Text qualifiedName,
                           host::Ref<host::IDOMElement>& element) noexcept override {
        return giveInterface(element,
                             [&] { return object_.createElementNS(namespaceURI, qualifiedName); });
    }
    Result createAttribute(Text name, host::Ref<host::IDOMAttr>& attribute) noexcept override {
        return giveInterface(attribute, [&] { return object_.createAttribute(name); });
    }
    Result createAttributeNS(Text namespaceURI, Text qualifiedName,
                             host::Ref<host::IDOMAttr>& attribute) noexcept override {
        return giveInterface(
            attribute, [&] { return object_.createAttributeNS(namespaceURI, qualifiedName); });
    }
    Result createTextNode(Text data, host::Ref<host::IDOMText>& text) noexcept override {
        return giveInterface(text, [&] { return object_.createTextNode(data); });
    }
    Result createComment(Text data, host::Ref<host::IDOMComment>& comment) noexcept override {
        return giveInterface(comment, [&] { return object_.createComment(data); });
    }
    Result createCDATASection(Text data,
                              host::Ref<host::IDOMCDATASection>& section) noexcept override {
        return giveInterface(section, [&] { return object_.createCDATASection(data); });
    }
    Result createProcessingInstruction(
        Text target, Text data,
        host::Ref<host::IDOMProcessingInstruction>& instruction) noexcept override {
        return giveInterface(instruction,
                             [&] { return object_.createProcessingInstruction(target, data); });
    }

    // Never supported; what they are given does not matter.

    Result
    createDocumentFragment(host::Ref<host::IDOMDocumentFragment>& fragment) noexcept override {
        return guardWithoutResult(fragment, [&] { object_.createDocumentFragment(); });
    }
    Result
    createEntityReference(Text name,
                          host::Ref<host::IDOMEntityReference>& reference) noexcept override {
        return guardWithoutResult(reference, [&] { object_.createEntityReference(name); });
    }
    Result get_doctype(host::Ref<host::IDOMDocumentType>& doctype) noexcept override {
        return guardWithoutResult(doctype, [&] { object_.get_doctype(); });
    }
    Result importNode(host::IDOMNode* /*node*/, bool deep,
                      host::Ref<host::IDOMNode>& imported) noexcept override {
        return giveInterface(imported, [&] { return object_.importNode(object_, deep); });
    }
    Result set_OnAsyncLoad(const host::DOMAsyncLoadEvent& /*event*/) noexcept override {
        return host::guardCall([] { throw ENuDomNotSupported(messages::operationNotSupported); });
    }

    // Finding elements

    Result getElementById(Text id, host::Ref<host::IDOMElement>& element) noexcept override {
        return giveInterface(element, [&] { return object_.getElementById(id); });
    }
    Result getElementsByTagName(Text name, ListResult& elements) noexcept override {
        return giveInterface(elements, [&] { return object_.getElementsByTagName(name); });
    }
    Result getElementsByTagNameNS(Text namespaceURI, Text localName,
                                  ListResult& elements) noexcept override {
        return giveInterface(
            elements, [&] { return object_.getElementsByTagNameNS(namespaceURI, localName); });
    }
    Result SelectSingleElement(Text path, TNuDOMSelectOptions options,
                               ElementResult& element) noexcept override {
        return giveInterface(element, [&] { return object_.SelectSingleElement(path, options); });
    }

    // Instructions, and what the document is

    Result GetProcessingInstruction(Text target, std::u16string& data) noexcept override {
        return host::guardCall(data, [&] { return object_.GetProcessingInstruction(target); });
    }
    Result SetProcessingInstruction(Text target, Text data) noexcept override {
        return host::guardCall([&] { object_.SetProcessingInstruction(target, data); });
    }
    Result AddProcessingInstruction(Text target, Text data) noexcept override {
        return host::guardCall([&] { object_.AddProcessingInstruction(target, data); });
    }
    Result
    get_domImplementation(host::Ref<host::IDOMImplementation>& implementation) noexcept override {
        return giveInterface(implementation, [&] { return object_.get_domImplementation(); });
    }
    Result GetEncoding(std::u16string& encoding) noexcept override {
        return host::guardCall(encoding, [&] { return object_.GetEncoding(); });
    }

    // Loading

    Result asyncLoadState(std::int32_t& state) noexcept override {
        return host::guardCall(state, [&] { return object_.asyncLoadState(); });
    }
    Result load(const host::DOMSource& source, bool& isLoaded) noexcept override {
        return host::guardCall(isLoaded, [&] { return object_.load(source); });
    }
    Result loadxml(Text xml, bool& isLoaded) noexcept override {
        return host::guardCall(isLoaded, [&] { return object_.loadxml(xml); });
    }
    Result loadFromStream(host::TStream& stream, bool& isLoaded) noexcept override {
        return host::guardCall(isLoaded, [&] { return object_.LoadFromStream(stream); });
    }
    Result loadFromStream(host::IStream* stream, bool& isLoaded) noexcept override {
        return host::guardCall(isLoaded, [&] { return object_.loadFromStream(stream); });
    }
    Result LoadFromFile(Text fileName, bool& isLoaded) noexcept override {
        return host::guardCall(isLoaded, [&] {
            return object_.LoadFromFile(host::TFileStream::systemPath(fileName));
        });
    }
    Result LoadFromStream(host::TStream& stream, bool& isLoaded) noexcept override {
        return loadFromStream(stream, isLoaded);
    }

    // Saving

    Result save(Text fileName) noexcept override {
        return host::guardCall([&] { object_.save(fileName); });
    }
    Result saveToStream(host::TStream& stream) noexcept override { return SaveToStream(stream); }
    Result saveToStream(host::IStream* stream) noexcept override {
        return host::guardCall([&] { object_.SaveToStream(stream); });
    }
    Result SaveToStream(host::TStream& stream, bool formatted,
                        bool writeByteOrderMark) noexcept override {
        return host::guardCall(
            [&] { object_.SaveToStream(stream, formatted, writeByteOrderMark); });
    }
    Result SaveToFile(Text fileName, bool formatted) noexcept override {
        return host::guardCall(
            [&] { object_.SaveToFile(host::TFileStream::systemPath(fileName), formatted); });
    }
};

} // namespace nu
