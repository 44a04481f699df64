// Objects out of any bytes: a text fills an object or says why not, makes objects of registered
// classes that fit only, and what it left in the object is written, read and written again as the
// same text.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "nuObj2Xml.h"

namespace {

enum class Mood : std::uint8_t { Calm, Wild };

} // namespace

template <> struct host::EnumNames<Mood> {
    static constexpr auto all = host::names<Mood>({{Mood::Calm, u"calm"}, {Mood::Wild, u"wild"}});
};

namespace {

using host::prop;

class Part : public host::Published<Part> {
public:
    std::u16string Name;
    std::int16_t Size = 3;
    std::unique_ptr<Part> Next;
    static constexpr auto published =
        host::publish<Part>(u"TPart", prop<&Part::Name>().Alias(u"N"),
                            prop<&Part::Size>().Default(3), prop<&Part::Next>());
};
class Wheel : public host::Published<Wheel, Part> {
public:
    Part* Axle = nullptr;
    static constexpr auto published = host::publish<Wheel>(u"TWheel", host::ref<&Wheel::Axle>());
};
/// Registered, and of no use anywhere in a machine.
class Bystander : public host::Published<Bystander> {
public:
    Bystander() { std::abort(); }
    static constexpr auto published = host::publish<Bystander>(u"TBystander");
};

class Machine : public host::Published<Machine> {
public:
    bool On = false;
    std::uint64_t Serial = 0;
    float Ratio = 0;
    double Weight = 0;
    host::Currency Price{};
    host::TDateTime Made{};
    Mood State = Mood::Calm;
    host::Set<Mood> States;
    std::string Maker;
    host::Variant Any;
    std::vector<std::uint8_t> Image;
    std::vector<std::int32_t> Counts;
    std::vector<std::u16string> Words;
    Part Body;
    std::shared_ptr<Part> First;
    std::vector<Wheel> Wheels;
    std::vector<std::unique_ptr<Part>> Parts;
    std::map<std::u16string, std::vector<host::Variant>> Notes;
    std::optional<double> Maybe;
    std::array<bool, 2> Two{};
    [[nodiscard]] std::u16string GetTitle() const { return title_; }
    void SetTitle(std::u16string_view title) {
        if (title == u"forbidden") {
            throw host::Exception(u"no");
        }
        title_ = title;
    }
    static constexpr auto published = host::publish<Machine>(
        u"TMachine", prop<&Machine::On>().Default(false), prop<&Machine::Serial>(),
        prop<&Machine::Ratio>(), prop<&Machine::Weight>(), prop<&Machine::Price>(),
        prop<&Machine::Made>(), prop<&Machine::State>(), prop<&Machine::States>(),
        prop<&Machine::Maker>(), prop<&Machine::Any>(), prop<&Machine::Image>(),
        prop<&Machine::Counts>(), prop<&Machine::Words>(), prop<&Machine::Body>(),
        prop<&Machine::First>(), prop<&Machine::Wheels>(), prop<&Machine::Parts>(),
        prop<&Machine::Notes>(), prop<&Machine::Maybe>(), prop<&Machine::Two>(),
        prop<&Machine::GetTitle, &Machine::SetTitle>());

private:
    std::u16string title_;
};

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Whether the text could be read as a whole.
bool read(Machine& machine, std::u16string_view text, TNuDeserializeOptions options) {
    try {
        TNuSerializer(machine).DeSerialize(text, options);
        return true;
    } catch (const host::Exception&) {
        return false;
    }
}

/// What a stream of the text leaves in a machine, as its text, and the message of what it failed
/// at. Blanks behind it keep it away from the end, near which nothing is read straight from its
/// bytes.
std::u16string outcome(std::string bytes, std::string_view blank, TNuDeserializeOptions options) {
    for (int count = 0; count < 128; ++count) {
        bytes += blank;
    }
    host::TMemoryViewStream stream(bytes);
    Machine machine;
    std::u16string message;
    try {
        NuDeSerializeObject(machine, stream, options);
    } catch (const host::Exception& error) {
        message = error.Message();
    }
    return TNuSerializer(machine).Serialize(u"M") + message;
}

/// UTF-8 is read straight from its bytes, UTF-16 by events.
void requireSame(std::u16string_view text, TNuDeserializeOptions options) {
    if (text.starts_with(u'\0')) {
        return; // the mark of UTF-16 would be that of UTF-32
    }
    std::string units = "\xFF\xFE";
    for (const char16_t unit : text) {
        units += {static_cast<char>(unit), static_cast<char>(unit >> 8)};
    }
    require(outcome("\xEF\xBB\xBF" + NuToUtf8(text), " ", options) ==
            outcome(units, std::string_view(" \0", 2), options));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool isRegistered = [] {
        NuRegisterSerializationClass(host::classOf<Wheel>, nu::serializerOf<TNuSerializer>);
        NuRegisterSerializationClass(host::classOf<Bystander>, nu::serializerOf<TNuSerializer>);
        return true;
    }();
    if (!isRegistered || size < 2) {
        return 0;
    }
    const auto readOptions = TNuDeserializeOptions::fromBits(data[0] & 3U);
    const auto writeOptions = TNuNamespaceOptions::fromBits(data[1] & 127U);
    const std::u16string text = NuFromUtf8({reinterpret_cast<const char*>(data) + 2, size - 2});

    requireSame(text, readOptions | dsUnchecked);

    // What was read before something failed is as good an object as any.
    Machine machine;
    read(machine, text, readOptions);
    TNuSerializer writer(machine);
    writer.SetNamespaceOptions(writeOptions);
    const std::u16string written = writer.Serialize(u"M");
    Machine again;
    require(read(again, written, {}));
    TNuSerializer rewriter(again);
    rewriter.SetNamespaceOptions(writeOptions);
    require(rewriter.Serialize(u"M") == written);
    return 0;
}
