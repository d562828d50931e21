// What all controls share: who can be reached, what an observer is told, and that turning elsewhere ends a label edit.
#include "editor/controls/button.h"
#include "editor/controls/control_set.h"
#include "editor/controls/label.h"
#include "editor/controls/list_view.h"
#include "editor/controls/tab_control.h"

#include "recording_observer.h"
#include "runtime/handler.h"

#include <gtest/gtest.h>

using namespace editor::controls;

namespace
{

class Controls : public testing::Test
{
protected:
    Controls()
        : tabs(set.Add(std::make_unique<TabControl>("tabs"))), panel(set.Add(std::make_unique<Panel>("panel"))),
          button(set.Add(std::make_unique<Button>("button"))), list(set.Add(std::make_unique<ListView>("list")))
    {
        tabs.SetTabCaptions({"a", "b"});
        panel.SetContainer(&tabs, 1);
        button.SetContainer(&panel);
        list.Add("k1", "one");
        list.Add("k2", "two");
    }
    ControlSet set;
    TabControl &tabs;
    Panel &panel;
    Button &button;
    ListView &list;
};

TEST_F(Controls, AreFoundByName)
{
    EXPECT_EQ(&button, set.Find("button"));
    EXPECT_EQ(nullptr, set.Find("Button"));
    EXPECT_EQ(&button, &set.Get<Button>("button"));
    EXPECT_EQ(runtime::kInvalidProcedureCall, ErrorOf([&] { set.Get<ListView>("button"); }));
    EXPECT_EQ(runtime::kInvalidProcedureCall, ErrorOf([&] { set.Get<Button>("none"); }));
}

TEST_F(Controls, AreReachedOnTheShownPageOnly)
{
    EXPECT_FALSE(button.Click()) << "page 0 is shown";
    tabs.SetTab(1);
    EXPECT_TRUE(button.Click());
}

TEST_F(Controls, AreReachedThroughTheirContainers)
{
    tabs.SetTab(1);
    panel.SetEnabled(false);
    EXPECT_FALSE(button.Click());
    EXPECT_TRUE(button.Shown());
    panel.SetEnabled(true);
    panel.SetVisible(false);
    EXPECT_FALSE(button.Shown());
    EXPECT_FALSE(button.Click());
}

TEST_F(Controls, OfAClosedWindowAreNotReached)
{
    tabs.SetTab(1);
    set.SetOpen(false);
    EXPECT_FALSE(button.Click());
    EXPECT_FALSE(list.Select(1));
    EXPECT_FALSE(tabs.ClickTab(0));
}

TEST_F(Controls, TellTheirObserverOfEveryChangeAndOfNoOther)
{
    RecordingObserver observer(button);
    const auto twice = [&](auto &&act)
    {
        act();
        act();
    };
    twice([&] { button.SetCaption("&Add"); });
    twice([&] { button.SetEnabled(false); });
    twice([&] { button.SetVisible(false); });
    twice([&] { button.SetTabStop(false); });
    twice([&] { button.SetBounds({1, 2, 3, 4}); });
    EXPECT_EQ((std::vector<std::pair<Property, int>>{{Property::Caption, 0},
                                                     {Property::Enabled, 0},
                                                     {Property::Visible, 0},
                                                     {Property::TabStop, 0},
                                                     {Property::Bounds, 0}}),
              observer.heard);
}

TEST_F(Controls, TakeTheFocusWhenReachable)
{
    RecordingObserver observer(button);
    button.SetFocus();
    EXPECT_TRUE(observer.heard.empty());
    tabs.SetTab(1);
    button.SetFocus();
    EXPECT_EQ(1, observer.Count(Property::Focus));
}

TEST_F(Controls, ActsElsewhereEndALabelEditFirst)
{
    tabs.SetTab(1);
    std::vector<std::string> events;
    list.OnAfterLabelEdit = [&](bool &, const std::string &text) { events.push_back("after " + text); };
    button.OnClick = [&] { events.push_back("click"); };
    RecordingObserver observer(list);
    ASSERT_TRUE(list.BeginLabelEdit());
    observer.typed = "changed";
    EXPECT_TRUE(button.Click());
    EXPECT_EQ((std::vector<std::string>{"after changed", "click"}), events);
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ("changed", list.Item(1).text);
}

TEST_F(Controls, AnActRefusedEndsNoEdit)
{
    ASSERT_TRUE(list.BeginLabelEdit());
    EXPECT_FALSE(button.Click());
    EXPECT_TRUE(list.Editing());
}

TEST_F(Controls, AnActEndsWhereTheEndOfTheEditHasDisabledIt)
{
    tabs.SetTab(1);
    list.OnAfterLabelEdit = [&](bool &, const std::string &) { button.SetEnabled(false); };
    RecordingObserver observer(list);
    bool clicked = false;
    button.OnClick = [&] { clicked = true; };
    ASSERT_TRUE(list.BeginLabelEdit());
    observer.typed = "changed";
    button.Click();
    EXPECT_FALSE(clicked);
}

TEST_F(Controls, AnActThatEndsAnEditIsNotCarriedOutWhenTheNameIsRefused)
{
    tabs.SetTab(1);
    std::vector<std::string> events;
    button.OnClick = [&] { events.push_back("click"); };
    tabs.OnClick = [&](int) { events.push_back("tab"); };
    list.OnItemClick = [&](int) { events.push_back("item"); };
    list.OnColumnClick = [&](int) { events.push_back("column"); };
    list.AddColumn(1, {"", "Name", 100});
    RecordingObserver observer(list);
    const std::function<void(bool &, const std::string &)> refusals[] = {
        [](bool &cancel, const std::string &) { cancel = true; },
        [](bool &, const std::string &) { runtime::Raise(runtime::kOverflow); }};
    const std::function<void()> acts[] = {[&] { button.Click(); }, [&] { tabs.ClickTab(0); }, [&] { list.Select(2); },
                                          [&] { list.ClickColumn(1); }, [&] { EXPECT_FALSE(set.LeaveByUser()); }};
    for (const auto &refuse : refusals)
        for (const auto &act : acts)
        {
            list.OnAfterLabelEdit = refuse;
            observer.typed = "taken";
            ASSERT_TRUE(list.BeginLabelEdit());
            act();
            EXPECT_TRUE(events.empty()) << events.front();
            EXPECT_FALSE(list.Editing());
            EXPECT_EQ("one", list.SelectedItem().text);
        }
    button.Click();
    EXPECT_EQ((std::vector<std::string>{"click"}), events) << "the next act is";
}

TEST_F(Controls, AnActThatComesWhileAHandlerRunsFollowsIt)
{
    tabs.SetTab(1);
    std::vector<std::string> events;
    list.OnItemClick = [&](int position) { events.push_back("item " + std::to_string(position)); };
    tabs.OnClick = [&](int) { events.push_back("tab"); };
    list.OnAfterLabelEdit = [&](bool &, const std::string &text) { events.push_back("after " + text); };
    button.OnClick = [&]
    {
        EXPECT_TRUE(runtime::HandlerRunning());
        EXPECT_TRUE(list.Select(2));
        list.StartLabelEdit();
        EXPECT_FALSE(list.EndLabelEdit("typed", EditEnd::Enter)) << "not yet";
        EXPECT_TRUE(set.LeaveByUser());
        EXPECT_TRUE(tabs.ClickTab(0));
        EXPECT_TRUE(button.Click());
        events.push_back("click ends");
        runtime::Raise(runtime::kOverflow);
    };
    EXPECT_TRUE(button.Click());
    EXPECT_FALSE(runtime::HandlerRunning());
    // The second click finds its page gone.
    EXPECT_EQ((std::vector<std::string>{"click ends", "item 2", "tab"}), events);
}

TEST_F(Controls, TheProgramMovingTheFocusEndsAnEditElsewhere)
{
    tabs.SetTab(1);
    ASSERT_TRUE(list.BeginLabelEdit());
    list.SetFocus();
    EXPECT_TRUE(list.Editing());
    button.SetFocus();
    EXPECT_FALSE(list.Editing());
}

} // namespace
