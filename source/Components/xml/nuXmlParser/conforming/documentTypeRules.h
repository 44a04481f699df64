#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "nuXmlParser/conforming/attributeDeclarations.h"
#include "nuXmlParser/conforming/declarationText.h"
#include "nuXmlParser/conforming/entityRules.h"
#include "nuXmlParser/conforming/markupRules.h"
#include "nuXmlParser/conforming/sourceForm.h"

namespace nu {

/// The document type: reads what the internal subset declares and leaves nothing of it but its line
/// breaks.
class DocumentTypeRules {
public:
    DocumentTypeRules(TextStack& texts, EntityRules& entities, ElementDeclarations& declarations,
                      MarkupRules& markup, const LimitRules& limits, TNuSourceForm& form,
                      bool hasNamespaces)
        : texts_(texts), entities_(entities), declarations_(declarations), markup_(markup),
          limits_(limits), form_(form), hasNamespaces_(hasNamespaces) {}

    /// The document type whose "<!DOCTYPE" is at the place of the text.
    void pass();

private:
    std::int64_t passHead(std::string& asWritten);
    void passSubset();
    bool passSpace();
    void passReference();
    void passMarkup();
    void passComment();
    void passInstruction();
    const char* completeDeclaration();
    void readEntity(DeclarationText text);
    void readEntityValue(std::string_view literal, std::string& value);
    void readElement(DeclarationText text);
    void readContentModel(DeclarationText& text);
    void readMixedContent(DeclarationText& text);
    void readAttributeList(DeclarationText text);
    bool readAttributeType(DeclarationText& text);
    void readEnumeration(DeclarationText& text, bool areNames);
    void readDefault(DeclarationText& text, AttributeDeclaration& attribute);
    void readNotation(DeclarationText text);
    std::string_view needUncolonized(DeclarationText& text);
    std::string_view needQualified(DeclarationText& text);

    TextStack& texts_;
    EntityRules& entities_;
    ElementDeclarations& declarations_;
    MarkupRules& markup_;
    const LimitRules& limits_;
    TNuSourceForm& form_;
    bool hasNamespaces_;
    DroppedText dropped_; ///< outlives a fault, behind which what was read is still written
    bool doDeclarationsCount_ = true; ///< nothing was left out before them that might go first
};

} // namespace nu
