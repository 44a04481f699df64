// Descriptions of classes: what the tables hold and how values are read and set through them.

#include <gtest/gtest.h>

#include "host/runtime/classRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/persistent.h"
#include "host/runtime/propertyValue.h"
#include "host/runtime/unicode.h"

namespace {

enum class Color : std::uint8_t { Red, Green, Blue };
enum Style : int { Bold = 1, Thin = 2, Fancy = 3, Far = 256 };

/// Described from outside, with an ancestor that is not the first base.
struct Tag {
    std::u16string unused;
};
struct Point {
    int x = 0;
    int y = 0;
};
struct Point3 : Tag, Point {
    int z = 0;
};

} // namespace

template <> struct host::EnumNames<Color> {
    static constexpr auto all = host::names<Color>(
        {{Color::Red, u"clRed"}, {Color::Green, u"clGreen"}, {Color::Blue, u"clBlue"}});
};
template <> struct host::EnumNames<Style> {
    static constexpr auto all =
        host::names<Style>({{Fancy, u"Fancy"}, {Bold, u"Bold"}, {Thin, u"Thin"}, {Far, u"Far"}});
};
template <> inline constexpr bool host::isSet<Style> = true;
template <>
inline constexpr auto host::describe<Point> = host::publish<Point>(u"Point",
                                                                   host::prop<&Point::x>(),
                                                                   host::prop<&Point::y>());
template <>
inline constexpr auto
    host::describe<Point3> = host::publish<Point3, Point>(u"Point3", host::prop<&Point3::z>());

namespace {

using host::prop;
using host::ref;
using host::Variant;

class Person : public host::Published<Person> {
public:
    std::u16string Name;
    Color Paint = Color::Red;
    host::Set<Color> Paints;
    Style Styled = Bold;
    std::int16_t Floor = -1;
    std::uint64_t Big = 0;
    std::string Utf8;
    std::optional<double> Ratio;
    Point At;
    Person* Boss = nullptr;
    [[nodiscard]] double GetScore() const { return score_ / 2; }
    void SetScore(double score) { score_ = score * 2; }
    [[nodiscard]] std::u16string_view get_Title() const noexcept { return title_; }
    void SetTitle(std::u16string_view title) { title_ = title; }
    [[nodiscard]] const std::u16string& Getaway() const { return title_; }
    bool& größe() { return flag_; }

private:
    [[nodiscard]] bool isNamed() const { return !Name.empty(); }

    double score_ = 0;
    std::u16string title_;
    bool flag_ = true;

public:
    static constexpr auto published = host::publish<Person>(
        u"Person",
        prop<&Person::Name>().Alias(u"Called").Alias(u"Label").Stored<&Person::isNamed>(),
        prop<&Person::Paint>().Default(Color::Red), prop<&Person::Paints>().Default({Color::Blue}),
        prop<&Person::Styled>(), prop<&Person::Floor>().Default(-1), prop<&Person::Big>(),
        prop<&Person::Utf8>(), prop<&Person::Ratio>(), prop<&Person::At>(), ref<&Person::Boss>(),
        prop<&Person::GetScore, &Person::SetScore>().Default(0),
        prop<&Person::get_Title, &Person::SetTitle>(), prop<&Person::Getaway>(),
        prop<&Person::größe>(), prop<&Person::title_>(u"Own").Default(u"none"));
};

struct Rate {
    float Part = 0.25F;
    host::Currency Price{12345};
    host::TDateTime Day{45418};
    static constexpr auto published = host::publish<Rate>(
        u"Rate", prop<&Rate::Part>().Default(0.25F), prop<&Rate::Price>().Default({12345}),
        prop<&Rate::Day>().Default({45418}));
};

class Chief : public host::Published<Chief, Person> {
public:
    explicit Chief(int staff) : Staff(staff) {}
    int Staff;
    static constexpr auto published = host::publish<Chief>(u"Chief", prop<&Chief::Staff>());
};

std::u16string namesOf(const host::TClassInfo& info) {
    std::u16string names(info.name);
    for (const host::TPropInfo& property : info.properties) {
        names.append(u" ").append(property.name);
    }
    return names;
}

TEST(Published, hasNamesOfMembersWithAncestorsFirst) {
    constexpr std::u16string_view person = u" Name Paint Paints Styled Floor Big Utf8 Ratio At "
                                           u"Boss Score Title Getaway gr\u00F6\u00DFe"
                                           u" Own";
    EXPECT_EQ(namesOf(host::classOf<Person>), u"Person" + std::u16string(person));
    EXPECT_EQ(namesOf(host::classOf<Chief>), u"Chief" + std::u16string(person) + u" Staff");
    EXPECT_EQ(namesOf(host::classOf<Point3>), u"Point3 x y z");

    const Chief chief(3);
    const Person& seenAsPerson = chief;
    EXPECT_TRUE(seenAsPerson.ClassInfo().is(host::classOf<Chief>));
    EXPECT_TRUE(chief.ClassInfo().derivesFrom(host::classOf<host::TPersistent>));
    EXPECT_FALSE(host::classOf<Person>.derivesFrom(chief.ClassInfo()));
    EXPECT_EQ(chief.ClassInfo().create, nullptr);
}

TEST(Published, findsNamesExactlyBeforeAliasesAndLetterCase) {
    const auto found = [](std::u16string_view name) {
        const host::TPropInfo* const property = host::classOf<Person>.findProperty(name);
        return property == nullptr ? std::u16string_view(u"-") : property->name;
    };
    EXPECT_EQ(found(u"Paint"), u"Paint");
    EXPECT_EQ(found(u"CALLED"), u"Name");
    EXPECT_EQ(found(u"Label"), u"Name");
    EXPECT_EQ(found(u"pAINTS"), u"Paints");
    EXPECT_EQ(found(u""), u"-");
    EXPECT_EQ(found(u"Pain"), u"-");
}

TEST(Published, readsAndSetsPropertiesAsVariants) {
    Person person;
    Point3 point;
    host::SetProperty(point, u"y", 7);
    EXPECT_EQ(point.y, 7);
    Person boss;
    boss.Name = u"Zo\u00EB";

    const auto roundTrip = [&](std::u16string_view name, const Variant& given) {
        host::SetProperty(person, name, given);
        return host::GetProperty(person, name);
    };
    EXPECT_EQ(roundTrip(u"Paint", u"CLBLUE"), Variant(u"clBlue"));
    EXPECT_EQ(roundTrip(u"Paint", 7), Variant(u"7"));
    EXPECT_EQ(roundTrip(u"Paints", u" clGreen , clRed,9"), Variant(u"clRed,clGreen,9"));
    EXPECT_EQ(roundTrip(u"Paints", u""), Variant(u""));
    EXPECT_EQ(roundTrip(u"Styled", u"Bold,Thin,Far,2048"), Variant(u"Fancy,Far,2048"));
    EXPECT_EQ(roundTrip(u"Floor", u"-5"), Variant(std::int16_t{-5}));
    EXPECT_EQ(roundTrip(u"Big", u"18446744073709551615"), Variant(~std::uint64_t{0}));
    EXPECT_EQ(roundTrip(u"Utf8", u"\u20AC"), Variant(u"\u20AC"));
    EXPECT_EQ(person.Utf8, "\xE2\x82\xAC");
    EXPECT_EQ(roundTrip(u"Ratio", 0.5), Variant(0.5));
    EXPECT_EQ(roundTrip(u"Ratio", host::null), Variant());
    EXPECT_EQ(roundTrip(u"Score", 3), Variant(3.0));
    EXPECT_EQ(roundTrip(u"Title", u"Dr"), Variant(u"Dr"));
    EXPECT_EQ(roundTrip(u"gr\u00F6\u00DFe", u"false"), Variant(false));
    EXPECT_EQ(host::GetProperty(person, u"Boss"), Variant());
    person.Boss = &boss;
    EXPECT_EQ(host::GetProperty(person, u"Boss"), Variant(u"Zo\u00EB"));

    struct Refused {
        std::u16string_view name;
        Variant value;
    };
    const Refused refused[] = {
        {u"Floor", 40000},      {u"Paint", u"clNone"}, {u"Paint", 300},    {u"Paints", u"64"},
        {u"Paints", u",clRed"}, {u"Big", -1},          {u"Getaway", u"x"}, {u"At", 1},
        {u"Nobody", 1}};
    for (const Refused& row : refused) {
        EXPECT_THROW(host::SetProperty(person, row.name, row.value), host::Exception)
            << host::utf16ToUtf8(row.name);
    }
}

TEST(Published, knowsDefaults) {
    EXPECT_EQ(host::CheckDefaults<Point>(), u"");
    EXPECT_EQ(host::CheckDefaults<Person>(), u"Paints"); // a fresh one is empty
    EXPECT_EQ(host::CheckDefaults<Rate>(), u"");
    Rate rate{1, {1}, {1}};
    for (const host::TPropInfo& property : host::classOf<Rate>.properties) {
        EXPECT_FALSE(host::HasDefault(host::instance(rate), property));
        host::ResetToDefault(host::instance(rate), property);
        EXPECT_TRUE(host::HasDefault(host::instance(rate), property));
    }
    Person person;
    const host::Instance object = host::instance(person);
    person.Floor = 5;
    person.SetScore(2);
    for (const host::TPropInfo& property : object.info->properties) {
        host::ResetToDefault(object, property);
        EXPECT_EQ(host::HasDefault(object, property), property.hasDefault());
    }
    EXPECT_EQ(person.Floor, -1);
    EXPECT_EQ(person.GetScore(), 0);
    EXPECT_TRUE(person.Paints.contains(Color::Blue));
    EXPECT_EQ(person.get_Title(), u"none");
}

TEST(ClassRegistry, findsTheLatestOfANameInAnyLetterCase) {
    EXPECT_EQ(host::FindClass(u"Chief"), nullptr);
    EXPECT_TRUE(host::RegisterClass(host::classOf<Chief>));
    EXPECT_FALSE(host::RegisterClass(host::classOf<Chief>));
    host::TClassInfo other = host::classOf<Person>;
    other.name = u"CHIEF";
    EXPECT_TRUE(host::RegisterClass(other));
    EXPECT_EQ(host::FindClass(u"chief"), &other);
    host::UnregisterClass(other);
    ASSERT_NE(host::FindClass(u"chief"), nullptr);
    EXPECT_TRUE(host::FindClass(u"chief")->is(host::classOf<Chief>));
    host::UnregisterClass(host::classOf<Chief>);
    EXPECT_EQ(host::FindClass(u"Chief"), nullptr);
}

} // namespace
