// Every XML document of a machine through reader and stage, and through expat: verdicts, events
// with all white space, and the line of each start tag. Prints counts, and each document that
// differs.
//
//     bench-machine [FOLDER...]     everything below / if none is named

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "support/outlines.h"

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 13> extensions = {
    ".xml", ".svg",   ".xsl",  ".xsd",     ".gir", ".rng", ".page",
    ".ui",  ".xhtml", ".xslt", ".docbook", ".xmi", ".rdf"};
constexpr std::uintmax_t largest = std::uintmax_t{64} * 1024 * 1024;

struct Counts {
    long documents = 0;
    long unknownToExpat = 0; ///< of an encoding that expat does not know
    long wellFormed = 0;     ///< for both
    long same = 0;
    long skipping = 0; ///< different, and with references that may be skipped
    long different = 0;
    long warned = 0; ///< the reader warned behind the stage
    long refused = 0;
    long refusedOnSameLine = 0;
    long refusedByOurs = 0;
    long refusedByExpat = 0;
    long long bytes = 0;
    long long startTags = 0;
    long long startTagsElsewhere = 0;
};

bool isXmlFile(const fs::directory_entry& entry) {
    std::error_code error;
    if (entry.is_symlink(error) || !entry.is_regular_file(error) || error) {
        return false;
    }
    const std::string extension = entry.path().extension().string();
    const std::uintmax_t size = entry.file_size(error);
    return !error && size > 0 && size <= largest &&
           std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

void tell(const fs::path& path, std::string_view what, std::string_view detail = {}) {
    std::printf("%s: %.*s%.*s\n", path.c_str(), static_cast<int>(what.size()), what.data(),
                static_cast<int>(detail.size()), detail.data());
}

void compare(const fs::path& path, Counts& counts) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    ++counts.documents;
    counts.bytes += static_cast<long long>(bytes.size());
    const support::Outline ours = support::conformingOutline(bytes);
    const std::optional<support::Outline> expat = support::expatOutline(bytes);
    if (ours.isWellFormed && ours.warnings != 0) {
        ++counts.warned;
        tell(path, "the reader warns");
    }
    // 1. Verdicts.
    if (!expat) {
        ++counts.unknownToExpat;
        return;
    }
    if (!ours.isWellFormed && !expat->isWellFormed) {
        ++counts.refused;
        counts.refusedOnSameLine += ours.faultLine == expat->faultLine ? 1 : 0;
        return;
    }
    if (ours.isWellFormed != expat->isWellFormed) {
        ++(ours.isWellFormed ? counts.refusedByExpat : counts.refusedByOurs);
        tell(path, ours.isWellFormed ? "only expat refuses it: " : "only we refuse it: ",
             ours.isWellFormed ? expat->fault : ours.fault);
        return;
    }
    // 2. Events.
    ++counts.wellFormed;
    if (ours.text == expat->text) {
        ++counts.same;
    } else if (expat->warnings != 0 || ours.text.find('&') != std::string::npos) {
        // Expat leaves references that it skips out of values, without a word.
        ++counts.skipping;
        tell(path, "differs and holds references");
    } else {
        ++counts.different;
        tell(path, "differs");
    }
    // 3. Lines.
    counts.startTags += static_cast<long long>(ours.startTagLines.size());
    long elsewhere = 0;
    for (std::size_t index = 0;
         index < std::min(ours.startTagLines.size(), expat->startTagLines.size()); ++index) {
        const std::int64_t line = ours.startTagLines[index];
        if (line == expat->startTagLines[index]) {
            continue;
        }
        if (++elsewhere == 1) {
            tell(path, "a start tag on another line: ",
                 std::to_string(line) + ", to expat " +
                     std::to_string(expat->startTagLines[index]));
        }
    }
    counts.startTagsElsewhere += elsewhere;
}

void compareBelow(const fs::path& folder, Counts& counts) {
    std::error_code error;
    fs::recursive_directory_iterator place(folder, fs::directory_options::skip_permission_denied,
                                           error);
    for (const fs::recursive_directory_iterator end; !error && place != end;
         place.increment(error)) {
        const fs::path& path = place->path();
        if (path == "/proc" || path == "/sys" || path == "/dev") {
            place.disable_recursion_pending();
        } else if (isXmlFile(*place)) {
            compare(path, counts);
        }
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    Counts counts;
    try {
        std::vector<fs::path> folders(arguments + 1, arguments + argumentCount);
        if (folders.empty()) {
            folders.emplace_back("/");
        }
        for (const fs::path& folder : folders) {
            compareBelow(folder, counts);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench-machine: %s\n", error.what());
        return 1;
    }
    std::printf("%ld documents, %lld bytes\n"
                "well-formed for both: %ld, the same: %ld, different with references that expat "
                "may skip: %ld, different: %ld\n"
                "refused by both: %ld, on the same line: %ld\n"
                "refused by the stage only: %ld, by expat only: %ld, of an encoding that expat "
                "does not know: %ld\n"
                "warnings behind the stage in: %ld\n"
                "start tags: %lld, on another line: %lld\n",
                counts.documents, counts.bytes, counts.wellFormed, counts.same, counts.skipping,
                counts.different, counts.refused, counts.refusedOnSameLine, counts.refusedByOurs,
                counts.refusedByExpat, counts.unknownToExpat, counts.warned, counts.startTags,
                counts.startTagsElsewhere);
    return counts.different + counts.refusedByOurs + counts.warned == 0 ? 0 : 3;
}
