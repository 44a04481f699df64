#include "nuXmlDOM/path/path.h"

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/path/pathSelection.h"
#include "nuXmlDOM/path/pathTree.h"
#include "nuXmlDOM/upkeep/documentParts.h"

namespace {

void checkContext(const TNuDOMNode& context) {
    if (!nu::isPathContext(context)) {
        throw ENuDomNotSupported(nu::messages::operationNotSupported);
    }
}

/// The context for selections that make nothing.
TNuDOMNode& unchanged(const TNuDOMNode& context, TNuDOMSelectOptions options) {
    if (options.has(soCreate)) {
        throw ENuDomNoModificationAllowed(nu::messages::noMakingInConstant);
    }
    return const_cast<TNuDOMNode&>(context);
}

nu::PathNodes select(const nu::PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                     nu::PathNodes found = {}) {
    checkContext(context);
    nu::PathWork work(context.OwnerDocument()->Limits());
    nu::selectNodes(program, context, elementsOnly, found, work);
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
    nu::Snapshots::fill(
        *list, select(*program_, context, false, list->OwnerDocument()->parts().takeRoom()));
    return list;
}

NuRef<TNuDOMElementList> TNuDOMPath::CreateElementList(TNuDOMNode& context) const {
    NuRef<TNuDOMElementList> list =
        TNuDOMElementList::Create(&context, context.OwnerDocument(), false);
    nu::Snapshots::fill(
        *list, select(*program_, context, true, list->OwnerDocument()->parts().takeRoom()));
    return list;
}

TNuDOMNode* TNuDOMPath::SelectSingleNode(TNuDOMNode& context) const {
    return nu::singleNode(program_->text, program_->options, select(*program_, context, false));
}

TNuDOMElement* TNuDOMPath::SelectSingleElement(TNuDOMNode& context) const {
    return nu::singleElement(program_->text, program_->options, select(*program_, context, true));
}

TNuDOMSelection<TNuDOMElement> TNuDOMPath::Select(TNuDOMNode& context) const {
    return TNuDOMSelection<TNuDOMElement>(CreateElementList(context));
}

TNuDOMSelection<const TNuDOMElement> TNuDOMPath::Select(const TNuDOMNode& context) const {
    return TNuDOMSelection<const TNuDOMElement>(CreateElementList(unchanged(context, Options())));
}

TNuDOMSelection<TNuDOMNode> TNuDOMPath::SelectNodes(TNuDOMNode& context) const {
    return TNuDOMSelection<TNuDOMNode>(CreateNodeList(context));
}

TNuDOMSelection<const TNuDOMNode> TNuDOMPath::SelectNodes(const TNuDOMNode& context) const {
    return TNuDOMSelection<const TNuDOMNode>(CreateNodeList(unchanged(context, Options())));
}

TNuDOMElement* TNuDOMPath::Find(TNuDOMNode& context) const {
    return static_cast<TNuDOMElement*>(first(context, true));
}

const TNuDOMElement* TNuDOMPath::Find(const TNuDOMNode& context) const {
    return Find(unchanged(context, Options()));
}

TNuDOMNode* TNuDOMPath::first(TNuDOMNode& context, bool elementsOnly) const {
    checkContext(context);
    return nu::firstSelected(*program_, context, elementsOnly);
}
