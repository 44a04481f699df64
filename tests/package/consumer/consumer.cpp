#include <cstdio>

#include <nuObj2Xml.h>
#include <nuXmlDOM.h>
#include <nuXmlParser.h>
#include <nuXmlSax.h>

/// Uses all three libraries from outside, with an exception that crosses them.
int main() {
    if (host::DefaultDOMVendor().empty()) {
        std::puts("nothing has registered the vendors");
        return 1;
    }
    TNuSAXXMLReader reader;
    reader.OnStartElement = [](auto&, auto&, auto&, auto&, host::IAttributes& attributes) {
        const NuXmlString title = NuXMLToStr(attributes.getValue(u"title"));
        std::printf("title: %s\n", NuToUtf8(title).c_str());
        throw host::Exception(u"seen enough");
    };
    try {
        reader.ParseBytes(R"(<book title="Home &amp; Garden"/>)");
    } catch (const ENuSaxHandledAbort&) {
        return 0;
    }
    return 1;
}
