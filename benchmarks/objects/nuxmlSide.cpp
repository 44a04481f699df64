#include <span>

#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuObj2Xml.h"
#include "objects/sides.h"

template <> struct host::EnumNames<bench::Color> {
    static constexpr auto all = host::names<bench::Color>({{bench::Color::Red, u"clRed"},
                                                           {bench::Color::Green, u"clGreen"},
                                                           {bench::Color::Blue, u"clBlue"}});
};

namespace bench {

namespace {

class TRecord : public host::Published<TRecord> {
public:
    TRecord() = default;
    explicit TRecord(const Record& record)
        : Number(record.number), Name(host::utf8ToUtf16(record.name)), Weight(record.weight),
          Stamp(record.stamp), Active(record.isActive), Hue(record.color),
          Note(host::utf8ToUtf16(record.note)), Ratio(record.ratio) {}

    std::int32_t Number = 0;
    std::u16string Name;
    double Weight = 0;
    std::int64_t Stamp = 0;
    bool Active = false;
    Color Hue = Color::Red;
    std::u16string Note;
    float Ratio = 0;

    static constexpr auto published = host::publish<TRecord>(
        u"TRecord", host::prop<&TRecord::Number>(), host::prop<&TRecord::Name>(),
        host::prop<&TRecord::Weight>(), host::prop<&TRecord::Stamp>(),
        host::prop<&TRecord::Active>(), host::prop<&TRecord::Hue>(u"Color"),
        host::prop<&TRecord::Note>(), host::prop<&TRecord::Ratio>());

    friend bool operator==(const TRecord& left, const TRecord& right) {
        return left.Number == right.Number && left.Name == right.Name &&
               left.Weight == right.Weight && left.Stamp == right.Stamp &&
               left.Active == right.Active && left.Hue == right.Hue && left.Note == right.Note &&
               left.Ratio == right.Ratio;
    }
};

class TNote : public host::Published<TNote> {
public:
    std::u16string Text;

    static constexpr auto published = host::publish<TNote>(u"TNote", host::prop<&TNote::Text>());

    friend bool operator==(const TNote& left, const TNote& right) {
        return left.Text == right.Text;
    }
};

/// Hands every block that is written to a function.
template <class Take> class Target final : public host::TStream {
public:
    explicit Target(Take take) : take_(std::move(take)) {}

    std::size_t Read(void* /*buffer*/, std::size_t /*count*/) override { return 0; }
    std::size_t Write(const void* buffer, std::size_t count) override {
        take_(std::string_view(static_cast<const char*>(buffer), count));
        return count;
    }
    std::int64_t Seek(std::int64_t /*offset*/, host::SeekOrigin /*origin*/) override { return 0; }

private:
    Take take_;
};

template <class Objects, class Take> void writeAll(const Objects& objects, Take take) {
    Target target(std::move(take));
    nu::ObjectWriter writer(target, u"value");
    for (const auto& object : objects) {
        writer.Write(object, u"item");
    }
    writer.Close();
}

/// Reads as it does by itself, or without the stage that checks whether a text is well-formed: the
/// others trust theirs, too.
template <bool isChecked> struct CodecOf {
    static constexpr TNuDeserializeOptions options =
        isChecked ? TNuDeserializeOptions() : TNuDeserializeOptions(dsUnchecked);

    static std::string write(const std::vector<TRecord>& records) {
        std::string xml;
        writeAll(records, [&](std::string_view block) { xml += block; });
        return xml;
    }
    static std::string write(const TNote& note) {
        std::string xml;
        writeAll(std::span(&note, 1), [&](std::string_view block) { xml += block; });
        return xml;
    }
    static void read(const std::string& xml, std::vector<TRecord>& records) {
        host::TMemoryViewStream stream(xml);
        nu::ReadObjects<TRecord>(
            stream, u"value/item",
            [&](std::unique_ptr<TRecord> record) { records.push_back(std::move(*record)); },
            options);
    }
    static void read(const std::string& xml, TNote& note) {
        host::TMemoryViewStream stream(xml);
        nu::ReadObjects<TNote>(
            stream, u"value/item", [&](std::unique_ptr<TNote> read) { note = std::move(*read); },
            options);
    }
};
using Codec = CodecOf<false>;

template <bool isChecked> constexpr ObjectLibrary sideNamed(const char* name) {
    return {name,
            [](const std::vector<Record>& records) -> std::unique_ptr<Subject> {
                return std::make_unique<SubjectOf<CodecOf<isChecked>, std::vector<TRecord>>>(
                    std::vector<TRecord>(records.begin(), records.end()));
            },
            [](const std::string& text) -> std::unique_ptr<Subject> {
                TNote note;
                note.Text = host::utf8ToUtf16(text);
                return std::make_unique<SubjectOf<CodecOf<isChecked>, TNote>>(std::move(note));
            }};
}

/// Counts what is written, and what is read.
class OneByOne final : public Subject {
public:
    explicit OneByOne(std::vector<TRecord> records)
        : records_(std::move(records)), xml_(Codec::write(records_)) {}

    std::size_t write() override {
        std::size_t size = 0;
        writeAll(records_, [&](std::string_view block) { size += block.size(); });
        return size;
    }
    void read() override {
        host::TMemoryViewStream stream(xml_);
        count_ = nu::ReadObjects<TRecord>(
            stream, u"item", [](std::unique_ptr<TRecord>) {}, dsUnchecked);
    }
    [[nodiscard]] bool isSame() const override { return count_ == records_.size(); }

private:
    std::vector<TRecord> records_;
    std::string xml_;
    std::size_t count_ = 0;
};

} // namespace

const ObjectLibrary nuxmlSide = sideNamed<false>("nuxml");
const ObjectLibrary nuxmlCheckedSide = sideNamed<true>("nuxml, checked");

const ObjectLibrary nuxmlOneByOneSide{
    "nuxml, one by one",
    [](const std::vector<Record>& records) -> std::unique_ptr<Subject> {
        return std::make_unique<OneByOne>(std::vector<TRecord>(records.begin(), records.end()));
    },
    nuxmlSide.ofText};

} // namespace bench
