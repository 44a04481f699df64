#include "nuXmlDOM/write/output.h"

#include <algorithm>

#include "host/runtime/format.h"
#include "host/runtime/utf8Sequence.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"

namespace nu {

template <class Unit> bool Output<Unit>::isBrokenAtStart() {
    const std::int64_t position = target_.position() + writtenBytes();
    if (position != sizeof(NuXmlChar)) {
        return position > 0;
    }
    const NuXmlChar first =
        written() > 0 ? static_cast<NuXmlChar>(*block_.get()) : target_.firstCharacter();
    return first != byteOrderMark;
}

template <class Unit> void Output<Unit>::putLong(const StoredText& text) {
    if (text.isWide()) {
        putLong(text.wide());
    } else if (isUtf8 || text.isNarrow()) {
        putLong(text.bytes());
    } else {
        const NuXmlString units = text.toString();
        putLong(std::u16string_view(units));
    }
}

template <class Unit> void Output<Unit>::putLong(std::string_view text) {
    if constexpr (isUtf8) {
        handOn(text);
    } else {
        while (!text.empty()) {
            const std::string_view part = text.substr(0, capacity_);
            next_ = Form::copy(part, next_);
            drain();
            text.remove_prefix(part.size());
        }
    }
}

template <class Unit> void Output<Unit>::putLong(std::u16string_view text) {
    if constexpr (isUtf8) {
        while (!text.empty()) {
            std::u16string_view part = text.substr(0, capacity_ / Form::bytesOfUnit);
            if (host::isHighSurrogate(part.back()) && part.size() < text.size()) {
                part.remove_suffix(1);
            }
            next_ = Form::copy(part, next_);
            drain();
            text.remove_prefix(part.size());
        }
    } else {
        handOn(text);
    }
}

template <class Unit> void Output<Unit>::putLong(Indentation indentation) {
    for (std::size_t left = indentation.length(); left > 0;) {
        const std::size_t part = std::min(left, capacity_);
        next_ = std::fill_n(next_, part, Unit{' '});
        drain();
        left -= part;
    }
}

template <class Unit> void Output<Unit>::putWideText(std::u16string_view text) {
    // 1. The half that waits gets the other one, or was none.
    if (half_ != 0 && !text.empty()) {
        const bool isPair = host::isLowSurrogate(text.front());
        endHalf(isPair ? text.front() : NuXmlChar{0});
        text.remove_prefix(isPair ? 1 : 0);
    }
    // 2. The text without a half at its end, which waits for what follows.
    const NuXmlChar last = text.empty() ? NuXmlChar{0} : text.back();
    text.remove_suffix(host::isHighSurrogate(last) ? 1 : 0);
    put(text);
    if (host::isHighSurrogate(last)) {
        half_ = last;
        end_ = next_;
    }
}

/// Writes the half that waits with its second one, or as U+FFFD when that is 0.
template <class Unit> void Output<Unit>::endHalf(NuXmlChar second) {
    const NuXmlChar pair[] = {std::exchange(half_, NuXmlChar{0}), second};
    end_ = block_.get() + capacity_;
    put(std::u16string_view(pair, second != 0 ? 2 : 1));
}

template <class Unit> void Output<Unit>::flush() {
    if (half_ != 0) {
        endHalf(0);
    }
    drain();
}

template <class Unit> void Output<Unit>::drain() {
    if (fill() > 0) {
        handOn({block_.get(), fill()});
        next_ = block_.get();
    }
}

template <class Unit> void Output<Unit>::handOn(std::basic_string_view<Unit> text) {
    const std::uint64_t bytes = std::uint64_t{text.size()} * sizeof(Unit);
    if (bytes > left_) {
        throw ENuDomException(host::formatMessage(messages::tooMuchOutput, {limit_}));
    }
    left_ -= bytes;
    isHandedOn_ = true;
    target_.take(text);
}

template class Output<char>;
template class Output<char16_t>;

} // namespace nu
