#include "host/runtime/stream.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "host/com/streamAdapter.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/memoryStream.h"

namespace {

using host::SeekOrigin;

std::string contentOf(host::TCustomMemoryStream& stream) {
    return {reinterpret_cast<const char*>(stream.Memory()),
            static_cast<std::size_t>(stream.GetSize())};
}

std::string readAll(host::TStream& stream) {
    std::string bytes(static_cast<std::size_t>(stream.GetSize()), '?');
    stream.SetPosition(0);
    stream.ReadBuffer(bytes.data(), bytes.size());
    return bytes;
}

/// A path that no other run uses; the file goes with the object.
struct TemporaryFile {
    TemporaryFile()
        : path(std::filesystem::temp_directory_path() /
               ("nuxmlStream" + std::to_string(::getpid()) + ".tmp")) {}
    ~TemporaryFile() { std::filesystem::remove(path); }

    [[nodiscard]] std::string bytes() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path path;
};

// What a stream does, said with a string and a position.
struct Model {
    std::string bytes;
    std::size_t position = 0;

    std::string read(std::size_t count) {
        const std::size_t start = std::min(position, bytes.size());
        const std::string taken = bytes.substr(start, count);
        position += taken.size();
        return taken;
    }
    void write(const std::string& data) {
        if (data.empty()) {
            return;
        }
        bytes.resize(std::max(bytes.size(), position + data.size()));
        bytes.replace(position, data.size(), data);
        position += data.size();
    }
};

void compareWithModel(host::TStream& stream, unsigned seed, std::size_t longest, int steps,
                      const std::function<void()>& check) {
    std::mt19937 random(seed);
    Model model;
    auto upTo = [&](std::size_t limit) { return random() % (limit + 1); };
    for (int step = 0; step < steps; ++step) {
        // Mostly small pieces, sometimes ones beyond the buffer of a file.
        const std::size_t count = upTo(random() % 8 == 0 ? longest : 40);
        switch (random() % 8) {
        case 0:
        case 1:
        case 2: {
            std::string data(count, static_cast<char>('a' + random() % 26));
            ASSERT_EQ(stream.Write(data.data(), data.size()), data.size());
            model.write(data);
            break;
        }
        case 3:
        case 4: {
            std::string data(count, '?');
            data.resize(stream.Read(data.data(), count));
            ASSERT_EQ(data, model.read(count)) << step;
            break;
        }
        case 5: // a little back, as after looking ahead
            model.position -= std::min(model.position, count % 7);
            stream.Seek(static_cast<std::int64_t>(model.position) - stream.GetPosition(),
                        SeekOrigin::Current);
            break;
        case 6:
            model.position = upTo(model.bytes.size() + 100);
            ASSERT_EQ(stream.Seek(static_cast<std::int64_t>(model.position) -
                                      static_cast<std::int64_t>(model.bytes.size()),
                                  SeekOrigin::End),
                      static_cast<std::int64_t>(model.position));
            break;
        default:
            if (random() % 10 == 0) {
                model.bytes.resize(upTo(model.bytes.size() + count));
                model.position = std::min(model.position, model.bytes.size());
                stream.SetSize(static_cast<std::int64_t>(model.bytes.size()));
            }
            break;
        }
        ASSERT_EQ(stream.GetPosition(), static_cast<std::int64_t>(model.position)) << step;
        if (step % 16 == 0) {
            ASSERT_EQ(stream.GetSize(), static_cast<std::int64_t>(model.bytes.size())) << step;
        }
        check();
    }
    ASSERT_EQ(readAll(stream), model.bytes);
}

TEST(MemoryStream, behavesLikeAStringWithZerosBehindIt) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        host::TMemoryStream stream;
        compareWithModel(stream, seed, 3000, 300, [&] {
            const std::byte* const end = stream.Memory() + stream.GetSize();
            ASSERT_EQ(std::count(end, end + host::TMemoryStream::readableSlack, std::byte{}),
                      static_cast<std::ptrdiff_t>(host::TMemoryStream::readableSlack));
        });
    }
}

TEST(StreamInterface, behavesLikeTheStreamBehindIt) {
    for (unsigned seed = 0; seed < 5; ++seed) {
        host::TInterfaceStream stream(
            host::makeStreamInterface(std::make_unique<host::TMemoryStream>()));
        compareWithModel(stream, seed, 3000, 300, [] {});
    }
}

TEST(MemoryStream, keepsItsContentWhereItIsToldTo) {
    host::TMemoryStream stream("abcdef");
    EXPECT_EQ(stream.GetPosition(), 0);
    stream.Reserve(100000);
    EXPECT_EQ(contentOf(stream), "abcdef");
    stream.WritableMemory()[0] = std::byte{'A'};
    stream.SetSize(3);
    stream.SetSize(5);
    EXPECT_EQ(contentOf(stream), std::string("Abc\0\0", 5));
    stream.Clear();
    EXPECT_EQ(stream.GetSize(), 0);
    stream.WriteBuffer("x", 1);
    EXPECT_EQ(contentOf(stream), "x");
}

TEST(MemoryStream, refusesImpossiblePlaces) {
    host::TMemoryStream stream("abc");
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    stream.SetPosition(1);
    EXPECT_THROW(stream.SetPosition(-1), host::EStreamError);
    EXPECT_THROW(stream.Seek(-4, SeekOrigin::End), host::EStreamError);
    EXPECT_THROW(stream.Seek(largest, SeekOrigin::Current), host::EStreamError);
    EXPECT_THROW(stream.SetSize(-1), host::EStreamError);
    EXPECT_THROW(stream.SetSize(largest), std::bad_alloc);
    EXPECT_EQ(stream.GetPosition(), 1);
    stream.SetPosition(largest);
    EXPECT_THROW(stream.Write("x", 1), std::bad_alloc);
    EXPECT_EQ(contentOf(stream), "abc");
}

TEST(MemoryViewStream, readsForeignMemoryInPlace) {
    const std::string bytes = "abc";
    host::TMemoryViewStream stream(bytes);
    EXPECT_EQ(static_cast<const void*>(stream.Memory()), bytes.data());
    EXPECT_EQ(readAll(stream), "abc");
    char more = 0;
    EXPECT_EQ(stream.Read(&more, 1), 0U);
    EXPECT_EQ(stream.Write("x", 1), 0U);
    EXPECT_THROW(stream.SetSize(1), host::EStreamError);
}

TEST(FileStream, behavesLikeAString) {
    const TemporaryFile file;
    for (unsigned seed = 0; seed < 6; ++seed) {
        host::TFileStream stream(file.path, host::fmCreate);
        compareWithModel(stream, seed, 150000, 1000, [] {});
    }
}

TEST(FileStream, readsWholeUnitsAcrossItsBuffer) {
    const TemporaryFile file;
    std::ofstream(file.path, std::ios::binary) << std::string(200001, 'x');
    host::TFileStream stream(file.path, host::fmOpenRead | host::fmShareDenyNone);
    stream.SetPosition(1);
    char unit[2];
    for (int index = 0; index < 100000; ++index) {
        ASSERT_EQ(stream.Read(unit, 2), 2U) << index;
        // Looking back one unit must not lose the buffer's alignment to the units.
        stream.Seek(-2, SeekOrigin::Current);
        ASSERT_EQ(stream.Read(unit, 2), 2U) << index;
    }
    EXPECT_EQ(stream.Read(unit, 2), 0U);
}

TEST(FileStream, writesReachTheFile) {
    const TemporaryFile file;
    {
        host::TFileStream stream(file.path.u16string(), host::fmCreate);
        stream.WriteBuffer("abc", 3);
        EXPECT_EQ(file.bytes(), "");
        stream.Flush();
        EXPECT_EQ(file.bytes(), "abc");
        stream.WriteBuffer("def", 3);
    }
    EXPECT_EQ(file.bytes(), "abcdef");
    host::TFileStream(file.path, host::fmOpenReadWrite).WriteBuffer("X", 1);
    EXPECT_EQ(file.bytes(), "Xbcdef");
}

TEST(FileStream, saysWhatItCannotDo) {
    const TemporaryFile file;
    try {
        host::TFileStream stream(file.path, host::fmOpenRead);
        FAIL();
    } catch (const host::EFileOpenError& error) {
        EXPECT_EQ(error.what(),
                  "Cannot open file \"" + file.path.string() + "\". No such file or directory");
    }
    EXPECT_THROW(host::TFileStream(file.path / "x", host::fmCreate), host::EFileOpenError);
    EXPECT_THROW(host::TFileStream(file.path.parent_path(), host::fmOpenRead),
                 host::EFileOpenError);
    std::ofstream(file.path) << "abc";
    host::TFileStream reader(file.path, host::fmOpenRead);
    EXPECT_THROW(reader.Write("x", 1), host::EWriteError);
    EXPECT_THROW(reader.SetSize(0), host::EStreamError);
    EXPECT_THROW(reader.SetPosition(-1), host::EStreamError);
    EXPECT_EQ(readAll(reader), "abc");
    host::TFileStream writer(file.path, host::fmOpenWrite);
    char byte = 0;
    EXPECT_THROW(writer.Read(&byte, 1), host::EReadError);
}

TEST(FileExists, neverThrows) {
    const TemporaryFile file;
    EXPECT_FALSE(host::fileExists(file.path.u16string()));
    std::ofstream(file.path) << "";
    EXPECT_TRUE(host::fileExists(file.path.u16string()));
    EXPECT_FALSE(host::fileExists(file.path.u16string() + u'\0'));
    EXPECT_FALSE(host::fileExists(file.path.u16string() + std::u16string(1, 0xD800)));
    EXPECT_FALSE(host::fileExists(file.path.parent_path().u16string()));
    EXPECT_FALSE(host::fileExists(std::u16string(10000, u'x')));
    EXPECT_FALSE(host::fileExists(u""));
}

/// Moves at most `portion` bytes a call, promises a size of its own, and takes at most `room`
/// bytes.
class AwkwardStream : public host::TStream {
public:
    std::size_t Read(void* buffer, std::size_t count) override {
        const std::size_t taken =
            bytes.copy(static_cast<char*>(buffer), std::min(count, portion), position);
        position += taken;
        return taken;
    }
    std::size_t Write(const void* buffer, std::size_t count) override {
        const std::size_t taken = std::min({count, portion, room - bytes.size()});
        bytes.append(static_cast<const char*>(buffer), taken);
        return taken;
    }
    std::int64_t Seek(std::int64_t offset, SeekOrigin origin) override {
        if (origin == SeekOrigin::End) {
            return promised;
        }
        if (origin == SeekOrigin::Beginning) {
            position = 0;
        }
        position += static_cast<std::size_t>(offset);
        return static_cast<std::int64_t>(position);
    }

    std::string bytes;
    std::size_t position = 0;
    std::size_t portion = 7;
    std::size_t room = 1000;
    std::int64_t promised = 0;
};

TEST(Stream, wholeBuffersInPortions) {
    AwkwardStream stream;
    stream.WriteBuffer(std::string(995, 'x').data(), 995);
    EXPECT_THROW(stream.WriteBuffer("123456", 6), host::EWriteError);
    std::string bytes(1000, '?');
    stream.ReadBuffer(bytes.data(), 990);
    EXPECT_EQ(bytes.substr(0, 990), std::string(990, 'x'));
    EXPECT_THROW(stream.ReadBuffer(bytes.data(), 11), host::EReadError);
    EXPECT_THROW(stream.SetSize(1), host::EStreamError);
}

TEST(Stream, copiesFromAnother) {
    AwkwardStream source;
    source.bytes = std::string(150000, 'a') + "tail";
    source.promised = 150004;
    source.portion = 1000;
    source.position = 150000;
    host::TMemoryStream target("<>");
    target.SetPosition(1);
    EXPECT_EQ(target.CopyFrom(source, 2), 2); // from where the source stands
    EXPECT_EQ(contentOf(target), "<ta");
    EXPECT_EQ(target.CopyFrom(source, 0), 150004); // the whole source
    EXPECT_EQ(contentOf(target), "<ta" + source.bytes);
    EXPECT_EQ(source.GetSize(), 150004);

    source.promised = 150005; // more than there is
    EXPECT_THROW(target.CopyFrom(source, 0), host::EReadError);
    AwkwardStream full;
    full.room = 3;
    source.SetPosition(0);
    EXPECT_THROW(full.CopyFrom(source, 4), host::EWriteError);
    source.promised = 0;
    EXPECT_EQ(full.CopyFrom(source, 0), 0);
}

} // namespace
