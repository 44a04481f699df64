#include "nuXmlDOM/core/document.h"

NuRef<TNuDOMNodeList> TNuDOMElement::CreateNodeList(std::u16string_view, TNuDOMSelectOptions) {
    raiseNotSupported();
}
TNuDOMNode* TNuDOMElement::SelectSingleNode(std::u16string_view, TNuDOMSelectOptions) {
    raiseNotSupported();
}
NuRef<TNuDOMElementList> TNuDOMElement::CreateElementList(std::u16string_view,
                                                          TNuDOMSelectOptions) {
    raiseNotSupported();
}
TNuDOMElement* TNuDOMElement::SelectSingleElement(std::u16string_view, TNuDOMSelectOptions) {
    raiseNotSupported();
}
NuRef<TNuDOMElementList> TNuDOMElement::getElementsByTagName(std::u16string_view) {
    raiseNotSupported();
}
NuRef<TNuDOMElementList> TNuDOMElement::getElementsByTagNameNS(std::u16string_view,
                                                               std::u16string_view) {
    raiseNotSupported();
}
NuRef<TNuDOMNodeList> TNuDOMDocument::CreateNodeList(std::u16string_view, TNuDOMSelectOptions) {
    raiseNotSupported();
}
TNuDOMNode* TNuDOMDocument::SelectSingleNode(std::u16string_view, TNuDOMSelectOptions) {
    raiseNotSupported();
}
NuRef<TNuDOMElementList> TNuDOMDocument::CreateElementList(std::u16string_view,
                                                           TNuDOMSelectOptions) {
    raiseNotSupported();
}
TNuDOMElement* TNuDOMDocument::SelectSingleElement(std::u16string_view, TNuDOMSelectOptions) {
    raiseNotSupported();
}
NuRef<TNuDOMElementList> TNuDOMDocument::getElementsByTagName(std::u16string_view) {
    raiseNotSupported();
}
NuRef<TNuDOMElementList> TNuDOMDocument::getElementsByTagNameNS(std::u16string_view,
                                                                std::u16string_view) {
    raiseNotSupported();
}
TNuDOMElement* TNuDOMDocument::getElementById(std::u16string_view) { raiseNotSupported(); }
void TNuDOMNodeList::Sort(std::u16string_view) {}
