#include "nuXmlSax/checkedContent.h"

#include "nuXmlParser/conforming/xmlNames.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

CheckedName checkedName(std::string_view name) {
    using Form = CheckedName::Form;
    CheckedName checked;
    const bool isName =
        skipName(name.data(), name.data() + name.size()) == name.data() + name.size();
    if (!isName || !isQualifiedName(name)) {
        checked.elementForm = checked.attributeForm = Form::Refused;
        return checked;
    }
    const std::string_view prefix = prefixOf(name);
    checked.prefixLength = static_cast<std::uint32_t>(prefix.empty() ? 0 : prefix.size() + 1);
    // What is said of these prefixes is for the stage.
    const bool declares = isNamespaceDeclaration(name);
    checked.elementForm = prefix == declarationPrefixA ? Form::Refused : Form::Plain;
    checked.attributeForm = declares ? Form::Declaration : Form::Plain;
    return checked;
}

} // namespace nu
