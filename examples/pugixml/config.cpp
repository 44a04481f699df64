#include <filesystem>
#include <iostream>

#include <pugixml.hpp>

int main() {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file("config.xml");
    if (!result) {
        std::cerr << result.description() << '\n';
        return 1;
    }
    pugi::xml_node config = document.child("config");
    std::cout << config.child("server").attribute("host").as_string("localhost") << ':'
              << config.child("server").attribute("port").as_uint(8080) << ", "
              << config.child("server").child("timeout").text().as_double(2.5) << " s\n";
    pugi::xml_node log = config.child("log");
    if (log.child("verbose").text().as_bool()) {
        if (!log.child("level")) {
            log.append_child("level");
        }
        log.child("level").text() = 3;
    }
    const auto file = std::filesystem::temp_directory_path() / "pugixml-config.xml";
    if (!document.save_file(file.c_str())) {
        std::cerr << "cannot save " << file << '\n';
        return 1;
    }
}
