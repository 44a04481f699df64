// Selects with one path of each kind, and prints what is found.

#include <iostream>

#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace {

void show(TNuDOMElement& context, std::u16string_view path, TNuDOMSelectOptions options = {}) {
    std::cout << NuToUtf8(path) << " ->";
    try {
        const auto found = context.CreateNodeList(path, options);
        for (TNuDOMNode* node : *found) {
            std::cout << ' ' << NuToUtf8(node->get_xml());
        }
    } catch (const host::Exception& error) {
        std::cout << ' ' << error.what();
    }
    std::cout << '\n';
}

} // namespace

int main() {
    const auto document =
        NuParseDocument(R"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/></c></root>)");
    TNuDOMElement& root = *document->get_documentElement();

    show(root, u"a");              // children of the context
    show(root, u"a/@id");          // attributes
    show(root, u"a[@id=2]");       // without quotation marks it is a number: "02" is 2
    show(root, u"a[@id='2']");     // with them it is text
    show(root, u"a[b='X'] | c/*"); // letter case does not count for "="
    show(root, u"a[last()]");      // the last of the list
    show(root, u"//a[1]");         // the first of the whole search, not one for each parent
    show(root, u"*/a[1]");         // one for each parent
    show(*root.FirstChildElement(), u"./a"); // from its parent
    show(*root.FirstChildElement(), u"/root/c/a/..");
    show(root, u"A[@ID='1']", soCaseInsensitive);
    show(root, u"a[@id=b]");

    // Find it or make it, with everything that leads there.
    root.SelectSingleElement(u"c/settings/size", soCreate)->SetAsInteger(12);
    show(root, u"c/settings");

    // Selecting often: the path is read once.
    const TNuDOMPath ids(u"a/@id");
    std::cout << ids.CreateNodeList(root)->Count() << " and "
              << ids.CreateNodeList(*root.GetChildElement(u"c"))->Count() << '\n';

    try {
        root.SelectSingleElement(u"c/price", soRaise);
    } catch (const ENuDomException& error) {
        std::cout << error.what() << '\n';
    }
}
