// Numbers to XML text and back beside the standard library's to_chars and from_chars, which do
// less: they work on 8-bit characters in a buffer, where ours gives and takes UTF-16 strings.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "nuXmlParser.h"

namespace {

constexpr std::size_t count = 200'000;

/// Processor time of one call in nanoseconds, the fastest of several rounds over all values.
template <class Values, class Call> double nanoseconds(const Values& values, Call call) {
    double fastest = std::numeric_limits<double>::max();
    for (int round = 0; round < 15; ++round) {
        std::uint64_t used = 0;
        const std::clock_t start = std::clock();
        for (const auto& value : values) {
            used += call(value);
        }
        const double time = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        volatile std::uint64_t sink = used; // so that the calls are not left out
        static_cast<void>(sink);
        fastest = std::min(fastest, time);
    }
    return fastest * 1e9 / static_cast<double>(values.size());
}

void print(const std::string& work, double ours, double standard) {
    std::printf("%-34s %8.1f %8.1f %7.2f\n", work.c_str(), ours, standard, ours / standard);
    std::fflush(stdout);
}

template <class Number> std::size_t writeStandard(Number number) {
    std::array<char, 32> buffer;
    char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    return static_cast<std::size_t>(end - buffer.data()) + static_cast<unsigned char>(*(end - 1));
}

template <class Number> std::size_t writeStandardString(Number number) {
    std::array<char, 32> buffer;
    char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    const std::u16string text(buffer.data(), end);
    return text.size() + text.back();
}

template <class Number> std::uint64_t readStandard(const std::string& text) {
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return static_cast<std::uint64_t>(number != 0);
}

/// Writes and reads one kind of number, with ours and the standard's.
template <class Number, class Write, class Read>
void compare(const std::string& name, const std::vector<Number>& numbers, Write write, Read read) {
    std::vector<std::u16string> texts;
    std::vector<std::string> narrowTexts;
    for (const Number number : numbers) {
        texts.push_back(write(number));
        narrowTexts.emplace_back(texts.back().begin(), texts.back().end());
    }
    const double writing = nanoseconds(numbers, [&](Number number) {
        const std::u16string text = write(number);
        return text.size() + text.back();
    });
    const double reading = nanoseconds(texts, [&](const std::u16string& text) {
        return static_cast<std::uint64_t>(read(text) != 0);
    });
    print("write " + name, writing, nanoseconds(numbers, writeStandard<Number>));
    print("  to_chars and a string", writing, nanoseconds(numbers, writeStandardString<Number>));
    print("read " + name, reading, nanoseconds(narrowTexts, readStandard<Number>));
}

template <class Make> auto generate(Make make) {
    std::vector<decltype(make())> values(count);
    std::generate(values.begin(), values.end(), make);
    return values;
}

} // namespace

int main() {
    std::mt19937_64 random(1);
    const auto below = [&random](std::uint64_t limit) {
        return static_cast<std::int64_t>(random() % limit);
    };
    const auto prices = generate([&] { return static_cast<double>(below(1'000'000)) / 100; });
    const auto measures = generate([&] { return static_cast<double>(random()) / 1.9e13; });
    const auto scattered = generate([&] {
        return static_cast<double>(random()) *
               std::pow(10.0, static_cast<double>(below(500)) - 250);
    });
    const auto small = generate([&] { return static_cast<std::int32_t>(below(20'000)) - 10'000; });
    const auto large = generate([&] { return static_cast<std::int64_t>(random()); });

    std::printf("%-34s %8s %8s %7s\n", "", "ns", "std, ns", "ratio");
    compare("doubles of two decimals", prices, NuDoubleToXML, NuXMLToDouble);
    compare("doubles below a million", measures, NuDoubleToXML, NuXMLToDouble);
    compare("doubles of any size", scattered, NuDoubleToXML, NuXMLToDouble);
    compare("32-bit integers of four digits", small, NuIntToXML, NuXMLToInt);
    compare("64-bit integers", large, NuInt64ToXML, NuXMLToInt64);
    compare(
        "amounts (std: double)", prices,
        [](double price) { return NuCurrencyToXML({static_cast<std::int64_t>(price * 10'000)}); },
        [](std::u16string_view text) { return NuXMLToCurrency(text).scaled; });
}
