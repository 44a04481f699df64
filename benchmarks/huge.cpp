// A document that is larger than memory: made while it is read, so that it costs neither disk nor
// memory of its own. Prints how fast it is read and how much the process grows meanwhile, and then
// the speed on shorter streams beside that of expat fed in pieces of 64 KiB. With "depth" instead:
// what ends a document of more open elements, or more surplus end tags, than the reader can count.

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/stream.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlSax.h"

#if NUXML_HAS_EXPAT
#include <expat.h>

#include <cstring>
#endif

namespace {

constexpr std::int64_t mebibyte = 1024 * 1024;

struct Shape {
    const char* name;
    std::string (*piece)(std::size_t index);
};

std::string record(std::size_t index) {
    const std::string number = std::to_string(index);
    return "  <item id=\"" + number +
           "\" kind=\"book\">\n    <title>Caf\xC3\xA9 &amp; tea, volume " + number +
           "</title>\n    <price currency=\"EUR\">12.50</price>\n    <stock/>\n  </item>\n";
}

std::string paragraph(std::size_t index) {
    std::string text = "<p>";
    for (std::size_t word = 0; word < 150; ++word) {
        text += std::string(2 + (index + 7 * word) % 9, static_cast<char>('a' + word % 26)) + ' ';
    }
    return text + "</p>\n";
}

std::string denseElement(std::size_t index) {
    return "<i a=\"" + std::to_string(index % 10) + "\" b=\"2\"/>";
}

constexpr Shape shapes[] = {{"records", record}, {"prose", paragraph}, {"dense", denseElement}};

/// Pieces of one shape between the tags of a root element, as many as it takes.
class GeneratedStream final : public host::TStream {
public:
    GeneratedStream(const Shape& shape, std::int64_t size) {
        for (std::size_t index = 0; static_cast<std::int64_t>(block_.size()) < mebibyte; ++index) {
            block_ += shape.piece(index);
        }
        blocksEnd_ = std::max<std::int64_t>(size / sizeOf(block_), 1) * sizeOf(block_);
    }

    std::size_t Read(void* buffer, std::size_t count) override {
        auto* const target = static_cast<char*>(buffer);
        std::size_t done = 0;
        while (done < count) {
            const std::string_view rest = restAt(position_ - sizeOf(start_));
            if (rest.empty()) {
                break;
            }
            const std::size_t got = rest.copy(target + done, count - done);
            position_ += static_cast<std::int64_t>(got);
            done += got;
        }
        return done;
    }
    std::size_t Write(const void*, std::size_t) override { return 0; }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        const std::int64_t base = origin == host::SeekOrigin::Beginning ? 0
                                  : origin == host::SeekOrigin::Current ? position_
                                                                        : GetSize();
        return position_ = base + offset;
    }
    std::int64_t GetSize() override { return sizeOf(start_) + blocksEnd_ + sizeOf(end_); }

private:
    static constexpr std::string_view start_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<catalogue>\n";
    static constexpr std::string_view end_ = "</catalogue>\n";

    static std::int64_t sizeOf(std::string_view text) {
        return static_cast<std::int64_t>(text.size());
    }
    /// What can be given at once from a place that is counted from behind the start tag.
    [[nodiscard]] std::string_view restAt(std::int64_t place) const {
        const auto from = [](std::string_view text, std::int64_t offset) {
            return text.substr(static_cast<std::size_t>(std::min(offset, sizeOf(text))));
        };
        return place < 0            ? from(start_, place + sizeOf(start_))
               : place < blocksEnd_ ? from(block_, place % sizeOf(block_))
                                    : from(end_, place - blocksEnd_);
    }

    std::string block_;
    std::int64_t blocksEnd_;
    std::int64_t position_ = 0;
};

/// Looks at the length of everything it is told.
struct Counter final : host::TBufferedDefaultHandler {
    std::uint64_t elements = 0;
    std::uint64_t units = 0;
    std::int64_t line = 0;

    void setDocumentLocator(host::ILocator& locator) override { locator_ = &locator; }
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override {
        ++elements;
        units += uri.size() + localName.size() + qName.size();
        for (host::SAXLength index = attributes.getLength(); index-- > 0;) {
            const host::SAXChar* text = nullptr;
            host::SAXLength length = 0;
            attributes.getQName(index, text, length);
            units += static_cast<std::uint64_t>(length);
            attributes.getValue(index, text, length);
            units += static_cast<std::uint64_t>(length);
        }
    }
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override {
        units += uri.size() + localName.size() + qName.size();
    }
    void characters(std::u16string_view text) override { units += text.size(); }
    void endDocument() override { line = locator_->getLineNumber(); }

private:
    host::Ref<host::ILocator> locator_;
};

/// Bytes a second, in millions.
using Speed = double;

Speed timed(std::int64_t size, const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    return static_cast<double>(size) / seconds.count() / 1e6;
}

Speed readOurs(host::TStream& stream, host::Ref<Counter>& counter) {
    counter = host::makeRef<Counter>();
    stream.SetPosition(0);
    TNuSAXXMLReader reader;
    reader.setContentHandler(counter);
    return timed(stream.GetSize(), [&] { reader.Parse(stream); });
}

#if NUXML_HAS_EXPAT

/// Tells how many elements there were, too.
Speed readWithExpat(host::TStream& stream, Counter& counter) {
    stream.SetPosition(0);
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreateNS(nullptr, '|'), XML_ParserFree);
    XML_SetUserData(parser.get(), &counter);
    XML_SetElementHandler(
        parser.get(),
        [](void* user, const XML_Char* name, const XML_Char** attributes) {
            auto& sums = *static_cast<Counter*>(user);
            ++sums.elements;
            sums.units += std::strlen(name);
            for (; *attributes != nullptr; ++attributes) {
                sums.units += std::strlen(*attributes);
            }
        },
        [](void* user, const XML_Char* name) {
            static_cast<Counter*>(user)->units += std::strlen(name);
        });
    XML_SetCharacterDataHandler(parser.get(), [](void* user, const XML_Char*, int length) {
        static_cast<Counter*>(user)->units += static_cast<std::uint64_t>(length);
    });
    return timed(stream.GetSize(), [&] {
        std::vector<char> piece(64 * 1024);
        std::size_t got = 0;
        do {
            got = stream.Read(piece.data(), piece.size());
            if (XML_Parse(parser.get(), piece.data(), static_cast<int>(got), got == 0) !=
                XML_STATUS_OK) {
                throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(parser.get())));
            }
        } while (got > 0);
    });
}

Speed median(std::vector<Speed> speeds) {
    std::sort(speeds.begin(), speeds.end());
    return speeds[speeds.size() / 2];
}

void compareWithExpat() {
    constexpr std::int64_t size = 128 * mebibyte;
    constexpr int rounds = 5;
    std::printf("\n%-8s %12s %12s %7s  (128 MiB, medians of %d)\n", "shape", "nuxml MB/s",
                "expat MB/s", "ratio", rounds);
    for (const Shape& shape : shapes) {
        GeneratedStream stream(shape, size);
        std::vector<Speed> ours;
        std::vector<Speed> theirs;
        for (int round = 0; round < rounds; ++round) {
            host::Ref<Counter> counter;
            ours.push_back(readOurs(stream, counter));
            const auto other = host::makeRef<Counter>();
            theirs.push_back(readWithExpat(stream, *other));
            if (counter->elements != other->elements) {
                throw std::runtime_error("the parsers count different elements");
            }
        }
        std::printf("%-8s %12.0f %12.0f %7.1f\n", shape.name, median(ours), median(theirs),
                    median(ours) / median(theirs));
    }
}

#endif

/// What is resident now, in bytes.
std::int64_t resident() {
    std::ifstream file("/proc/self/statm");
    std::int64_t all = 0;
    std::int64_t pages = 0;
    file >> all >> pages;
    return pages * ::sysconf(_SC_PAGESIZE);
}

/// The most that was resident up to now, in bytes.
std::int64_t peakResident() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

void readHuge(std::int64_t mebibytes) {
    GeneratedStream stream(shapes[0], mebibytes * mebibyte);
    host::Ref<Counter> counter;
    const std::int64_t before = resident();
    const Speed speed = readOurs(stream, counter);
    std::printf("%lld bytes, %llu elements, %lld lines: %.1f s, %.0f MB/s, resident growth %.1f "
                "MiB\n",
                static_cast<long long>(stream.GetSize()),
                static_cast<unsigned long long>(counter->elements),
                static_cast<long long>(counter->line),
                static_cast<double>(stream.GetSize()) / speed / 1e6, speed,
                static_cast<double>(peakResident() - before) / static_cast<double>(mebibyte));
}

/// One tag again and again, more often than a reader can count.
class RepeatedTag final : public host::TStream {
public:
    explicit RepeatedTag(std::string_view tag) {
        while (static_cast<std::int64_t>(block_.size()) < mebibyte) {
            block_ += tag;
        }
        left_ = (std::int64_t{1} << 32) / static_cast<std::int64_t>(block_.size() / tag.size());
    }

    std::size_t Read(void* buffer, std::size_t count) override {
        if (place_ == block_.size()) {
            place_ = 0;
            --left_;
        }
        const std::size_t got =
            left_ > 0 ? block_.copy(static_cast<char*>(buffer), count, place_) : 0;
        place_ += got;
        return got;
    }
    std::size_t Write(const void*, std::size_t) override { return 0; }
    std::int64_t Seek(std::int64_t, host::SeekOrigin) override {
        place_ = 0; // as who looks for a mark does
        return 0;
    }

private:
    std::string block_;
    std::size_t place_ = 0;
    std::int64_t left_;
};

/// Whether too many of them end the parse with an error.
bool endsTooMany(std::string_view tag) {
    RepeatedTag stream(tag);
    TNuSAXXMLReader reader;
    reader.SetParserChoice(TNuSaxParserChoice::LargeStream);
    const std::int64_t before = resident();
    const auto start = std::chrono::steady_clock::now();
    std::string end = "nothing";
    try {
        reader.Parse(stream);
    } catch (const ENuSaxFatalError& failure) {
        end = failure.what();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%s again and again: %.1f s, resident growth %.1f MiB, ended by: %s\n",
                std::string(tag).c_str(), seconds.count(),
                static_cast<double>(peakResident() - before) / static_cast<double>(mebibyte),
                end.c_str());
    return end.find("deeper than 2147483647") != end.npos ||
           end.find("too many end tags") != end.npos;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount == 2 && arguments[1] == std::string_view("depth")) {
        return endsTooMany("<a>") && endsTooMany("</a>") ? 0 : 1;
    }
    const std::int64_t mebibytes = argumentCount == 2 ? std::atoll(arguments[1]) : 8 * 1024;
    if (argumentCount > 2 || mebibytes <= 0) {
        std::fputs("usage: bench-huge [MEBIBYTES | depth]\n", stderr);
        return 2;
    }
    try {
        readHuge(mebibytes);
#if NUXML_HAS_EXPAT
        compareWithExpat();
#endif
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench-huge: %s\n", failure.what());
        return 1;
    }
    return 0;
}
