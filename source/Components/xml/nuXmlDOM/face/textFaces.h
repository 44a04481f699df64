#pragma once

#include "nuXmlDOM/face/nodeFace.h"

/// \file
/// The faces of the nodes that hold text.

namespace nu {

/// The face of a node of characters.
template <class Object> class CharacterDataFace : public NodeFace<Object> {
public:
    using NodeFace<Object>::NodeFace;
    using Result = host::ResultCode;

    Result get_data(std::u16string& data) noexcept override {
        return host::guardCall(data, [&] { return object_.get_data(); });
    }
    Result set_data(std::u16string_view data) noexcept override {
        return host::guardCall([&] { object_.set_data(data); });
    }
    Result get_length(host::DOMLength& length) noexcept override {
        return host::guardCall(length,
                               [&] { return static_cast<host::DOMLength>(object_.get_length()); });
    }
    Result substringData(host::DOMLength offset, host::DOMLength count,
                         std::u16string& part) noexcept override {
        return host::guardCall(part, [&] { return object_.substringData(offset, count); });
    }
    Result appendData(std::u16string_view text) noexcept override {
        return host::guardCall([&] { object_.appendData(text); });
    }
    Result insertData(host::DOMLength offset, std::u16string_view text) noexcept override {
        return host::guardCall([&] { object_.insertData(offset, text); });
    }
    Result deleteData(host::DOMLength offset, host::DOMLength count) noexcept override {
        return host::guardCall([&] { object_.deleteData(offset, count); });
    }
    Result replaceData(host::DOMLength offset, host::DOMLength count,
                       std::u16string_view text) noexcept override {
        return host::guardCall([&] { object_.replaceData(offset, count, text); });
    }

protected:
    using NodeFace<Object>::object_;
};

/// The face of a text or a CDATA section.
template <class Object> class TextFace final : public CharacterDataFace<Object> {
public:
    using CharacterDataFace<Object>::CharacterDataFace;

    host::ResultCode splitText(host::DOMLength offset,
                               host::Ref<host::IDOMText>& rest) noexcept override {
        return giveInterface(rest, [&] { return object_.splitText(offset); });
    }

private:
    using CharacterDataFace<Object>::object_;
};

class CommentFace final : public CharacterDataFace<TNuDOMComment> {
public:
    using CharacterDataFace<TNuDOMComment>::CharacterDataFace;
};

class InstructionFace final : public NodeFace<TNuDOMProcessingInstruction> {
public:
    using NodeFace<TNuDOMProcessingInstruction>::NodeFace;

    Result get_target(std::u16string& target) noexcept override {
        return host::guardCall(target, [&] { return object_.get_target(); });
    }
    Result get_data(std::u16string& data) noexcept override {
        return host::guardCall(data, [&] { return object_.get_data(); });
    }
    Result set_data(std::u16string_view data) noexcept override {
        return host::guardCall([&] { object_.set_data(data); });
    }
};

} // namespace nu
