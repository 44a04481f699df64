#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

struct Input {
    std::string name;
    std::string text;
};

/// All documents of the folder that the environment variable NUXML_BENCH_INPUTS names, in
/// alphabetical order; prepare.py fills that folder. Read once, alive until the program ends.
const std::vector<Input>& inputs();

/// The runs of character data between the tags that are not blank, as they stand in the document
/// (references included), until `limit` code units are reached.
std::vector<std::u16string> textRuns(std::string_view document, std::size_t limit);

} // namespace bench
