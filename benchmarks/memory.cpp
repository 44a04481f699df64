// Bytes of live heap that a document tree takes for each of its nodes, with names and texts: ours
// beside the other libraries.

#include <cstdio>
#include <exception>

#include "corpus.h"
#include "heap.h"
#include "trees/tree.h"

int main() {
    try {
        const std::vector<bench::TreeLibrary> libraries = bench::treeLibraries();
        std::printf("%-16s", "bytes a node");
        for (const bench::TreeLibrary& library : libraries) {
            std::printf("%10s", library.name.c_str());
        }
        std::printf("\n");
        for (const bench::Input& input : bench::inputs()) {
            std::printf("%-16s", input.name.c_str());
            for (const bench::TreeLibrary& library : libraries) {
                if (!library.canLoad(input.name)) {
                    std::printf("%10s", "-");
                    continue;
                }
                // What a library keeps for good is there after the first tree.
                library.load("<a/>");
                const std::size_t before = bench::heap.liveBytes;
                const auto tree = library.load(input.text);
                const std::size_t bytes = bench::heap.liveBytes - before;
                std::printf("%10.1f",
                            static_cast<double>(bytes) / static_cast<double>(tree->nodeCount()));
                std::fflush(stdout);
            }
            std::printf("\n");
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
