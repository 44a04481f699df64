#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "console.h"
#include "event.h"

namespace tool {

/// Writes each event as one line for people: its place, its name, what it says.
class EventText final : public EventFormat {
public:
    /// With `showsPlaces` every line begins with line and column. `title` is written behind the
    /// start of the document, to tell several documents apart; it may be empty.
    EventText(Console& console, bool showsPlaces, std::u16string title) noexcept
        : output_(console.output()), isColoured_(console.isColoured()), showsPlaces_(showsPlaces),
          title_(std::move(title)) {}

    void write(const Event& event) override;

private:
    void writePlace(const Event& event);
    void writeName(EventKind kind);
    void writeContent(const Event& event);
    void writeElement(const Event& event);
    void writeFault(const Event& event);
    void writeQuoted(std::u16string_view text);
    void colour(std::string_view code);

    Output& output_;
    bool isColoured_;
    bool showsPlaces_;
    std::u16string title_;
};

} // namespace tool
