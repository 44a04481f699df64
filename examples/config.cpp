// Loads settings with defaults, changes one, and saves them.

#include <filesystem>
#include <iostream>

#include "nuXmlDOM.h"

int main() try {
    const auto document = NuLoadDocument("config.xml");
    TNuDOMElement& config = document->At("config");
    std::cout << config.Get("server/@host", "localhost") << ':'
              << config.Get<std::uint16_t>("server/@port", 8080) << ", "
              << config.Get("server/timeout", 2.5) << " s\n";
    if (config.Get("log/verbose", false)) {
        config.Set("log/level", 3); // made where it is missing
    }
    document->SaveToFile(std::filesystem::temp_directory_path() / "nuxml-config.xml", true);
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
