// Merges a delivery into the stock: what is there counts more, what is new is copied.

#include <iostream>

#include "nuXmlDOM.h"

int main() try {
    const auto document = NuLoadDocument("stock.xml");
    const auto delivery = NuLoadDocument("delivery.xml");
    TNuDOMElement& stock = document->At("stock");
    for (const TNuDOMElement& item : delivery->Select("delivery/item")) {
        if (auto* known = stock.Find("item[@id='" + item.getAttribute("id") + "']")) {
            known->Set("@count", known->Get("@count", 0) + item.Get("@count", 0));
        } else {
            stock.AddCopy(item);
        }
    }
    for (const TNuDOMElement& item : stock.ChildElements("item")) {
        std::cout << item << '\n';
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
