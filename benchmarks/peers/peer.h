#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Ours and the other libraries behind one small interface. Every file of this folder registers
/// one of them; a library that is not installed is not compiled in.
namespace bench {

/// What one parse saw.
struct Tally {
    std::size_t elements = 0;
    std::size_t attributes = 0;
    /// Length of all names, values and text in the parser's own code units.
    std::size_t units = 0;

    friend bool operator==(const Tally&, const Tally&) = default;
};

/// Parses the prepared input once.
using Run = std::function<Tally()>;

struct Reader {
    std::string name;
    /// Makes whatever the parser expects to find ready in memory; only the result is timed. The
    /// text outlives the result.
    std::function<Run(std::string_view text)> prepare;
    /// A slow parse that counts what must be the same for everybody: elements, attributes with
    /// namespace declarations, and the UTF-16 code units of all runs of text that are not blank,
    /// references replaced. Empty if the parser's events do not show all of that.
    std::function<Tally(std::string_view text)> examine;
    /// A parse without handlers, which only finds out whether the text is well-formed; throws where
    /// it is not. Empty where nobody asks.
    std::function<std::size_t(std::string_view text)> check = {};
};

/// Texts to convert, one call each.
using Pieces = std::vector<std::u16string>;

/// Converts all prepared pieces once and answers the length of the results.
using Conversion = std::function<std::size_t()>;

/// Makes whatever the library expects to find ready in memory; only the result is timed. The pieces
/// outlive the result.
using Prepare = std::function<Conversion(const Pieces& pieces)>;

/// Replaces the five special characters by references, and references by characters.
struct Converter {
    std::string name;
    Prepare prepareEscape;
    Prepare prepareUnescape;
};

/// All registered readers and converters, ours first, then by name.
std::vector<Reader> readers();
std::vector<Converter> converters();

/// Called while static objects are made; the result only gives them a value.
bool addReader(Reader reader);
bool addConverter(Converter converter);

inline constexpr const char* oursName = "nuxml";

} // namespace bench
