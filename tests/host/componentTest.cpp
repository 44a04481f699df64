#include "host/runtime/component.h"
#include "host/runtime/collection.h"
#include "host/runtime/exception.h"
#include "host/runtime/stringList.h"
#include "host/runtime/windowedControl.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using host::TComponent;
using host::TWindowedControl;

/// Notes when it goes.
class TWitness : public host::Published<TWitness, TComponent> {
public:
    explicit TWitness(std::vector<std::u16string>* gone = nullptr) : gone_(gone) {}
    ~TWitness() override {
        if (gone_ != nullptr) {
            gone_->push_back(GetName());
        }
    }
    static constexpr auto published = host::publish<TWitness>(u"TWitness");

private:
    std::vector<std::u16string>* gone_;
};

TWitness& addNamed(TComponent& owner, std::u16string_view name, std::vector<std::u16string>& gone) {
    auto& made = owner.Add<TWitness>(&gone);
    made.SetName(name);
    return made;
}

TEST(Component, OwnersDeleteFromLastToFirstAndForgetWhatGoesBefore) {
    std::vector<std::u16string> gone;
    {
        TComponent owner;
        addNamed(owner, u"a", gone);
        TWitness& b = addNamed(owner, u"b", gone);
        TWitness& c = addNamed(owner, u"c", gone);
        addNamed(b, u"inner", gone);
        delete &c;
        EXPECT_EQ(owner.Components().size(), 2U);
        EXPECT_EQ(owner.FindComponent(u"c"), nullptr);

        std::unique_ptr<TComponent> given(&addNamed(owner, u"given", gone));
        owner.RemoveComponent(*given);
        EXPECT_EQ(given->Owner(), nullptr);
    }
    EXPECT_EQ(gone, (std::vector<std::u16string>{u"c", u"given", u"b", u"inner", u"a"}));
}

TEST(Component, NamesAreUniqueForOneOwner) {
    TComponent owner;
    TComponent other;
    auto& first = owner.Add<TComponent>();
    auto& second = owner.Add<TComponent>();
    auto& foreign = other.Add<TComponent>();
    first.SetName(u"Box");
    foreign.SetName(u"BOX");
    for (const std::u16string_view wrong : {u"box", u"1st", u"a b", u"a:b", u"<"}) {
        EXPECT_THROW(second.SetName(wrong), host::Exception);
    }
    EXPECT_THROW(owner.InsertComponent(foreign), host::Exception);
    EXPECT_EQ(foreign.Owner(), &other);
    EXPECT_EQ(owner.FindComponent(u"bOX"), &first);

    first.SetName(u"BOX"); // its own name in other letters
    EXPECT_EQ(first.GetName(), u"BOX");
    first.SetName(u"Case");
    EXPECT_EQ(owner.FindComponent(u"case"), &first);
    second.SetName(u"Box");
    first.SetName(u"");
    EXPECT_EQ(owner.FindComponent(u""), nullptr);
    EXPECT_EQ(owner.FindComponent(u"case"), nullptr);
    EXPECT_THROW(first.InsertComponent(owner), host::Exception);
    EXPECT_THROW(owner.InsertComponent(owner), host::Exception);
    // Whoever comes from another owner takes the name along.
    foreign.SetName(u"Moved");
    owner.InsertComponent(foreign);
    owner.InsertComponent(foreign);
    EXPECT_EQ(owner.FindComponent(u"moved"), &foreign);
    EXPECT_EQ(other.FindComponent(u"moved"), nullptr);
    EXPECT_EQ(owner.Components().size(), 3U);
}

TEST(Component, ControlsStandInParentsWithoutBelongingToThem) {
    TComponent form;
    auto& panel = form.Add<TWindowedControl>();
    auto& button = form.Add<TWindowedControl>();
    auto& label = form.Add<TWindowedControl>();
    button.SetParent(&panel);
    label.SetParent(&panel);
    EXPECT_THROW(panel.SetParent(&button), host::Exception);
    EXPECT_THROW(panel.SetParent(&panel), host::Exception);
    button.SetParent(&label);
    button.SetParent(&label);
    EXPECT_EQ(panel.Controls().size(), 1U);
    delete &button;
    EXPECT_TRUE(label.Controls().empty());
    ASSERT_EQ(panel.Controls().size(), 1U);
    EXPECT_EQ(panel.Controls()[0], &label);
    delete &panel;
    EXPECT_EQ(label.Parent(), nullptr);
    EXPECT_EQ(form.Components().size(), 1U);
}

TEST(StringList, LinesComeBack) {
    struct {
        std::u16string_view text;
        std::vector<std::u16string> lines;
    } const cases[] = {
        {u"", {}},
        {u"a", {u"a"}},
        {u"a\n", {u"a"}},
        {u"\n", {u""}},
        {u"a\r\n\r\nb\rc\n\n", {u"a", u"", u"b", u"c", u""}},
    };
    for (const auto& expected : cases) {
        host::TStringList list;
        list.SetText(expected.text);
        EXPECT_EQ(std::vector(list.begin(), list.end()), expected.lines);
        host::TStringList again;
        again.SetText(list.GetText());
        EXPECT_EQ(again, list);
    }
    host::TStringList list{u"a", u"c"};
    list.Insert(1, u"b");
    list.Delete(0);
    EXPECT_EQ(list.IndexOf(u"c"), 1);
    EXPECT_EQ(list.IndexOf(u"a"), -1);
    EXPECT_THROW(list.Insert(3, u""), host::EListError);
    EXPECT_THROW(list.Delete(2), host::EListError);
}

class TLine : public host::Published<TLine, host::TCollectionItem> {
public:
    std::u16string Text;
    static constexpr auto published = host::publish<TLine>(u"TLine", host::prop<&TLine::Text>());
};

class TAddedLine : public host::Published<TAddedLine, TLine> {
public:
    static constexpr auto published = host::publish<TAddedLine>(u"TAddedLine");
};

TEST(Collection, MakesItemsOfItsClassAndOfDescendants) {
    host::TCollection lines{host::classOf<TLine>};
    lines.Add();
    lines.Add<TAddedLine>().Text = u"two";
    lines.Add<TLine>().Text = u"three";
    EXPECT_THROW(lines.Add(host::classOf<host::TCollectionItem>), host::EInvalidCast);
    EXPECT_THROW(host::TCollection{host::classOf<host::TStringList>}, host::EInvalidCast);
    lines.Delete(0);
    ASSERT_EQ(lines.Count(), 2U);
    EXPECT_EQ(lines[0].ClassInfo().name, u"TAddedLine");
    EXPECT_EQ(lines[0].Index(), 0U);
    EXPECT_EQ(lines[1].Index(), 1U);
    EXPECT_EQ(lines[1].Collection(), &lines);
    EXPECT_THROW(static_cast<void>(lines[2]), host::EListError);
}

} // namespace
