#include "nuXmlDOM/path/path.h"

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/path/pathSelection.h"

namespace {

nu::PathNodes select(const nu::PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                     nu::PathNodes found = {}) {
    if (!nu::NodeAccess::is<TNuDOMElement>(context) &&
        !nu::NodeAccess::is<TNuDOMDocument>(context)) {
        throw ENuDomNotSupported(nu::cNotSupported);
    }
    nu::selectNodes(program, context, elementsOnly, found,
                    context.OwnerDocument()->Limits().SelectedNodes);
    return found;
}

} // namespace

TNuDOMPath::TNuDOMPath(std::u16string_view path, TNuDOMSelectOptions options)
    : program_(nu::readPath(path, options)) {}

TNuDOMPath::~TNuDOMPath() = default;

NuXmlString TNuDOMPath::Text() const { return NuXmlString(program_->text); }

TNuDOMSelectOptions TNuDOMPath::Options() const noexcept { return program_->options; }

NuXmlString TNuDOMPath::Complaint() const { return program_->complaint; }

NuRef<TNuDOMNodeList> TNuDOMPath::CreateNodeList(TNuDOMNode& context) const {
    NuRef<TNuDOMNodeList> list = TNuDOMNodeList::Create(&context, context.OwnerDocument(), false);
    nu::NodeAccess::fill(*list,
                         select(*program_, context, false, list->OwnerDocument()->takeRoom()));
    return list;
}

NuRef<TNuDOMElementList> TNuDOMPath::CreateElementList(TNuDOMNode& context) const {
    NuRef<TNuDOMElementList> list =
        TNuDOMElementList::Create(&context, context.OwnerDocument(), false);
    nu::NodeAccess::fill(*list,
                         select(*program_, context, true, list->OwnerDocument()->takeRoom()));
    return list;
}

TNuDOMNode* TNuDOMPath::SelectSingleNode(TNuDOMNode& context) const {
    return nu::singleNode(program_->text, program_->options, select(*program_, context, false));
}

TNuDOMElement* TNuDOMPath::SelectSingleElement(TNuDOMNode& context) const {
    return nu::singleElement(program_->text, program_->options, select(*program_, context, true));
}
