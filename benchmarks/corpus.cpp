#include "corpus.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace bench {

namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(std::filesystem::file_size(path), '\0');
    if (!file.read(text.data(), static_cast<std::streamsize>(text.size()))) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return text;
}

std::vector<Input> readInputs() {
    const char* folder = std::getenv("NUXML_BENCH_INPUTS");
    if (folder == nullptr) {
        throw std::runtime_error("NUXML_BENCH_INPUTS must name the folder of the inputs");
    }
    std::vector<Input> result;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".xml") {
            result.push_back({entry.path().stem().string(), readFile(entry.path())});
        }
    }
    std::sort(result.begin(), result.end(),
              [](const Input& left, const Input& right) { return left.name < right.name; });
    return result;
}

/// Converts valid UTF-8; the inputs were checked when they were prepared.
std::u16string widen(std::string_view utf8) {
    std::u16string result;
    for (std::size_t index = 0; index < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[index]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
        for (const char unit : utf8.substr(index + 1, length - 1)) {
            character = (character << 6) | (static_cast<unsigned char>(unit) & 0x3Fu);
        }
        if (character < 0x10000) {
            result.push_back(static_cast<char16_t>(character));
        } else {
            result.push_back(static_cast<char16_t>(0xD7C0 + (character >> 10)));
            result.push_back(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
        }
        index += length;
    }
    return result;
}

} // namespace

const std::vector<Input>& inputs() {
    static const std::vector<Input> all = readInputs();
    return all;
}

std::vector<std::u16string> textRuns(std::string_view document, std::size_t limit) {
    std::vector<std::u16string> runs;
    std::size_t total = 0;
    std::size_t position = 0;
    while (total < limit && position != std::string_view::npos && position < document.size()) {
        const bool isComment = document.substr(position).starts_with("<!--");
        const std::size_t end = document.find(isComment ? "-->" : ">", position);
        if (end == std::string_view::npos) {
            break;
        }
        const std::size_t start = document.find_first_not_of("\t\n >", end + (isComment ? 3 : 1));
        position = document.find('<', end);
        if (start < position && position != std::string_view::npos) {
            runs.push_back(widen(document.substr(start, position - start)));
            total += runs.back().size();
        }
    }
    return runs;
}

} // namespace bench
