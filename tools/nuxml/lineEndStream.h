#pragma once

#include <cstddef>
#include <string_view>

#include "sinkStream.h"

namespace tool {

/// Passes text on with the line ends that are wanted: "\r\n" and "\n" become them, in bytes or in
/// UTF-16.
class LineEndStream final : public SinkStream {
public:
    /// \param isWide whether it gets UTF-16, low byte first, in whole units
    LineEndStream(host::TStream& target, std::u16string_view lineEnd, bool isWide)
        : target_(target), lineEnd_(lineEnd), isWide_(isWide) {}

    std::size_t Write(const void* buffer, std::size_t count) override;

    /// Hands on what waits for the end of a line.
    void finish();

private:
    template <class Unit> void pass(std::basic_string_view<Unit> text);
    template <class Unit> void put(std::basic_string_view<Unit> text);
    template <class Unit> void putLineEnd();

    host::TStream& target_;
    std::u16string_view lineEnd_;
    bool isWide_;
    bool isReturnPending_ = false;
};

} // namespace tool
