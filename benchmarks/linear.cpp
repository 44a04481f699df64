// Twice the input must cost twice the time: parses n and 2n of every shape that tempts a parser
// into more, and prints the ratio of the times.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <limits>
#include <string>
#include <string_view>

#include "peers/peer.h"

namespace {

/// A growing document; the count stands for elements, attributes, declarations or bytes.
struct Shape {
    const char* name;
    std::size_t count;
    std::string (*document)(std::size_t count);
};

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t index = 0; index < count; ++index) {
        text += piece;
    }
    return text;
}

std::string siblings(std::size_t count) {
    return "<r>" + repeated(R"(<i a="1"/>)", count) + "</r>";
}

std::string nested(std::size_t count) { return repeated("<i>", count) + repeated("</i>", count); }

std::string attributes(std::size_t count) {
    std::string text = "<r";
    for (std::size_t index = 0; index < count; ++index) {
        text += " a" + std::to_string(index) + "=\"1\"";
    }
    return text + "/>";
}

/// Every element declares one prefix and uses the outermost one.
std::string nestedDeclarations(std::size_t count) {
    std::string text = R"(<p:r xmlns:p="u">)";
    for (std::size_t index = 0; index < count; ++index) {
        text += "<p:i xmlns:q" + std::to_string(index) + "=\"v\">";
    }
    return text + repeated("</p:i>", count) + "</p:r>";
}

/// One element declares all prefixes, its children use the first one.
std::string declarationsSideBySide(std::size_t count) {
    std::string text = R"(<r xmlns:p="u")";
    for (std::size_t index = 0; index < count; ++index) {
        text += " xmlns:q" + std::to_string(index) + "=\"v\"";
    }
    return text + ">" + repeated("<p:i/>", count) + "</r>";
}

/// Elements after one another, each with a declaration of its own.
std::string declarationsInARow(std::size_t count) {
    return "<r>" + repeated(R"(<p:i xmlns:p="u"/>)", count) + "</r>";
}

std::string longText(std::size_t count) {
    return "<r>" + repeated("0123456789", count / 10) + "</r>";
}

std::string longComment(std::size_t count) {
    return "<r><!--" + repeated("0123456789", count / 10) + "--></r>";
}

std::string longValue(std::size_t count) {
    return "<r a=\"" + repeated("0123456789", count / 10) + "\"/>";
}

constexpr Shape shapes[] = {
    {"elements in a row", 1'000'000, siblings},
    {"elements nested", 1'000'000, nested},
    {"attributes on one element", 100'000, attributes},
    {"declarations, nested", 100'000, nestedDeclarations},
    {"declarations, side by side", 100'000, declarationsSideBySide},
    {"declarations, in a row", 100'000, declarationsInARow},
    {"bytes of one text", 100'000'000, longText},
    {"bytes of one comment", 100'000'000, longComment},
    {"bytes of one value", 100'000'000, longValue},
};

/// Processor time, which other programs disturb less than the clock on the wall.
double seconds(const bench::Run& run) {
    const std::clock_t start = std::clock();
    run();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void measure(const bench::Reader& reader, const Shape& shape) {
    const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    const std::string single = head + shape.document(shape.count);
    const std::string twice = head + shape.document(2 * shape.count);
    const bench::Run runSingle = reader.prepare(single);
    const bench::Run runTwice = reader.prepare(twice);
    // Disturbances only ever add time, so the fastest of several runs tells the most.
    double singleTime = std::numeric_limits<double>::max();
    double twiceTime = singleTime;
    for (int repetition = 0; repetition < 7; ++repetition) {
        singleTime = std::min(singleTime, seconds(runSingle));
        twiceTime = std::min(twiceTime, seconds(runTwice));
    }
    const double ratio = twiceTime / singleTime;
    std::printf("%-28s %11zu %9.1f %9.1f %7.2f%s\n", shape.name, shape.count, singleTime * 1000,
                twiceTime * 1000, ratio, ratio > 2.2 ? "  more than linear" : "");
    std::fflush(stdout);
}

} // namespace

/// Arguments: the reader's name, ours if there is none; a part of the shapes' names, else all.
int main(int argumentCount, char** arguments) {
    const std::string wanted = argumentCount > 1 ? arguments[1] : bench::oursName;
    const std::string_view shapeName = argumentCount > 2 ? arguments[2] : "";
    for (const bench::Reader& reader : bench::readers()) {
        if (reader.name != wanted) {
            continue;
        }
        std::printf("%-28s %11s %9s %9s %7s\n", reader.name.c_str(), "n", "n, ms", "2n, ms",
                    "2n / n");
        for (const Shape& shape : shapes) {
            if (std::string_view(shape.name).find(shapeName) == std::string_view::npos) {
                continue;
            }
            try {
                measure(reader, shape);
            } catch (const std::exception& error) {
                std::printf("%-28s %11zu  fails: %s\n", shape.name, shape.count, error.what());
            }
        }
        return 0;
    }
    std::fprintf(stderr, "there is no reader %s\n", wanted.c_str());
    return 1;
}
