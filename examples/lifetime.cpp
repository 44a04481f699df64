// What keeps a document and its nodes alive.

#include <iostream>

#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace {

void print(const TNuDOMNode& node) { std::cout << NuToUtf8(node.get_xml()) << '\n'; }

} // namespace

int main() {
    NuRef<TNuDOMDocument> document = NuParseDocument("<shelf><a/><b/><c/></shelf>");

    // A handle on any node keeps all of its document.
    NuRef<TNuDOMElement> shelf = document->get_documentElement();
    document.reset();
    print(*shelf);

    // A node that is taken out of the tree stays as long as a handle holds it ...
    NuRef<TNuDOMElement> taken = shelf->RemoveElement(u"b");
    print(*taken);
    // ... and can be put back, or into another document, which adopts it.
    const NuRef<TNuDOMDocument> other = NuParseDocument("<box/>");
    other->get_documentElement()->appendChild(*taken);
    taken.reset();
    print(*other);

    // A list of a node follows the tree, a selection does not. Both keep the document; keep the
    // handle in a variable, a loop over a temporary one would outlive it.
    const NuRef<TNuDOMElementList> selected = shelf->CreateElementList(u"*");
    TNuDOMNodeList& children = shelf->get_childNodes();
    shelf->RemoveElement(u"a");
    std::cout << children.Count() << " child, " << selected->Count() << " selected\n";
    for (TNuDOMNode* node : *selected) {
        if (node != nullptr) { // an entry is null when its node has gone
            print(*node);
        }
    }
}
