// Objects of several classes in one list, with a set, a map and a reference; what is said of a text
// that does not fit; and the same objects as a table of comma-separated values.

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/csvDataSet.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/rangeDataSet.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"

enum class Side { Left, Top, Right, Bottom };

template <> struct host::EnumNames<Side> {
    static constexpr auto all = host::names<Side>({{Side::Left, u"left"},
                                                   {Side::Top, u"top"},
                                                   {Side::Right, u"right"},
                                                   {Side::Bottom, u"bottom"}});
};

class TShape : public host::Published<TShape> {
public:
    std::u16string Name;
    host::Set<Side> Glued;
    TShape* Below = nullptr;

    static constexpr auto published =
        host::publish<TShape>(u"TShape", host::prop<&TShape::Name>(), host::prop<&TShape::Glued>(),
                              host::ref<&TShape::Below>());
};

class TCircle : public host::Published<TCircle, TShape> {
public:
    double Radius = 0;

    static constexpr auto published =
        host::publish<TCircle>(u"TCircle", host::prop<&TCircle::Radius>());
};

class TDrawing : public host::Published<TDrawing> {
public:
    std::vector<std::unique_ptr<TShape>> Shapes;
    std::map<std::u16string, double> Scales;

    static constexpr auto published = host::publish<TDrawing>(
        u"TDrawing", host::prop<&TDrawing::Shapes>(), host::prop<&TDrawing::Scales>());
};

struct Stock {
    std::int32_t number = 0;
    std::u16string name;
    std::optional<double> price;
};

template <>
inline constexpr auto host::describe<Stock> = host::publish<Stock>(u"Stock",
                                                                   host::prop<&Stock::number>(),
                                                                   host::prop<&Stock::name>(),
                                                                   host::prop<&Stock::price>());

namespace {

void showClasses() {
    TDrawing drawing;
    drawing.Shapes.push_back(std::make_unique<TShape>());
    drawing.Shapes.push_back(std::make_unique<TCircle>());
    drawing.Shapes[0]->Name = u"ground";
    drawing.Shapes[0]->Glued = {Side::Left, Side::Right};
    drawing.Shapes[1]->Name = u"wheel";
    drawing.Shapes[1]->Below = drawing.Shapes[0].get();
    drawing.Scales = {{u"x", 1}, {u"y", 0.5}};
    const NuXmlString text = NuSerializeObject2Xml(drawing);
    std::cout << NuToUtf8(text) << '\n';

    host::RegisterClass(host::classOf<TCircle>); // a text can make one from now on
    TDrawing other;
    NuDeSerializeObject(other, text);
    std::cout << NuToUtf8(other.Shapes[1]->Below->Name) << '\n';
}

void showErrors() {
    TDrawing drawing;
    host::TMemoryViewStream stream("<Drawing>\n"
                                   "  <Shapes>\n"
                                   "    <item type=\"TCircle\"><Radius>1,5</Radius></item>\n"
                                   "  </Shapes>\n"
                                   "</Drawing>\n");
    try {
        NuDeSerializeObject(drawing, stream);
    } catch (const host::EConvertError& error) {
        std::cout << error.what() << '\n';
        // '1,5' is not a valid floating point value (at Drawing/Shapes/item[1]/Radius, line 3, ...
    }
}

void showTable() {
    host::CsvDataSet table;
    table.LoadText("number,name,price\n7,\"nails, long\",1.5\n8,glue,\n");
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<rows/>");
    TNuDOMElement& rows = *document->get_documentElement();
    NuSerialize(table, rows);

    std::vector<Stock> stock;
    host::RangeDataSet<Stock> records(stock);
    NuDeserialize(rows, records);
    stock[1].price = 2.25;

    host::TMemoryStream out;
    host::writeCsv(records, out);
    std::cout << std::string_view(reinterpret_cast<const char*>(out.Memory()),
                                  static_cast<std::size_t>(out.GetSize()));
}

} // namespace

int main() {
    showClasses();
    showErrors();
    showTable();
}
