#include "host/com/boundary.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "host/com/implements.h"
#include "host/runtime/exception.h"

namespace {
thread_local bool memoryIsGone = false;
}

// Everything in this program allocates through these, the libraries included. Inlined one by one
// they would look to the compiler like memory that is freed in another way than it was taken.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const memory = memoryIsGone ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using host::ResultCode;

/// Takes the published description; "-" when there is none.
std::u16string takeDescription() {
    host::Ref<host::IErrorInfo> information;
    std::u16string description = u"-";
    if (host::GetErrorInfo(information) == host::resultOk) {
        EXPECT_EQ(information->GetDescription(description), host::resultOk);
    }
    return description;
}

void publish(std::u16string_view description) {
    host::Ref<host::ICreateErrorInfo> record;
    ASSERT_EQ(host::CreateErrorInfo(record), host::resultOk);
    ASSERT_EQ(record->SetDescription(description), host::resultOk);
    host::SetErrorInfo(record.as<host::IErrorInfo>().get());
}

TEST(Boundary, turnsWhateverIsThrownIntoACode) {
    const struct {
        std::function<void()> thrower;
        ResultCode code;
        std::u16string description;
    } table[] = {
        {[] { throw host::EListError(u"\x20AC \xD800"); }, host::resultUnexpected,
         u"\x20AC \xD800"},
        {[] { throw host::ESystemError(u"own", -5); }, -5, u"own"},
        {[] { throw host::ESystemError(u"positive", 5); }, host::resultUnexpected, u"positive"},
        {[] { throw host::ESystemError(u"zero", 0); }, host::resultUnexpected, u"zero"},
        {[] { throw std::runtime_error("\u20AC"); }, host::resultUnexpected, u"\x20AC"},
        {[] { throw std::bad_alloc(); }, host::resultUnexpected, u"std::bad_alloc"},
        {[] { throw 5; }, host::resultUnexpected, u""},
    };
    EXPECT_EQ(static_cast<std::uint32_t>(host::resultUnexpected), 0x8000FFFFU);
    for (const auto& row : table) {
        publish(u"older");
        std::u16string text = u"former";
        const ResultCode code = host::guardCall(text, [&]() -> std::u16string {
            EXPECT_EQ(text, u"");
            row.thrower();
            return u"never";
        });
        EXPECT_EQ(code, row.code);
        EXPECT_EQ(text, u"");
        EXPECT_EQ(takeDescription(), row.description);
        EXPECT_EQ(takeDescription(), u"-") << "taken twice";
        EXPECT_EQ(host::guardCall(row.thrower), row.code);
        // And back to an exception, which keeps code and message.
        try {
            host::checkResult(code);
            ADD_FAILURE();
        } catch (const host::ESystemError& error) {
            EXPECT_EQ(error.Code(), row.code);
            EXPECT_EQ(error.Message(), row.description.empty()
                                           ? u"The operation failed with the code 0x8000FFFF"
                                           : row.description);
        }
    }
}

/// An out-parameter need not hold anything that its type allows.
TEST(Boundary, doesNotReadWhatNobodyHasWritten) {
    enum class Kind : std::uint8_t { first };
    const auto check = [](auto value) {
        alignas(decltype(value)) unsigned char place[sizeof value];
        std::memset(place, 0xA5, sizeof place);
        auto& result = reinterpret_cast<decltype(value)&>(place);
        EXPECT_EQ(host::guardCall(result, [value] { return value; }), host::resultOk);
        EXPECT_EQ(result, value);
    };
    check(true);
    check(Kind::first);
    check(7.5);
    bool result; // NOLINT(cppcoreguidelines-init-variables): as a caller would have it
    EXPECT_EQ(host::guardCall(result, [] { return true; }), host::resultOk);
    EXPECT_TRUE(result);
}

TEST(Boundary, successLeavesErrorInformationAlone) {
    publish(u"older");
    std::u16string text = u"former";
    EXPECT_EQ(host::guardCall(text, [] { return std::u16string(u"new"); }), host::resultOk);
    EXPECT_EQ(text, u"new");
    EXPECT_EQ(host::checkResult(host::resultFalse), host::resultFalse);
    std::u16string ofOtherThread;
    std::thread([&] {
        ofOtherThread = takeDescription();
        publish(u"left behind by a thread that ends");
    }).join();
    EXPECT_EQ(ofOtherThread, u"-");
    EXPECT_EQ(takeDescription(), u"older");
}

TEST(Boundary, worksWithoutMemory) {
    publish(u"older");
    bool result = true;
    memoryIsGone = true;
    host::Ref<host::ICreateErrorInfo> record;
    const ResultCode created = host::CreateErrorInfo(record);
    const ResultCode code = host::guardCall(result, []() -> bool { throw std::bad_alloc(); });
    memoryIsGone = false;
    EXPECT_EQ(created, host::resultOutOfMemory);
    EXPECT_EQ(code, host::resultUnexpected);
    EXPECT_FALSE(result);
    EXPECT_EQ(takeDescription(), u"-"); // the older record must not pass for this failure
}

class IPlace : public host::IUnknown {
public:
    using Base = host::IUnknown;
    static constexpr host::InterfaceId Id{7, 7};
    virtual ResultCode next(host::Ref<IPlace>& place) noexcept = 0;
};

class Place final : public host::Implements<IPlace> {
public:
    explicit Place(host::Ref<IPlace> next) : next_(std::move(next)) {}
    ResultCode next(host::Ref<IPlace>& place) noexcept override {
        return host::guardCall(place, [&] { return next_; });
    }

private:
    host::Ref<IPlace> next_;
};

TEST(Boundary, theResultMayReplaceTheObjectThatIsCalled) {
    host::Ref<IPlace> place;
    for (int index = 0; index < 3; ++index) {
        place = host::makeRef<Place>(place);
    }
    int steps = 0;
    for (; place; ++steps) {
        EXPECT_EQ(place->next(place), host::resultOk);
    }
    EXPECT_EQ(steps, 3);
}

} // namespace
