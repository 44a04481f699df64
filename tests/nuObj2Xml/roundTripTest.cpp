// Random objects of every kind of property, written with every set of options: what is read back is
// written as the same text, and a property as a variant has the same text as in its element.

#include <array>
#include <bit>
#include <list>
#include <random>
#include <unordered_map>

#include <gtest/gtest.h>

#include "host/runtime/unicode.h"
#include "nuObj2Xml.h"

namespace {

enum class Suit : std::int16_t { Clubs = -1, Hearts, Spades = 300 };
enum Flags : std::uint8_t { Read = 1, Write = 2, Both = 3 };

} // namespace

template <> struct host::EnumNames<Suit> {
    static constexpr auto all = host::names<Suit>(
        {{Suit::Clubs, u"clubs"}, {Suit::Hearts, u"<hearts>"}, {Suit::Spades, u"spades"}});
};
template <> struct host::EnumNames<Flags> {
    static constexpr auto all = host::names<Flags>({{Read, u"read"}, {Write, u"write"}});
};
template <> inline constexpr bool host::isSet<Flags> = true;

namespace {

enum class Day { Monday, Tuesday, Sunday = 63 };

} // namespace

template <> struct host::EnumNames<Day> {
    static constexpr auto all = host::names<Day>(
        {{Day::Monday, u"monday"}, {Day::Tuesday, u"tuesday"}, {Day::Sunday, u"sunday"}});
};

namespace {

using host::prop;

struct Spot {
    std::int8_t x = 0;
    float y = 0;
};

} // namespace

template <>
inline constexpr auto host::describe<Spot> = host::publish<Spot>(u"Spot", host::prop<&Spot::x>(),
                                                                 host::prop<&Spot::y>().Default(0));

namespace {

class Leaf : public host::Published<Leaf> {
public:
    std::u16string Name;
    static constexpr auto published = host::publish<Leaf>(u"TLeaf", prop<&Leaf::Name>());
};
class Twig : public host::Published<Twig, Leaf> {
public:
    Leaf* Leads = nullptr;
    static constexpr auto published = host::publish<Twig>(u"TTwig", host::ref<&Twig::Leads>());
};

class Everything : public host::Published<Everything> {
public:
    bool Bool = false;
    std::int8_t Int8 = 0;
    std::uint8_t UInt8 = 0;
    std::int16_t Int16 = 0;
    std::uint16_t UInt16 = 0;
    std::int32_t Int32 = 0;
    std::uint32_t UInt32 = 0;
    std::int64_t Int64 = 0;
    std::uint64_t UInt64 = 0;
    Suit Enum = Suit::Hearts;
    Flags Bits = Read;
    host::Set<Day> Days;
    float Single = 0;
    double Double = 0;
    host::Currency Amount{};
    host::TDateTime Moment{};
    std::u16string Text;
    std::string Utf8;
    host::Variant Any;
    std::vector<std::uint8_t> Bytes;
    std::vector<std::int32_t> Ints;
    std::vector<std::u16string> Texts;
    Spot At;
    std::unique_ptr<Leaf> Owned;
    std::shared_ptr<Leaf> Shared;
    std::optional<std::u16string> Maybe;
    std::vector<std::optional<double>> Doubles;
    std::deque<bool> Bools;
    std::list<std::unique_ptr<Leaf>> Leaves;
    std::vector<std::vector<Spot>> Spots;
    std::array<Suit, 3> Suits{};
    std::map<std::u16string, Leaf> ByName;
    std::map<std::int64_t, std::vector<std::int16_t>> ByNumber;
    std::variant<std::monostate, Leaf, Spot> Either;
    std::vector<host::Variant> Variants;
    [[nodiscard]] std::u16string GetWord() const { return word_; }
    void SetWord(std::u16string word) { word_ = std::move(word); }
    [[nodiscard]] std::vector<Spot> GetRow() const { return row_; }
    void SetRow(std::vector<Spot> row) { row_ = std::move(row); }
    [[nodiscard]] Day GetDay() const { return day_; }
    void SetDay(Day day) { day_ = day; }

    static constexpr auto published = host::publish<Everything>(
        u"TEverything", prop<&Everything::Bool>().Default(true), prop<&Everything::Int8>(),
        prop<&Everything::UInt8>(), prop<&Everything::Int16>(), prop<&Everything::UInt16>(),
        prop<&Everything::Int32>().Default(-7), prop<&Everything::UInt32>(),
        prop<&Everything::Int64>(), prop<&Everything::UInt64>(),
        prop<&Everything::Enum>().Default(Suit::Spades), prop<&Everything::Bits>(),
        prop<&Everything::Days>(), prop<&Everything::Single>(), prop<&Everything::Double>(),
        prop<&Everything::Amount>(), prop<&Everything::Moment>(), prop<&Everything::Text>(),
        prop<&Everything::Utf8>(), prop<&Everything::Any>(), prop<&Everything::Bytes>(),
        prop<&Everything::Ints>(), prop<&Everything::Texts>(), prop<&Everything::At>(),
        prop<&Everything::Owned>(), prop<&Everything::Shared>(), prop<&Everything::Maybe>(),
        prop<&Everything::Doubles>(), prop<&Everything::Bools>(), prop<&Everything::Leaves>(),
        prop<&Everything::Spots>(), prop<&Everything::Suits>(), prop<&Everything::ByName>(),
        prop<&Everything::ByNumber>(), prop<&Everything::Either>(), prop<&Everything::Variants>(),
        prop<&Everything::GetWord, &Everything::SetWord>(),
        prop<&Everything::GetRow, &Everything::SetRow>(),
        prop<&Everything::GetDay, &Everything::SetDay>().Default(Day::Monday));

private:
    std::u16string word_;
    std::vector<Spot> row_;
    Day day_ = Day::Monday;
};

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}

    std::uint64_t number() {
        const std::uint64_t bits = engine_();
        switch (below(4)) {
        case 0:
            return bits % 3;
        case 1:
            return std::uint64_t{0} - bits % 3;
        default:
            return bits >> below(64);
        }
    }
    std::size_t below(std::size_t count) { return engine_() % count; }
    bool coin() { return below(2) == 0; }
    template <class Number> void fill(Number& value) { value = static_cast<Number>(number()); }
    void fill(bool& value) { value = coin(); }
    void fill(double& value) {
        value = coin() ? std::bit_cast<double>(engine_()) : static_cast<double>(number()) / 16;
    }
    void fill(float& value) { value = std::bit_cast<float>(static_cast<std::uint32_t>(engine_())); }
    void fill(Spot& value) {
        fill(value.x);
        fill(value.y);
    }
    template <class Value> void fill(std::vector<Value>& values) {
        values.resize(below(4));
        for (Value& value : values) {
            fill(value);
        }
    }
    template <class Value> void fill(std::optional<Value>& value) {
        value.reset();
        if (coin()) {
            fill(value.emplace());
        }
    }
    void fill(std::u16string& value) {
        constexpr std::u16string_view units = u" \t\n\r<&>'\"ab;#\u00E4\u20AC\U0001F600\u0001,";
        value.clear();
        const std::size_t length = below(coin() ? 4 : 60);
        const bool isBlank = below(4) == 0;
        while (value.size() < length) {
            const std::size_t unit = below(isBlank ? 3 : units.size());
            // The halves of a character stay together.
            value += units.substr(unit, 1);
            if (units[unit] == 0xD83D) {
                value += static_cast<char16_t>(0xDE00);
            } else if (units[unit] == 0xDE00) {
                value.back() = u'x';
            }
        }
    }
    void fill(std::string& value) {
        std::u16string text;
        fill(text);
        value = host::utf16ToUtf8(text);
    }
    void fill(Suit& value) { value = static_cast<Suit>(coin() ? -1 : int(below(400))); }
    void fill(Leaf& value) { fill(value.Name); }
    void fill(host::Variant& value) {
        std::u16string text;
        fill(text);
        const host::Variant choices[] = {{},
                                         static_cast<std::int8_t>(number()),
                                         static_cast<std::uint16_t>(number()),
                                         host::null,
                                         static_cast<std::int64_t>(number()),
                                         number(),
                                         text,
                                         host::Currency{static_cast<std::int64_t>(engine_())},
                                         coin(),
                                         0.1F,
                                         1e300,
                                         host::TDateTime{45000.25},
                                         std::vector<std::u16string>{text, u"", text},
                                         std::vector<std::uint8_t>{0, 255},
                                         std::vector<std::int32_t>{-1, 7}};
        value = choices[below(std::size(choices))];
    }
    template <class Pointer> void fillPointer(Pointer& pointer) {
        pointer.reset();
        if (coin()) {
            auto twig = std::make_unique<Twig>();
            fill(static_cast<Leaf&>(*twig));
            pointer = coin() ? std::move(twig) : std::make_unique<Leaf>();
        }
    }

    void fill(Everything& all) {
        fill(all.Bool), fill(all.Int8), fill(all.UInt8), fill(all.Int16), fill(all.UInt16);
        fill(all.Int32), fill(all.UInt32), fill(all.Int64), fill(all.UInt64), fill(all.Enum);
        all.Bits = static_cast<Flags>(below(256));
        all.Days = {};
        for (std::size_t count = below(4); count > 0; --count) {
            all.Days.include(static_cast<Day>(below(64)));
        }
        fill(all.Single), fill(all.Double), fill(all.Amount.scaled);
        // Milliseconds are what a text keeps.
        all.Moment = host::fromMilliseconds(static_cast<std::int64_t>(below(3'000'000'000'000)));
        fill(all.Text), fill(all.Utf8), fill(all.Any), fill(all.Bytes), fill(all.Ints);
        fill(all.Texts), fill(all.At), fillPointer(all.Owned), fillPointer(all.Shared);
        fill(all.Maybe), fill(all.Doubles), fill(all.Spots), fill(all.Variants);
        all.Bools.assign(below(3), coin());
        all.Leaves.clear();
        for (std::size_t count = below(3); count > 0; --count) {
            fillPointer(all.Leaves.emplace_back());
        }
        for (Suit& suit : all.Suits) {
            fill(suit);
        }
        all.ByName.clear(), all.ByNumber.clear();
        for (std::size_t count = below(3); count > 0; --count) {
            std::u16string key;
            fill(key);
            fill(all.ByName[key]);
            fill(all.ByNumber[static_cast<std::int64_t>(number())]);
        }
        const std::size_t choice = below(3);
        if (choice == 0) {
            all.Either = std::monostate();
        } else if (choice == 1) {
            fill(all.Either.emplace<Leaf>());
        } else {
            fill(all.Either.emplace<Spot>());
        }
        std::u16string word;
        fill(word);
        all.SetWord(word);
        std::vector<Spot> row;
        fill(row);
        all.SetRow(row);
        all.SetDay(coin() ? Day::Monday : Day::Sunday);
    }

private:
    std::mt19937_64 engine_;
};

TEST(RoundTrip, givesTheSameTextForAllKindsAndOptions) {
    NuRegisterSerializationClass(host::classOf<Twig>, nu::serializerOf<TNuSerializer>);
    Random random(20);
    for (unsigned round = 0; round < 2 * 128; ++round) {
        SCOPED_TRACE(round);
        Everything all;
        random.fill(all);
        TNuSerializer writer(all);
        const auto options = TNuNamespaceOptions::fromBits(static_cast<std::uint8_t>(round % 128));
        writer.SetNamespaceOptions(options);
        if (round % 3 == 0) {
            writer.SetTargetNamespacePrefix(u"");
        }
        if (round % 5 == 0) {
            writer.SetSchemaLocation(u"a & b");
        }
        const NuXmlString text = writer.Serialize(u"All");

        Everything back;
        TNuSerializer reader(back);
        // What a text leaves out stands for the default, which the object may not have now.
        random.fill(back);
        back.Any = {};
        back.Owned.reset();
        back.Shared.reset();
        back.Maybe.reset();
        back.Either = std::monostate();
        back.At.y = 0;
        // A control character is no XML, which only a strict reading minds.
        const TNuDeserializeOptions reset{dsResetMissing,
                                          round % 4 == 0 ? dsUnchecked : dsResetMissing};
        const bool isXml = text.find(u'\1') == text.npos && text.find(u"&#1;") == text.npos;
        reader.DeSerialize(text, isXml ? TNuDeserializeOptions(reset | dsStrict) : reset);
        reader.SetNamespaceOptions(options);
        reader.SetTargetNamespacePrefix(writer.TargetNamespacePrefix());
        reader.SetSchemaLocation(writer.SchemaLocation());
        ASSERT_EQ(reader.Serialize(u"All"), text);
        if (all.Double == all.Double) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(back.Double),
                      std::bit_cast<std::uint64_t>(all.Double));
        }
        EXPECT_EQ(back.Text, all.Text);
        EXPECT_EQ(back.ByName.size(), all.ByName.size());

        Everything set;

        for (const host::TPropInfo& property : host::classOf<Everything>.properties) {
            const host::Variant value = host::GetProperty(host::instance(all), property);
            if (property.type->kind < host::ValueKind::Object && !value.IsEmpty() &&
                !value.IsNull()) {
                host::SetProperty(host::instance(set), property, value);
                EXPECT_EQ(writer.GetPropElement(property.name,
                                                host::GetProperty(host::instance(set), property)),
                          writer.GetPropElement(property.name, value));
            }
            if (!value.IsEmpty() && !value.IsNull() &&
                !host::HasDefault(host::instance(all), property)) {
                const NuXmlString element = writer.GetPropElement(property.name, value);
                EXPECT_NE(text.find(element), text.npos) << host::utf16ToUtf8(element);
            }
        }
    }
    NuUnregisterSerializationClass(host::classOf<Twig>);
}

/// What can be empty becomes so, whatever stands inside; everything else stays readable behind it.
TEST(RoundTrip, emptiesWhatIsMissing) {
    using host::ValueKind;
    Random random(7);
    for (const host::TPropInfo& property : host::classOf<Everything>.properties) {
        const NuXmlString name(property.name);
        SCOPED_TRACE(host::utf16ToUtf8(name));
        Everything all;
        random.fill(all);
        all.SetDay(Day::Monday);
        TNuSerializer serializer(all);
        serializer.DeSerialize(u"<All><" + name + u" nil=\"true\"><x><y/></x></" + name +
                               u"><Day>sunday</Day></All>");
        EXPECT_EQ(all.GetDay(), Day::Sunday);
        const ValueKind kind = property.type->kind;
        const bool hasLength = name != u"Suits" && kind == ValueKind::List;
        if (hasLength || kind == ValueKind::Map || kind == ValueKind::Optional ||
            kind == ValueKind::Slot) {
            const NuXmlString left = serializer.Serialize(u"All");
            EXPECT_EQ(left.find(u"<" + name + u"><item"), left.npos) << host::utf16ToUtf8(left);
            EXPECT_EQ(left.find(u"<" + name + u" type"), left.npos) << host::utf16ToUtf8(left);
        }
    }
}

/// References and the vectors that move what they hold while it is read.
class Forest : public host::Published<Forest> {
public:
    std::vector<Twig> Twigs;
    std::vector<std::vector<Twig>> Groups;
    std::optional<Twig> Perhaps;
    std::map<int, std::vector<std::unique_ptr<Twig>>> Kept;
    std::unique_ptr<Twig> held = std::make_unique<Twig>();
    [[nodiscard]] Twig* GetHeld() const { return held.get(); }
    Twig* First = nullptr;
    static constexpr auto published = host::publish<Forest>(
        u"TForest", host::ref<&Forest::First>(), prop<&Forest::Twigs>(), prop<&Forest::Groups>(),
        prop<&Forest::Perhaps>(), prop<&Forest::Kept>(), prop<&Forest::GetHeld>());
};

TEST(RoundTrip, resolvesReferencesWhereverTheirObjectsMove) {
    Forest forest;
    forest.Twigs.resize(100);
    forest.Groups.assign(3, std::vector<Twig>(5));
    for (std::size_t index = 0; index < 100; ++index) {
        forest.Twigs[index].Name = u"t" + std::u16string(1, static_cast<char16_t>(0x4E00 + index));
        forest.Twigs[index].Leads = &forest.Twigs[(index * 7 + 3) % 100];
    }
    forest.Groups[2][4].Leads = forest.First = &forest.Twigs[99];
    const NuXmlString text = TNuSerializer(forest).Serialize(u"F");
    Forest back;
    TNuSerializer(back).DeSerialize(text, dsStrict);
    for (std::size_t index = 0; index < 100; ++index) {
        EXPECT_EQ(back.Twigs[index].Leads, &back.Twigs[(index * 7 + 3) % 100]);
    }
    EXPECT_EQ(back.First, &back.Twigs[99]);
    EXPECT_EQ(back.Groups[2][4].Leads, &back.Twigs[99]);

    // In an optional, in a map of lists, and in what only a getter leads to.
    forest.Perhaps.emplace();
    auto kept = std::make_unique<Twig>();
    Twig* const targets[] = {&*forest.Perhaps, kept.get(), forest.held.get()};
    forest.Kept[3].push_back(std::move(kept));
    for (std::size_t index = 0; index < 3; ++index) {
        targets[index]->Name = u"target " + std::u16string(1, static_cast<char16_t>(u'0' + index));
        forest.First = targets[index];
        TNuSerializer(back).DeSerialize(TNuSerializer(forest).Serialize(u"F"), dsStrict);
        Leaf* const found[] = {&*back.Perhaps, back.Kept.at(3).front().get(), back.held.get()};
        EXPECT_EQ(back.First, found[index]);
        EXPECT_EQ(found[index]->Name, targets[index]->Name);
    }
    TNuSerializer(back).DeSerialize(u"<F><First nil=\"true\"/></F>");
    EXPECT_EQ(back.First, nullptr);
    EXPECT_THROW(TNuSerializer(back).DeSerialize(u"<F><Held type=\"TForest\"/></F>"),
                 host::Exception);
    back.held.reset();
    TNuSerializer(back).DeSerialize(u"<F><Held><Name>x</Name></Held></F>");
    EXPECT_EQ(back.held, nullptr);

    // A name that nobody has, or only somebody of another class
    constexpr auto lost = u"<F><First>nobody</First></F>";
    TNuSerializer(back).DeSerialize(lost);
    EXPECT_EQ(back.First, nullptr);
    EXPECT_THROW(
        TNuSerializer(back).DeSerialize(u"<F><Twigs/><Groups/><First>nobody</First></F>", dsStrict),
        host::Exception);
}

} // namespace
