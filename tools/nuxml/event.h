#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "host/sax/BSax.h"

namespace tool {

/// One text of an event under the name that JSON gives it.
struct EventField {
    std::string_view key;
    std::u16string_view text;
};

/// Line and column as the locator or a fault tells them.
struct EventPlace {
    std::int64_t line;
    std::int64_t column;
};

enum class EventKind {
    StartDocument,
    EndProlog,
    StartPrefixMapping,
    StartElement,
    EndElement,
    Characters,
    StartCDATA,
    EndCDATA,
    Comment,
    ProcessingInstruction,
    StartDTD,
    EndDocument,
    Warning,
    Error,
    FatalError,
    Exception, ///< no event of the reader: what left Parse
};

/// The name of the event as SAX2 spells it.
constexpr std::string_view eventName(EventKind kind) noexcept {
    constexpr std::string_view names[] = {"startDocument",
                                          "endProlog",
                                          "startPrefixMapping",
                                          "startElement",
                                          "endElement",
                                          "characters",
                                          "startCDATA",
                                          "endCDATA",
                                          "comment",
                                          "processingInstruction",
                                          "startDTD",
                                          "endDocument",
                                          "warning",
                                          "error",
                                          "fatalError",
                                          "exception"};
    return names[static_cast<std::size_t>(kind)];
}

/// An event of the reader in the form that both outputs share. The texts live during the call.
struct Event {
    EventKind kind;
    std::span<const EventField> fields;
    host::IBufferedAttributes* attributes = nullptr; ///< only of a start tag
    std::optional<EventPlace> place{};
};

/// One of the ways to write events, a line each.
class EventFormat {
public:
    EventFormat() = default;
    EventFormat(const EventFormat&) = delete;
    EventFormat& operator=(const EventFormat&) = delete;
    virtual ~EventFormat() = default;

    virtual void write(const Event& event) = 0;
};

} // namespace tool
