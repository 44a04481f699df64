#include <iostream>
#include <string>

#include <pugixml.hpp>

struct City {
    std::string name;
    int people;
    double height;
};

int main() {
    const City cities[] = {{"Zürich", 447082, 408.5}, {"東京", 14187176, 40}, {"A & B", 2, -1.25}};
    pugi::xml_document document;
    pugi::xml_node list = document.append_child("cities");
    for (const City& city : cities) {
        pugi::xml_node element = list.append_child("city");
        element.append_attribute("people") = city.people;
        element.append_attribute("height") = city.height;
        element.text() = city.name.c_str();
    }
    document.save(std::cout, "", pugi::format_raw | pugi::format_no_declaration);
    std::cout << '\n';
}
