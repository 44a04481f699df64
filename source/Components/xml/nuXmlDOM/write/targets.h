#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/runtime/exception.h"
#include "host/runtime/stream.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/write/outputTarget.h"

namespace nu {

/// UTF-16 at the position of a stream, low byte first.
class WideStreamTarget final : public OutputTarget<char16_t> {
public:
    explicit WideStreamTarget(host::TStream& stream) : stream_(stream) {}

    void take(std::u16string_view block) override {
        stream_.WriteBuffer(block.data(), block.size() * sizeof(NuXmlChar));
    }
    std::int64_t position() override { return stream_.GetPosition(); }
    std::int64_t size() override { return stream_.GetSize(); }
    NuXmlChar firstCharacter() override {
        const std::int64_t position = stream_.GetPosition();
        unsigned char bytes[2] = {};
        stream_.SetPosition(0);
        stream_.ReadBuffer(bytes, sizeof bytes);
        stream_.SetPosition(position);
        return static_cast<NuXmlChar>(bytes[0] | bytes[1] << 8);
    }

private:
    host::TStream& stream_;
};

/// UTF-16 or UTF-8 in a string.
template <class Unit> class StringTarget final : public OutputTarget<Unit> {
public:
    explicit StringTarget(std::basic_string<Unit>& text) : text_(text) {}
    void take(std::basic_string_view<Unit> block) override { text_ += block; }

private:
    std::basic_string<Unit>& text_;
};

/// UTF-8 at the position of a stream, as if that was its start.
class Utf8Target final : public OutputTarget<char> {
public:
    explicit Utf8Target(host::TStream& stream) : stream_(stream) {}
    void take(std::string_view block) override { stream_.WriteBuffer(block.data(), block.size()); }

private:
    host::TStream& stream_;
};

/// 8-bit text, UTF-8 or that of a code page; throws when the stream takes less.
class EightBitTarget final : public OutputTarget<char> {
public:
    explicit EightBitTarget(host::TStream& stream) : stream_(stream) {}
    void take(std::string_view block) override {
        if (stream_.Write(block.data(), block.size()) < block.size()) {
            throw host::Exception(messages::incompleteWrite);
        }
    }

private:
    host::TStream& stream_;
};

} // namespace nu
