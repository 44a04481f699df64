// Collects rows out of a document, the dearest first.

#include <algorithm>
#include <functional>
#include <iostream>
#include <vector>

#include "nuXmlDOM.h"

struct Row {
    std::string name;
    int count;
    double price;
};

int main() try {
    std::vector<Row> rows;
    const auto document = NuLoadDocument("stock.xml");
    for (const TNuDOMElement& item : document->Select("stock/item")) {
        rows.push_back({item.Get("name", ""), item.Get("@count", 0), item.Get("@price", 0.0)});
    }
    std::ranges::sort(rows, std::greater(), &Row::price);
    for (const Row& row : rows) {
        std::cout << row.name << ": " << row.count << " x " << row.price << '\n';
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
