#include <iostream>
#include <string>

#include <pugixml.hpp>

int main() {
    pugi::xml_document document;
    pugi::xml_document delivery;
    for (const auto& [target, file] :
         {std::pair(&document, "stock.xml"), std::pair(&delivery, "delivery.xml")}) {
        const pugi::xml_parse_result result = target->load_file(file);
        if (!result) {
            std::cerr << file << ": " << result.description() << '\n';
            return 1;
        }
    }
    pugi::xml_node stock = document.child("stock");
    for (pugi::xml_node item : delivery.child("delivery").children("item")) {
        if (pugi::xml_node known =
                stock.find_child_by_attribute("item", "id", item.attribute("id").value())) {
            known.attribute("count") =
                known.attribute("count").as_int() + item.attribute("count").as_int();
        } else {
            stock.append_copy(item);
        }
    }
    for (pugi::xml_node item : stock.children("item")) {
        item.print(std::cout, "", pugi::format_raw);
        std::cout << '\n';
    }
}
