// Check boxes, buttons, drop-down lists and tabs: what the program sets and what a user does.
#include "editor/controls/button.h"
#include "editor/controls/check_box.h"
#include "editor/controls/combo_box.h"
#include "editor/controls/tab_control.h"

#include "recording_observer.h"

#include <gtest/gtest.h>

using namespace editor::controls;

namespace
{

TEST(CheckBox, RaisesItsClickWhenTheValueChangesByProgram)
{
    struct Case
    {
        const char *name;
        int before;
        int set;
        int after;
        std::vector<std::int16_t> clicks;
    };
    const Case cases[] = {
        {"check with 1", 0, 1, 1, {-1}}, {"check with -1", 0, -1, 1, {-1}}, {"clear", 1, 0, 0, {0}},
        {"check again", 1, -1, 1, {}},   {"clear again", 0, 0, 0, {}},
    };
    for (const Case &c : cases)
    {
        CheckBox box("box");
        box.SetValue(c.before);
        std::vector<std::int16_t> clicks;
        box.OnClick = [&](std::int16_t value) { clicks.push_back(value); };
        box.SetValue(c.set);
        EXPECT_EQ(c.after, box.Value()) << c.name;
        EXPECT_EQ(c.clicks, clicks) << c.name;
    }
}

TEST(CheckBox, RefusesOtherValues)
{
    CheckBox box("box");
    EXPECT_EQ(runtime::kInvalidPropertyValue, ErrorOf([&] { box.SetValue(2); }));
    EXPECT_EQ(runtime::kInvalidPropertyValue, ErrorOf([&] { box.SetValue(-2); }));
    EXPECT_EQ(0, box.Value());
}

TEST(CheckBox, IsSwitchedByAUser)
{
    CheckBox box("box");
    std::vector<std::int16_t> clicks;
    box.OnClick = [&](std::int16_t value) { clicks.push_back(value); };
    EXPECT_TRUE(box.Toggle());
    EXPECT_TRUE(box.Toggle());
    EXPECT_EQ((std::vector<std::int16_t>{-1, 0}), clicks);
}

TEST(CheckBox, DisabledIsSwitchedByProgramOnly)
{
    CheckBox box("box");
    int clicks = 0;
    box.OnClick = [&](std::int16_t) { ++clicks; };
    box.SetEnabled(false);
    EXPECT_FALSE(box.Toggle());
    EXPECT_EQ(0, clicks);
    box.SetValue(1);
    EXPECT_EQ(1, clicks);
}

TEST(CheckBox, AnErrorGoesToTheProgramThatSetItAndNotToAUser)
{
    CheckBox box("box");
    box.OnClick = [](std::int16_t) { runtime::Raise(runtime::kOverflow); };
    EXPECT_EQ(runtime::kOverflow, ErrorOf([&] { box.SetValue(1); }));
    EXPECT_EQ(0, ErrorOf([&] { EXPECT_TRUE(box.Toggle()); }));
    EXPECT_EQ(0, box.Value()) << "the box itself has been switched";
}

TEST(Button, IsPressedWhenItCanBeReached)
{
    Button button("button");
    int clicks = 0;
    button.OnClick = [&] { ++clicks; };
    EXPECT_TRUE(button.Click());
    button.SetVisible(false);
    EXPECT_FALSE(button.Click());
    button.SetVisible(true);
    button.SetEnabled(false);
    EXPECT_FALSE(button.Click());
    EXPECT_EQ(1, clicks);
}

TEST(Button, SwallowsForeignErrorsToo)
{
    Button button("button");
    button.OnClick = [] { throw 1; };
    EXPECT_TRUE(button.Click());
}

class Combo : public testing::Test
{
protected:
    Combo()
    {
        combo.AddItem("one");
        combo.AddItem("two");
        combo.AddItem("three");
        combo.OnClick = [this] { clicks.push_back(combo.ListIndex()); };
    }
    ComboBox combo{"combo"};
    std::vector<int> clicks;
};

TEST_F(Combo, RaisesItsClickWhenTheIndexChangesByProgram)
{
    combo.SetListIndex(1);
    combo.SetListIndex(1);
    combo.SetListIndex(2);
    combo.SetListIndex(-1);
    EXPECT_EQ((std::vector<int>{1, 2, -1}), clicks);
}

TEST_F(Combo, RaisesItsClickForAUserAlsoOnTheSelectedEntry)
{
    EXPECT_TRUE(combo.Choose(1));
    EXPECT_TRUE(combo.Choose(1));
    EXPECT_FALSE(combo.Choose(3)) << "no such entry";
    EXPECT_FALSE(combo.Choose(-1)) << "no such entry";
    combo.SetEnabled(false);
    EXPECT_FALSE(combo.Choose(0));
    EXPECT_EQ((std::vector<int>{1, 1}), clicks);
    EXPECT_EQ(1, combo.ListIndex());
}

TEST_F(Combo, ClearingSelectsNothingWithoutAClick)
{
    combo.SetListIndex(1);
    clicks.clear();
    combo.Clear();
    EXPECT_EQ(-1, combo.ListIndex());
    EXPECT_EQ(0, combo.ListCount());
    EXPECT_TRUE(clicks.empty());
}

TEST_F(Combo, HoldsANumberBesideEachEntry)
{
    EXPECT_EQ(0, combo.ItemData(1));
    combo.SetItemData(1, 70000);
    EXPECT_EQ(70000, combo.ItemData(1));
    for (const int position : {-1, 3})
    {
        EXPECT_EQ(runtime::kInvalidPropertyArrayIndex, ErrorOf([&] { combo.ItemData(position); }));
        EXPECT_EQ(runtime::kInvalidPropertyArrayIndex, ErrorOf([&] { combo.SetItemData(position, 1); }));
        EXPECT_EQ(runtime::kInvalidPropertyArrayIndex, ErrorOf([&] { combo.List(position); }));
    }
}

TEST_F(Combo, RefusesAnIndexThatDoesNotExist)
{
    for (const int position : {-2, 3})
        EXPECT_EQ(runtime::kInvalidPropertyValue, ErrorOf([&] { combo.SetListIndex(position); }));
    EXPECT_EQ(-1, combo.ListIndex());
}

TEST_F(Combo, InsertsAtAPlaceAndKeepsTheSelectedEntry)
{
    combo.SetListIndex(1);
    EXPECT_EQ(0, combo.AddItem("zero", 0));
    EXPECT_EQ("two", combo.List(combo.ListIndex()));
    EXPECT_EQ(4, combo.AddItem("last", 4));
    EXPECT_EQ("last", combo.List(4));
    EXPECT_EQ(runtime::kInvalidProcedureCall, ErrorOf([&] { combo.AddItem("beyond", 6); }));
    EXPECT_EQ((std::vector<int>{1}), clicks);
}

TEST_F(Combo, TellsItsObserverOnceAfterARefill)
{
    RecordingObserver observer(combo);
    combo.BeginUpdate();
    combo.Clear();
    combo.AddItem("new");
    combo.SetListIndex(0);
    EXPECT_TRUE(observer.heard.empty());
    combo.EndUpdate();
    combo.BeginUpdate();
    combo.EndUpdate();
    EXPECT_EQ(1, observer.Count(Property::Items));
    EXPECT_EQ(1, observer.Count(Property::Selection));
}

class Tabs : public testing::Test
{
protected:
    Tabs()
    {
        tabs.SetTabCaptions({"a", "b", "c"});
        tabs.OnClick = [this](int previous) { clicks.emplace_back(previous, tabs.Tab()); };
    }
    TabControl tabs{"tabs"};
    std::vector<std::pair<int, int>> clicks;
};

TEST_F(Tabs, RaiseTheirClickWhenTheTabChanges)
{
    tabs.SetTab(0);
    tabs.SetTab(2);
    EXPECT_TRUE(tabs.ClickTab(1));
    EXPECT_TRUE(tabs.ClickTab(1)) << "shown already: nothing happens";
    EXPECT_EQ((std::vector<std::pair<int, int>>{{0, 2}, {2, 1}}), clicks);
}

TEST_F(Tabs, DoNotGoWhereThereIsNone)
{
    EXPECT_FALSE(tabs.ClickTab(3));
    EXPECT_FALSE(tabs.ClickTab(-1));
    EXPECT_EQ(runtime::kInvalidPropertyValue, ErrorOf([&] { tabs.SetTab(3); }));
    EXPECT_TRUE(clicks.empty());
}

} // namespace
