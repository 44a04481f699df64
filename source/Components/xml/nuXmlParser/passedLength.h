#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/utf8.h"

namespace nu {

/// How many UTF-16 units texts in UTF-8 take, counted when somebody asks; until then they stay
/// where they are.
class PassedLength {
public:
    /// Notes a text, which has to stay where it is until units() was asked for, or 64 more came.
    void add(std::string_view text) noexcept {
        if (waitingCount_ == waiting_.size()) {
            count();
        }
        waiting_[waitingCount_++] = text;
    }
    /// The units of all texts so far.
    [[nodiscard]] std::int64_t units() noexcept {
        count();
        return units_;
    }

private:
    void count() noexcept {
        for (std::size_t index = 0; index < waitingCount_; ++index) {
            units_ += static_cast<std::int64_t>(NuUtf16Length(waiting_[index]));
        }
        waitingCount_ = 0;
    }

    std::array<std::string_view, 64> waiting_;
    std::size_t waitingCount_ = 0;
    std::int64_t units_ = 0;
};

} // namespace nu
