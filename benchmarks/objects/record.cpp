#include "objects/record.h"

#include <array>
#include <random>

namespace bench {

std::vector<Record> makeRecords(std::size_t count) {
    static constexpr std::array words{"harbour", "lantern", "Ada & Li", "copper", "Žofia",
                                      "meadow",  "<draft>", "window",   "sail",   "north"};
    std::mt19937_64 random(20);
    const auto word = [&random] { return std::string(words[random() % words.size()]); };
    const auto fraction = [&random] { return static_cast<double>(random() >> 11) * 0x1p-53; };

    std::vector<Record> records(count);
    for (Record& record : records) {
        record.number = static_cast<std::int32_t>(random() % 1'000'000);
        record.name = word() + ' ' + word();
        // Prices and measures have few digits, computed values all of them.
        record.weight =
            random() % 2 == 0 ? static_cast<double>(random() % 100'000) / 100 : fraction() * 1000;
        record.stamp = static_cast<std::int64_t>(random() >> 20);
        record.isActive = random() % 2 == 0;
        record.color = static_cast<Color>(random() % 3);
        record.note = word() + ' ' + word() + ' ' + word() + ' ' + word();
        record.ratio = static_cast<float>(fraction());
    }
    return records;
}

std::string makeProse(std::size_t bytes) {
    const std::string sentence =
        "The ferry left at nine; the crossing to Sørøya took an hour & a half, as the captain said "
        "it would (\"wind < 5, sea calm\"), and nobody minded.\n";
    std::string prose;
    prose.reserve(bytes + sentence.size());
    while (prose.size() < bytes) {
        prose += sentence;
    }
    return prose;
}

} // namespace bench
