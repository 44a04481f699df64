#pragma once

#include "event.h"
#include "output.h"

namespace tool {

/// Writes each event as one line that is an object of JSON.
class EventJson final : public EventFormat {
public:
    explicit EventJson(Output& output) noexcept : output_(output) {}

    void write(const Event& event) override;

private:
    void writeAttributes(host::IBufferedAttributes& attributes);
    void writeMember(std::string_view key, std::u16string_view text);

    Output& output_;
};

} // namespace tool
