#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/com/errorInfo.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlDOM.h"

/// \file
/// Calls of operations of interfaces, whatever their parameters are: on objects of a pool, with
/// arguments of the bytes at hand.

namespace fuzz {

/// Ends the program when something does not hold.
inline void require(bool isTrue, int line = __builtin_LINE(), const char* file = __builtin_FILE()) {
    if (!isTrue) {
        std::fprintf(stderr, "%s:%d does not hold\n", file, line);
        std::abort();
    }
}

/// The bytes that decide, and the objects that are held.
class Pool {
public:
    Pool(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    /// Lets go in the order that the last bytes say.
    ~Pool() {
        while (!objects_.empty()) {
            drop();
        }
    }

    [[nodiscard]] bool hasMore() const { return data_ != end_; }
    std::size_t pick(std::size_t count) { return data_ != end_ ? *data_++ % count : 0; }
    template <class Value, std::size_t count> Value pick(const Value (&values)[count]) {
        return values[pick(count)];
    }
    /// The stream that all share, at a place that may be anywhere.
    host::TStream& pickStream() {
        stream_.Seek(static_cast<std::int64_t>(pick(8)), host::SeekOrigin::Beginning);
        return stream_;
    }
    void fillStream(std::string_view bytes) {
        stream_.SetSize(0);
        stream_.Seek(0, host::SeekOrigin::Beginning);
        stream_.Write(bytes.data(), bytes.size());
    }

    /// One more handle, also a second one to the same object. A full pool loses another for it.
    void keep(host::Ref<host::IUnknown> object) {
        constexpr std::size_t most = 48;
        if (object && objects_.size() == most) {
            drop();
        }
        if (object) {
            objects_.push_back(std::move(object));
        }
    }
    /// Lets one go. What goes with it may use the pool.
    void drop() {
        if (!objects_.empty()) {
            removeAt(pick(objects_.size()));
        }
    }
    /// An object that has the interface, which the pool holds; null without.
    template <class Interface> Interface* find() {
        const std::size_t slot = slotOf<Interface>();
        return slot < objects_.size() ? host::queryInterface<Interface>(objects_[slot].get()).get()
                                      : nullptr;
    }
    /// The same out of the pool, so that nobody else may hold it.
    template <class Interface> host::Ref<Interface> take() {
        const std::size_t slot = slotOf<Interface>();
        if (slot == objects_.size()) {
            return {};
        }
        auto taken = host::queryInterface<Interface>(objects_[slot].get());
        removeAt(slot);
        return taken;
    }

    /// Told when an operation begins and when it has ended; nobody has to be.
    void (*onCall)(bool begins) = [](bool) {};
    /// Whether memory may be lacking.
    bool mayFail = false;
    /// What an operation gave last: a good argument for another.
    std::u16string lastText;
    /// The length of the span that is being passed.
    std::optional<host::SAXLength> lengthOfSpan;

private:
    template <class Interface> std::size_t slotOf() {
        const std::size_t start = pick(objects_.size() + 1);
        for (std::size_t count = 0; count < objects_.size(); ++count) {
            const std::size_t slot = (start + count) % objects_.size();
            if (host::queryInterface<Interface>(objects_[slot].get())) {
                return slot;
            }
        }
        return objects_.size();
    }
    host::Ref<host::IUnknown> removeAt(std::size_t slot) {
        std::swap(objects_[slot], objects_.back());
        auto removed = std::move(objects_.back());
        objects_.pop_back();
        return removed;
    }

    const std::uint8_t* data_;
    const std::uint8_t* end_;
    host::TMemoryStream stream_;
    std::vector<host::Ref<host::IUnknown>> objects_;
};

template <class Type> constexpr bool isHandle = false;
template <class Interface> constexpr bool isHandle<host::Ref<Interface>> = true;
template <class Type>
constexpr bool isInterface = std::is_base_of_v<host::IUnknown, std::remove_pointer_t<Type>>;
template <class Type>
constexpr bool isStream = std::is_base_of_v<host::TStream, std::remove_pointer_t<Type>>;

/// A value for a parameter of that type: each target says for its own types.
template <class Value> Value pickValue(Pool& pool);

/// What is passed for one parameter.
template <class Parameter> class Argument {
    using Value = std::remove_cvref_t<Parameter>;
    static constexpr bool isResult = std::is_lvalue_reference_v<Parameter> &&
                                     !std::is_const_v<std::remove_reference_t<Parameter>> &&
                                     !isInterface<Value> && !isStream<Value>;
    static auto first(Pool& pool) {
        if constexpr (isInterface<Value>) {
            using Interface = std::remove_pointer_t<Value>;
            const bool isNull = std::is_pointer_v<Value> && pool.pick(8) == 0;
            return host::Ref<Interface>(isNull ? nullptr : pool.find<Interface>());
        } else if constexpr (isStream<Value>) {
            return &pool.pickStream();
        } else if constexpr (isHandle<Value> && isResult) {
            // Maybe the last handle to the object that the call is made through.
            using Interface = std::remove_reference_t<decltype(*Value())>;
            return pool.pick(4) == 0 ? pool.take<Interface>() : Value();
        } else if constexpr (isHandle<Value>) {
            using Interface = std::remove_reference_t<decltype(*Value())>;
            return Value(pool.pick(8) == 0 ? nullptr : pool.find<Interface>());
        } else if constexpr (std::is_same_v<Value, std::u16string_view>) {
            return pickValue<std::u16string>(pool);
        } else if constexpr (std::is_same_v<Value, const host::SAXChar*> && !isResult) {
            auto text = pickValue<std::u16string>(pool);
            pool.lengthOfSpan = static_cast<host::SAXLength>(text.size());
            return text;
        } else if constexpr (isResult && std::is_arithmetic_v<Value>) {
            return static_cast<Value>(1); // to be cleared
        } else if constexpr (isResult) {
            return Value();
        } else {
            return pickValue<Value>(pool);
        }
    }

public:
    explicit Argument(Pool& pool) : held_(first(pool)) {}

    /// Whether there is something to pass.
    [[nodiscard]] bool isThere() const {
        if constexpr (isInterface<Value> && !std::is_pointer_v<Value>) {
            return static_cast<bool>(held_);
        }
        return true;
    }
    Parameter pass() {
        if constexpr (isInterface<Value> && std::is_pointer_v<Value>) {
            return held_.get();
        } else if constexpr (isInterface<Value> || (isStream<Value> && !std::is_pointer_v<Value>)) {
            return *held_;
        } else if constexpr (std::is_same_v<Value, const host::SAXChar*> && !isResult) {
            return held_.data();
        } else {
            return static_cast<Parameter>(held_);
        }
    }
    /// Looks at what came out.
    void receive(Pool& pool, bool hasFailed) {
        if constexpr (isResult) {
            // 1. After a failure, nothing.
            if constexpr (!std::is_pointer_v<Value>) {
                require(!hasFailed || held_ == Value());
            }
            // 2. Objects and texts are used again; spans are read at once.
            if constexpr (isHandle<Value>) {
                pool.keep(std::move(held_));
            } else if constexpr (std::is_same_v<Value, std::u16string>) {
                pool.lastText = std::move(held_);
            } else if constexpr (std::is_pointer_v<Value>) {
                span_ = held_;
            }
        }
    }
    /// Reads the span whose length came out behind it.
    void readSpan(Pool& pool, host::SAXLength length) const {
        if (span_ != nullptr) {
            pool.lastText = length < 0 ? std::u16string(span_)
                                       : std::u16string(span_, static_cast<std::size_t>(length));
        }
    }
    [[nodiscard]] host::SAXLength length() const {
        if constexpr (std::is_same_v<Value, host::SAXLength> && isResult) {
            return held_;
        }
        return 0;
    }

private:
    decltype(first(std::declval<Pool&>())) held_;
    const host::SAXChar* span_ = nullptr;
};

/// The XML of the document that an object belongs to.
inline std::u16string wholeOf(const host::Ref<host::IUnknown>& object) {
    const auto known = object.as<INuDomObject>();
    TNuDOMDocument* const document = known ? known->AsObject()->OwnerDocument() : nullptr;
    return document != nullptr ? document->get_xml() : std::u16string();
}

/// A failure has left its description, unless there was no memory for it; a success nothing.
inline void checkErrorInfo(host::ResultCode code, bool mayFail = false) {
    host::Ref<host::IErrorInfo> information;
    const bool isThere = host::GetErrorInfo(information) == host::resultOk;
    require(code <= host::resultOk && (isThere == (code < 0) || (mayFail && !isThere)));
}

/// Whatever an interface of the events may throw.
template <class Call> void callLoosely(Pool& pool, Call&& call) {
    try {
        call();
    } catch (const host::Exception&) {
    } catch (const std::bad_alloc&) {
        require(pool.mayFail);
    }
}

/// Lasts as long as an operation.
class CallMark {
public:
    explicit CallMark(const Pool& pool) : pool_(pool) { pool_.onCall(true); }
    CallMark(const CallMark&) = delete;
    CallMark& operator=(const CallMark&) = delete;
    ~CallMark() { pool_.onCall(false); }

private:
    const Pool& pool_;
};

/// Calls an operation on some object that has it.
template <bool isReading, class Result, class Interface, class... Parameters>
void callAny(Pool& pool, Result (Interface::*operation)(Parameters...)) {
    // 1. What is called, with what. The pool holds it, or one of the arguments.
    Interface* const object = pool.find<Interface>();
    if (object == nullptr) {
        return;
    }
    pool.lengthOfSpan.reset();
    std::tuple<Argument<Parameters>...> arguments{Argument<Parameters>(pool)...};
    const auto call = [&](auto&... each) {
        const CallMark mark(pool);
        return (object->*operation)(each.pass()...);
    };
    if (!std::apply([](auto&... each) { return (each.isThere() && ...); }, arguments)) {
        return;
    }
    // 2. The call.
    if constexpr (std::is_same_v<Result, host::ResultCode>) {
        const host::Ref<host::IUnknown> kept(isReading && pool.pick(4) == 0 ? object : nullptr);
        const std::u16string before = kept ? wholeOf(kept) : std::u16string();
        const host::ResultCode code = std::apply(call, arguments);
        checkErrorInfo(code, pool.mayFail);
        require(!kept || wholeOf(kept) == before);
        std::apply([&](auto&... each) { (each.receive(pool, code < 0), ...); }, arguments);
    } else if constexpr (std::is_void_v<Result>) {
        callLoosely(pool, [&] {
            std::apply(call, arguments);
            std::apply([&](auto&... each) { (each.receive(pool, false), ...); }, arguments);
            const host::SAXLength length = std::apply(
                [](auto&... each) { return (host::SAXLength() + ... + each.length()); }, arguments);
            std::apply([&](auto&... each) { (each.readSpan(pool, length), ...); }, arguments);
        });
    } else {
        callLoosely(pool, [&] {
            Result result = std::apply(call, arguments);
            if constexpr (isHandle<Result>) {
                pool.keep(std::move(result));
            } else if constexpr (std::is_same_v<Result, std::u16string>) {
                pool.lastText = std::move(result);
            }
        });
    }
}

using Step = void (*)(Pool& pool);

/// Operations that change something, or may.
template <auto... operations> constexpr void addCalls(std::vector<Step>& steps) {
    (steps.push_back([](Pool& pool) { callAny<false>(pool, operations); }), ...);
}
/// Operations that leave the document as it is.
template <auto... operations> constexpr void addReadingCalls(std::vector<Step>& steps) {
    (steps.push_back([](Pool& pool) { callAny<true>(pool, operations); }), ...);
}

/// One of several operations of that name: the one with these parameters.
template <class... Parameters> struct With {
    template <class Result, class Interface>
    static constexpr auto of(Result (Interface::*operation)(Parameters...)) {
        return operation;
    }
};

} // namespace fuzz
