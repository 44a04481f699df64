#include "host/com/streamAdapter.h"

#include <filesystem>
#include <fstream>
#include <limits>

#include <gtest/gtest.h>
#include <unistd.h>

#include "host/com/boundary.h"
#include "host/com/implements.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/memoryStream.h"
#include "support/oddStream.h"

namespace {

using host::ResultCode;
using host::SeekOrigin;

/// Fails with a code and no error information, or claims to have done more than it was asked to.
class BrokenInterface final : public host::Implements<host::IStream> {
public:
    explicit BrokenInterface(ResultCode code) : code_(code) {}
    ResultCode Read(void*, std::size_t count, std::size_t& read) noexcept override {
        read = count + 1;
        return code_;
    }
    ResultCode Write(const void*, std::size_t count, std::size_t& written) noexcept override {
        written = count + 1;
        return code_;
    }
    ResultCode Seek(std::int64_t, SeekOrigin, std::int64_t&) noexcept override { return code_; }
    ResultCode GetSize(std::int64_t&) noexcept override { return code_; }
    ResultCode SetSize(std::int64_t) noexcept override { return code_; }
    ResultCode CopyTo(host::IStream*, std::int64_t, std::int64_t&) noexcept override {
        return code_;
    }
    ResultCode Commit() noexcept override { return code_; }

private:
    ResultCode code_;
};

template <class Operation> ResultCode codeThrownBy(Operation&& operation, std::u16string message) {
    try {
        operation();
    } catch (const host::ESystemError& error) {
        EXPECT_EQ(error.Message(), message);
        return error.Code();
    }
    return host::resultOk;
}

TEST(StreamAdapter, failuresAreCodesOneWay) {
    support::OddStream odd("abcdef");
    odd.failsAt = 2;
    const auto stream = host::makeStreamInterface(odd);
    char bytes[4];
    std::size_t count = 9;
    EXPECT_EQ(stream->Read(bytes, 4, count), host::resultOk);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(stream->Read(bytes, 4, count), host::resultUnexpected);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(stream->SetSize(1), host::resultUnexpected);
    // Both ways at once: the message comes through.
    host::TInterfaceStream back(stream);
    EXPECT_EQ(codeThrownBy([&] { back.Read(bytes, 4); }, u"broken"), host::resultUnexpected);
}

TEST(StreamAdapter, failuresAreExceptionsTheOtherWay) {
    constexpr auto code = static_cast<ResultCode>(0x80030005U);
    const std::u16string message = u"The operation failed with the code 0x80030005";
    host::TInterfaceStream failing{host::makeRef<BrokenInterface>(code)};
    char byte = 0;
    // What failed before has nothing to do with a failure that says nothing.
    EXPECT_LT(host::guardCall([] { throw host::Exception(u"earlier"); }), 0);
    EXPECT_EQ(codeThrownBy([&] { failing.Read(&byte, 1); }, message), code);
    EXPECT_EQ(codeThrownBy([&] { failing.Write(&byte, 1); }, message), code);
    EXPECT_EQ(codeThrownBy([&] { failing.SetPosition(1); }, message), code);
    EXPECT_EQ(codeThrownBy([&] { failing.GetSize(); }, message), code);
    EXPECT_EQ(codeThrownBy([&] { failing.SetSize(1); }, message), code);
    EXPECT_EQ(codeThrownBy([&] { failing.Flush(); }, message), code);

    host::TInterfaceStream lying{host::makeRef<BrokenInterface>(host::resultOk)};
    EXPECT_THROW(lying.Read(&byte, 1), host::EReadError);
    EXPECT_THROW(lying.Write(&byte, 1), host::EWriteError);
    EXPECT_THROW(host::TInterfaceStream(nullptr), host::EInvalidPointer);
    EXPECT_THROW(host::makeStreamInterface(nullptr), host::EInvalidPointer);
}

TEST(StreamAdapter, copiesWhatThereIs) {
    const std::string content(200000, 'x');
    const struct {
        std::int64_t count;
        std::int64_t copied;
    } table[] = {
        {0, 0}, {-1, 0}, {70000, 70000}, {std::numeric_limits<std::int64_t>::max(), 199999}};
    for (const auto& row : table) {
        support::OddStream source(content);
        source.readsAtMost = 1000;
        source.SetPosition(1);
        host::TMemoryStream target;
        std::int64_t copied = 7;
        EXPECT_EQ(host::makeStreamInterface(source)->CopyTo(host::makeStreamInterface(target).get(),
                                                            row.count, copied),
                  host::resultOk);
        EXPECT_EQ(copied, row.copied);
        EXPECT_EQ(target.GetSize(), row.copied);
    }
    host::TMemoryStream source("abc");
    const auto stream = host::makeStreamInterface(source);
    const auto broken = host::makeRef<BrokenInterface>(-7);
    std::int64_t copied = 7;
    EXPECT_EQ(stream->CopyTo(broken.get(), 3, copied), -7); // the target's own code
    EXPECT_EQ(copied, 0);
    EXPECT_EQ(stream->CopyTo(nullptr, 3, copied), host::resultUnexpected);
}

TEST(StreamAdapter, ownsWhatItIsGivenAndCommits) {
    const int alive = support::OddStream::alive;
    {
        const auto owner = host::makeStreamInterface(std::make_unique<support::OddStream>("a"));
        EXPECT_EQ(support::OddStream::alive, alive + 1);
    }
    EXPECT_EQ(support::OddStream::alive, alive);

    const auto path = std::filesystem::temp_directory_path() /
                      ("nuxmlStreamAdapter" + std::to_string(::getpid()) + ".tmp");
    {
        host::TFileStream file(path, host::fmCreate);
        host::TInterfaceStream stream(host::makeStreamInterface(file));
        stream.WriteBuffer("abc", 3);
        stream.Flush();
        EXPECT_EQ(std::filesystem::file_size(path), 3U);
    }
    std::filesystem::remove(path);
}

} // namespace
