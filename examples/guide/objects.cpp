// The guide: objects to XML and back.

#include <iostream>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "nuObj2Xml.h"

class TBook : public host::Published<TBook> {
public:
    std::u16string Title;
    std::int32_t Year = 0;
    std::vector<std::u16string> Authors;

    // What of the class goes to XML: no macros, no generated code.
    static constexpr auto published =
        host::publish<TBook>(u"TBook", host::prop<&TBook::Title>(), host::prop<&TBook::Year>(),
                             host::prop<&TBook::Authors>());
};

int main() {
    TBook book;
    book.Title = u"Tools & Toys";
    book.Year = 1998;
    book.Authors = {u"Ada", u"Li"};

    const NuXmlString xml = NuSerializeObject2Xml(book);
    std::cout << NuToUtf8(xml) << '\n';

    TBook read;
    NuDeSerializeObject(read, xml);
    std::cout << NuToUtf8(read.Title) << ", " << read.Authors.size() << " authors\n";
}
