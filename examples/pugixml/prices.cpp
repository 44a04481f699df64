#include <algorithm>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include <pugixml.hpp>

struct Row {
    std::string name;
    int count;
    double price;
};

int main() {
    std::vector<Row> rows;
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file("stock.xml");
    if (!result) {
        std::cerr << result.description() << '\n';
        return 1;
    }
    for (pugi::xml_node item : document.child("stock").children("item")) {
        rows.push_back({item.child_value("name"), item.attribute("count").as_int(),
                        item.attribute("price").as_double()});
    }
    std::ranges::sort(rows, std::greater(), &Row::price);
    for (const Row& row : rows) {
        std::cout << row.name << ": " << row.count << " x " << row.price << '\n';
    }
}
