// Editing a label in place: how it begins, how it ends, and what it raises.
#include "editor/controls/list_view.h"

#include "recording_observer.h"

#include <gtest/gtest.h>

using namespace editor::controls;

namespace
{

class LabelEdit : public testing::Test
{
protected:
    LabelEdit()
    {
        list.AddColumn(1, {"", "Name", 100});
        list.Add("b", "bold");
        list.Add("a", "plain");
        list.OnBeforeLabelEdit = [this](bool &cancel)
        {
            events.push_back("before " + list.SelectedItem().text);
            cancel = refuseBefore;
        };
        list.OnAfterLabelEdit = [this](bool &cancel, const std::string &text)
        {
            events.push_back("after " + text);
            cancel = refuseAfter;
        };
        list.OnItemClick = [this](int position) { events.push_back("click " + std::to_string(position)); };
    }
    using Events = std::vector<std::string>;

    ListView list{"list"};
    Events events;
    bool refuseBefore = false;
    bool refuseAfter = false;
};

TEST_F(LabelEdit, EndsWithEnterAlsoUnchanged)
{
    EXPECT_TRUE(list.BeginLabelEdit());
    EXPECT_TRUE(list.Editing());
    EXPECT_TRUE(list.EndLabelEdit("bold", EditEnd::Enter));
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ((Events{"before bold", "after bold"}), events);
}

TEST_F(LabelEdit, LeavingRaisesAfterLabelEditWhenChanged)
{
    list.BeginLabelEdit();
    EXPECT_FALSE(list.EndLabelEdit("bold", EditEnd::Leave));
    list.BeginLabelEdit();
    EXPECT_TRUE(list.EndLabelEdit("bolder", EditEnd::Leave));
    EXPECT_EQ((Events{"before bold", "before bold", "after bolder"}), events);
    EXPECT_EQ("bolder", list.Item("b").text);
}

TEST_F(LabelEdit, EscapeRaisesNothing)
{
    list.BeginLabelEdit();
    EXPECT_FALSE(list.EndLabelEdit("other", EditEnd::Escape));
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ("bold", list.Item("b").text);
    EXPECT_EQ((Events{"before bold"}), events);
}

TEST_F(LabelEdit, CanBeRefusedAtItsBeginning)
{
    refuseBefore = true;
    EXPECT_FALSE(list.BeginLabelEdit());
    list.StartLabelEdit();
    EXPECT_FALSE(list.Editing());
    EXPECT_FALSE(list.EndLabelEdit("x", EditEnd::Enter));
    EXPECT_EQ((Events{"before bold", "before bold"}), events);
}

TEST_F(LabelEdit, CanBeRefusedAtItsEnd)
{
    refuseAfter = true;
    list.BeginLabelEdit();
    EXPECT_FALSE(list.EndLabelEdit("other", EditEnd::Enter));
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ("bold", list.Item("b").text);
}

TEST_F(LabelEdit, AnErrorAtItsEndRefusesIt)
{
    list.OnAfterLabelEdit = [](bool &, const std::string &) { runtime::Raise(runtime::kOverflow); };
    list.BeginLabelEdit();
    EXPECT_FALSE(list.EndLabelEdit("other", EditEnd::Enter));
    EXPECT_EQ("bold", list.Item("b").text);
}

TEST_F(LabelEdit, AnErrorAtItsBeginningRefusesAUserAndIsRaisedToTheProgram)
{
    list.OnBeforeLabelEdit = [](bool &) { runtime::Raise(runtime::kOverflow); };
    EXPECT_FALSE(list.BeginLabelEdit());
    EXPECT_EQ(runtime::kOverflow, ErrorOf([&] { list.StartLabelEdit(); }));
    EXPECT_FALSE(list.Editing());
}

TEST_F(LabelEdit, BegunAgainGoesOn)
{
    list.StartLabelEdit();
    EXPECT_TRUE(list.BeginLabelEdit());
    list.StartLabelEdit();
    EXPECT_EQ((Events{"before bold"}), events);
}

TEST_F(LabelEdit, IsNotToBeHadWithoutAnItemOrWhereLabelsAreFixed)
{
    list.SetLabelsEditable(false);
    EXPECT_FALSE(list.BeginLabelEdit());
    list.StartLabelEdit();
    EXPECT_FALSE(list.Editing());
    list.SetLabelsEditable(true);
    list.SetEnabled(false);
    EXPECT_FALSE(list.BeginLabelEdit());
    list.SetEnabled(true);
    list.Clear();
    EXPECT_FALSE(list.BeginLabelEdit());
    EXPECT_EQ(runtime::kObjectNotSet, ErrorOf([&] { list.StartLabelEdit(); }));
    EXPECT_TRUE(events.empty());
}

TEST_F(LabelEdit, RenamingDoesNotMoveTheItemInASortedList)
{
    list.SetSorted(true);
    list.SetSelectedItem("b");
    list.BeginLabelEdit();
    EXPECT_TRUE(list.EndLabelEdit("zebra", EditEnd::Enter));
    EXPECT_EQ(1, list.Position("b"));
    EXPECT_EQ("zebra", list.Item(1).text);
    list.SetSortOrder(SortOrder::Descending);
    list.SetSortOrder(SortOrder::Ascending);
    EXPECT_EQ(2, list.Position("b")) << "sorted anew";
}

TEST_F(LabelEdit, AClickOnAnItemLeavesItBeforeTheSelectionMoves)
{
    RecordingObserver observer(list);
    list.BeginLabelEdit();
    observer.typed = "bolder";
    EXPECT_TRUE(list.Select(2));
    EXPECT_EQ((Events{"before bold", "after bolder", "click 2"}), events);
    EXPECT_EQ("bolder", list.Item(1).text);
    EXPECT_EQ("plain", list.Item(2).text);
}

TEST_F(LabelEdit, AColumnClickLeavesIt)
{
    list.BeginLabelEdit();
    EXPECT_TRUE(list.ClickColumn(1));
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ((Events{"before bold"}), events);
}

TEST_F(LabelEdit, TheProgramEndsItByRefillingOrSelecting)
{
    list.BeginLabelEdit();
    list.SetSelectedItem(2);
    EXPECT_FALSE(list.Editing());
    list.BeginLabelEdit();
    list.Clear();
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ((Events{"before bold", "before plain"}), events);
}

TEST_F(LabelEdit, SurvivesARefillByItsOwnHandler)
{
    list.OnAfterLabelEdit = [&](bool &, const std::string &)
    {
        list.Clear();
        list.Add("a", "plain");
        list.Add("b", "stored");
    };
    list.BeginLabelEdit();
    EXPECT_TRUE(list.EndLabelEdit("typed", EditEnd::Enter));
    EXPECT_EQ("typed", list.Item("b").text);

    list.OnAfterLabelEdit = [&](bool &, const std::string &) { list.Clear(); };
    list.BeginLabelEdit();
    EXPECT_FALSE(list.EndLabelEdit("typed", EditEnd::Enter));
}

TEST_F(LabelEdit, TellsItsObserverWhenItBeginsAndEnds)
{
    RecordingObserver observer(list);
    list.SetSelectedItem(2);
    observer.heard.clear();
    list.StartLabelEdit();
    list.EndLabelEdit("other", EditEnd::Enter);
    EXPECT_EQ((std::vector<std::pair<Property, int>>{
                  {Property::LabelEditStarted, 2}, {Property::LabelEditEnded, 0}, {Property::ItemText, 2}}),
              observer.heard);
}

} // namespace
