#include "nuObj2Xml/elementForm.h"

#include "nuXmlParser/escape.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

namespace {

void appendAttribute(NuXmlString& text, std::u16string_view name, std::u16string_view value) {
    text.append(name).append(u"=\"").append(value).append(u"\"");
}

NuXmlString schemaLocationAttribute(std::u16string_view instancePrefix, std::u16string_view uri,
                                    std::u16string_view location) {
    NuXmlString text;
    if (location.empty()) {
        return text;
    }
    text = instancePrefix;
    if (location.find(cNuSpace) == location.npos) {
        appendAttribute(text, u"noNamespaceSchemaLocation", NuStrToXML(location));
    } else {
        appendAttribute(text, u"schemaLocation", NuStrToXML(uri) + cNuSpace + NuStrToXML(location));
    }
    return text;
}

} // namespace

ElementForm::ElementForm(std::u16string_view uri, std::u16string_view prefix,
                         std::u16string_view schemaLocation, TNuNamespaceOptions options)
    : instancePrefix_(options.has(noUseXSIPrefix) ? u"xsi:" : u""),
      schemaPrefix_(options.has(noUseXSDPrefix) ? u"xsd:" : u""),
      schemaLocation_(schemaLocationAttribute(instancePrefix_, uri, schemaLocation)) {
    // Deliberate: an empty prefix that is to be used leaves its colon.
    if (options.has(noUseTNSPrefix)) {
        prefix_.append(prefix).push_back(cNuColon);
    }
    const auto declare = [this](std::u16string_view declared, std::u16string_view value) {
        NuXmlString name(declarationPrefix);
        if (!declared.empty()) {
            name.append(1, cNuColon).append(declared);
        }
        appendAttribute(rootAttributes_, name, value);
        rootAttributes_.push_back(cNuSpace);
    };
    if (options.has(noAddTNS) && !uri.empty()) {
        if (options.has(noUseDefaultNS)) {
            declare({}, NuStrToXML(uri));
        } else if (!prefix.empty()) {
            declare(prefix, NuStrToXML(uri));
        }
    }
    if (options.has(noAddXSI)) {
        declare(u"xsi", instanceNamespace);
    }
    if (options.has(noAddXSD)) {
        declare(u"xsd", schemaNamespace);
    }
    if (!schemaLocation_.empty()) {
        rootAttributes_.append(schemaLocation_).push_back(cNuSpace);
    }
}

void ElementForm::appendName(NuXmlString& text, std::u16string_view name) const {
    text.append(prefix_).append(name);
}

void ElementForm::appendType(NuXmlString& text, std::u16string_view prefix,
                             std::u16string_view type) const {
    text.append(instancePrefix_).append(u"type=\"").append(prefix).append(type).append(u"\">");
}

void ElementForm::appendRootStart(NuXmlString& text, std::u16string_view name,
                                  std::u16string_view className) const {
    text.push_back(cNuLt);
    appendName(text, name);
    text.append(u" ").append(rootAttributes_);
    appendType(text, prefix_, className);
}

void ElementForm::appendUntypedRootStart(NuXmlString& text, std::u16string_view name) const {
    text.push_back(cNuLt);
    appendName(text, name);
    if (!rootAttributes_.empty()) {
        text.push_back(cNuSpace);
        text.append(rootAttributes_, 0, rootAttributes_.size() - 1);
    }
    text.push_back(cNuGt);
}

void ElementForm::appendPropertyStart(NuXmlString& text, std::u16string_view name,
                                      std::u16string_view schemaType) const {
    text.push_back(cNuLt);
    appendName(text, name);
    text.push_back(cNuSpace);
    appendType(text, schemaPrefix_, schemaType);
}

void ElementForm::appendUntypedStart(NuXmlString& text, std::u16string_view name) const {
    text.push_back(cNuLt);
    appendName(text, name);
    text.push_back(cNuGt);
}

void ElementForm::appendNilStart(NuXmlString& text, std::u16string_view name) const {
    text.push_back(cNuLt);
    appendName(text, name);
    text.append(u" ").append(instancePrefix_).append(u"nil=\"true\">");
}

void ElementForm::appendEnd(NuXmlString& text, std::u16string_view name) const {
    text.append(u"</");
    appendName(text, name);
    text.push_back(cNuGt);
}

} // namespace nu
