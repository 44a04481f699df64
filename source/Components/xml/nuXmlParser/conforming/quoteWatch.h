#pragma once

namespace nu {

/// Goes over the bytes of a tag or a declaration, one after the other, and tells which stand
/// outside of quotes.
class QuoteWatch {
public:
    /// Whether the next byte does, and is no quote itself.
    bool isOutside(char c) noexcept {
        if (quote_ != '\0') {
            quote_ = c == quote_ ? '\0' : quote_;
            return false;
        }
        quote_ = c == '"' || c == '\'' ? c : '\0';
        return quote_ == '\0';
    }

private:
    char quote_ = '\0';
};

} // namespace nu
