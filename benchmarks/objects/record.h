#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

enum class Color : std::int32_t { Red, Green, Blue };

/// An object of eight members, as a program has it that knows no XML.
struct Record {
    std::int32_t number = 0;
    std::string name;
    double weight = 0;
    std::int64_t stamp = 0;
    bool isActive = false;
    Color color = Color::Red;
    std::string note;
    float ratio = 0;

    friend bool operator==(const Record&, const Record&) = default;
};

/// An object of one member.
struct Note {
    std::string text;

    friend bool operator==(const Note&, const Note&) = default;
};

/// That many records, the same at every call.
std::vector<Record> makeRecords(std::size_t count);

/// Prose of that many bytes, with the characters that XML escapes and some beyond ASCII.
std::string makeProse(std::size_t bytes);

} // namespace bench
