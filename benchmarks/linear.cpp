// Twice the input must cost twice the time: parses n and 2n of every shape that tempts a parser
// into more, and prints the ratio of the medians.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

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

double seconds(const bench::Run& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void measure(const bench::Reader& reader, const Shape& shape) {
    const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    const std::string single = head + shape.document(shape.count);
    const std::string twice = head + shape.document(2 * shape.count);
    const bench::Run runSingle = reader.prepare(single);
    const bench::Run runTwice = reader.prepare(twice);
    std::vector<double> singleTimes;
    std::vector<double> twiceTimes;
    for (int repetition = 0; repetition < 5; ++repetition) {
        singleTimes.push_back(seconds(runSingle));
        twiceTimes.push_back(seconds(runTwice));
    }
    const double ratio = median(twiceTimes) / median(singleTimes);
    std::printf("%-28s %11zu %9.1f %9.1f %7.2f%s\n", shape.name, shape.count,
                median(singleTimes) * 1000, median(twiceTimes) * 1000, ratio,
                ratio > 2.2 ? "  more than linear" : "");
    std::fflush(stdout);
}

} // namespace

/// The argument names the reader, ours if there is none.
int main(int argumentCount, char** arguments) {
    const std::string wanted = argumentCount > 1 ? arguments[1] : bench::oursName;
    for (const bench::Reader& reader : bench::readers()) {
        if (reader.name != wanted) {
            continue;
        }
        std::printf("%-28s %11s %9s %9s %7s\n", reader.name.c_str(), "n", "n, ms", "2n, ms",
                    "2n / n");
        for (const Shape& shape : shapes) {
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
