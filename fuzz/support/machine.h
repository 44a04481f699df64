#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/exception.h"
#include "nuObj2Xml.h"

/// \file
/// An object with properties of every kind, to be read from any bytes.

namespace fuzz {

enum class Mood : std::uint8_t { Calm, Wild };

} // namespace fuzz

template <> struct host::EnumNames<fuzz::Mood> {
    static constexpr auto all =
        host::names<fuzz::Mood>({{fuzz::Mood::Calm, u"calm"}, {fuzz::Mood::Wild, u"wild"}});
};

namespace fuzz {

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

/// Registers the classes of which a text may make objects; once.
inline void registerMachineParts() {
    static const bool isRegistered = [] {
        NuRegisterSerializationClass(host::classOf<Wheel>, nu::serializerOf<TNuSerializer>);
        NuRegisterSerializationClass(host::classOf<Bystander>, nu::serializerOf<TNuSerializer>);
        return true;
    }();
    static_cast<void>(isRegistered);
}

} // namespace fuzz
