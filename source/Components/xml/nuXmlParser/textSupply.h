#pragma once

#include <string_view>

#include "nuXmlParser/chars.h"

namespace nu {

/// UTF-8 that somebody makes piece by piece of a text in memory, and who lets plain content of that
/// text be passed by where it stands.
class TextSupply {
public:
    TextSupply() = default;
    TextSupply(const TextSupply&) = delete;
    TextSupply& operator=(const TextSupply&) = delete;

    /// The next piece, good until the next call: whole characters, and tags as a whole. Never empty
    /// where more was promised. Throws what is wrong with the text behind the last piece.
    [[nodiscard]] virtual std::string_view next() = 0;
    /// Whether another piece or a fault is to come.
    [[nodiscard]] virtual bool promisesMore() const noexcept = 0;
    /// What stands in the text from the last character on that was given, which was `last`; empty
    /// where nothing can be passed.
    [[nodiscard]] virtual std::string_view textFrom(NuXmlChar last) const noexcept = 0;
    /// Everything from there up to the "<" or ">" at `end` was passed, which counts as given.
    virtual void pass(const char* end) = 0;

protected:
    ~TextSupply() = default;
};

} // namespace nu
