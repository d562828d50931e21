// Items, selection, columns and sorting of a list.
#include "editor/controls/list_view.h"

#include "recording_observer.h"

#include <gtest/gtest.h>

using namespace editor::controls;

namespace
{

class List : public testing::Test
{
protected:
    List()
    {
        list.AddColumn(1, {"", "Name", 100});
        list.AddColumn(2, {"C2", "Partition", 2000});
        list.OnItemClick = [this](int position) { clicks.push_back(position); };
    }

    // Keys as displayed, "*" before the selected one.
    std::vector<std::string> Shown() const
    {
        std::vector<std::string> keys;
        for (int position = 1; position <= list.Count(); ++position)
            keys.push_back((position == list.SelectedPosition() ? "*" : "") + list.Item(position).key);
        return keys;
    }
    using Keys = std::vector<std::string>;

    ListView list{"list"};
    std::vector<int> clicks;
};

TEST_F(List, IsEmptyAtFirst)
{
    EXPECT_EQ(0, list.Count());
    EXPECT_EQ(0, list.SelectedPosition());
    EXPECT_EQ(runtime::kObjectNotSet, ErrorOf([&] { list.SelectedItem(); }));
    EXPECT_EQ(runtime::kIndexOutOfBounds, ErrorOf([&] { list.Item(1); }));
    EXPECT_EQ(runtime::kIndexOutOfBounds, ErrorOf([&] { list.SetSelectedItem(1); }));
    EXPECT_EQ(runtime::kElementNotFound, ErrorOf([&] { list.Item("k"); }));
    EXPECT_EQ(runtime::kElementNotFound, ErrorOf([&] { list.SetSelectedItem("k"); }));
    EXPECT_FALSE(list.Select(1));
}

TEST_F(List, SelectsItsFirstItemAsSoonAsItHasOne)
{
    list.Add("b", "b");
    EXPECT_EQ("b", list.SelectedItem().key);
    list.Add("a", "a");
    EXPECT_EQ((Keys{"*b", "a"}), Shown());
    EXPECT_TRUE(clicks.empty());
}

TEST_F(List, RefilledSelectsItsFirstItemAnew)
{
    list.Add("a", "a");
    list.Add("b", "b");
    list.SetSelectedItem("b");
    list.Clear();
    EXPECT_EQ(runtime::kObjectNotSet, ErrorOf([&] { list.SelectedItem(); }));
    list.Add("c", "c");
    EXPECT_EQ((Keys{"*c"}), Shown());
    EXPECT_TRUE(clicks.empty());
}

TEST_F(List, RefusesAKeyTwice)
{
    list.Add("a", "first");
    EXPECT_EQ(runtime::kKeyNotUnique, ErrorOf([&] { list.Add("a", "second"); }));
    EXPECT_EQ(1, list.Count());
    EXPECT_EQ("first", list.Item("a").text);
}

TEST_F(List, FindsEachOfManyItems)
{
    for (int i = 0; i < 3000; ++i)
        list.Add("Key" + std::to_string(i * 7 % 3000), "text");
    for (int i = 0; i < 3000; ++i)
    {
        const std::string key = "Key" + std::to_string(i);
        ASSERT_EQ(key, list.Item(list.Position(key)).key);
        ASSERT_EQ(runtime::kKeyNotUnique, ErrorOf([&] { list.Add(key, "again"); }));
    }
    EXPECT_EQ(runtime::kElementNotFound, ErrorOf([&] { list.Position("Key3000"); }));
    EXPECT_EQ(runtime::kElementNotFound, ErrorOf([&] { list.Position(""); }));
}

TEST_F(List, ItemsWithoutAKeyAreMany)
{
    list.Add("", "one");
    list.Add("", "two");
    EXPECT_EQ(2, list.Count());
}

TEST_F(List, ForgetsKeysWhenCleared)
{
    list.Add("a", "first");
    list.Clear();
    list.Add("a", "second");
    EXPECT_EQ("second", list.Item("a").text);
}

TEST_F(List, SelectionByProgramRaisesNothing)
{
    list.Add("a", "a");
    list.Add("b", "b");
    list.SetSelectedItem(2);
    list.SetSelectedItem("a");
    EXPECT_TRUE(clicks.empty());
    EXPECT_EQ(runtime::kIndexOutOfBounds, ErrorOf([&] { list.SetSelectedItem(3); }));
    EXPECT_EQ("a", list.SelectedItem().key);
}

TEST_F(List, AClickRaisesItemClickAlsoOnTheSelectedItem)
{
    list.Add("a", "a");
    list.Add("b", "b");
    EXPECT_TRUE(list.Select(2));
    EXPECT_TRUE(list.Select(2));
    EXPECT_FALSE(list.Select(3));
    EXPECT_EQ((std::vector<int>{2, 2}), clicks);
    list.SetEnabled(false);
    EXPECT_FALSE(list.Select(1));
    EXPECT_EQ("b", list.SelectedItem().key);
}

TEST_F(List, AnErrorOfItemClickLeavesTheItemSelected)
{
    list.Add("a", "a");
    list.Add("b", "b");
    list.OnItemClick = [](int) { runtime::Raise(runtime::kOverflow); };
    EXPECT_TRUE(list.Select(2));
    EXPECT_EQ("b", list.SelectedItem().key);
}

TEST_F(List, SortsByLabelAndBySecondColumn)
{
    list.Add("1", "pear", "y");
    list.Add("2", "Apple", "z");
    list.Add("3", "fig", "X");
    list.Add("4", "APPLE", "x");
    EXPECT_EQ((Keys{"*1", "2", "3", "4"}), Shown());
    list.SetSorted(true);
    EXPECT_EQ((Keys{"2", "4", "3", "*1"}), Shown());
    list.SetSortOrder(SortOrder::Descending);
    EXPECT_EQ((Keys{"*1", "3", "2", "4"}), Shown());
    list.SetSortKey(1);
    EXPECT_EQ((Keys{"2", "*1", "3", "4"}), Shown());
    list.SetSortOrder(SortOrder::Ascending);
    EXPECT_EQ((Keys{"3", "4", "*1", "2"}), Shown());
    EXPECT_EQ(3, list.Position("1"));
    EXPECT_EQ("4", list.Item(2).key);
}

TEST_F(List, ASortedListTakesNewItemsWhereTheyBelong)
{
    list.SetSorted(true);
    list.Add("m", "m");
    list.Add("a", "a");
    EXPECT_EQ((Keys{"a", "*m"}), Shown());
    list.Add("g", "g");
    EXPECT_EQ((Keys{"a", "g", "*m"}), Shown());
    list.SetSelectedItem(1);
    EXPECT_EQ("a", list.SelectedItem().key);
}

TEST_F(List, KeepsItsOrderWhenSortingIsSwitchedOff)
{
    list.Add("b", "b");
    list.Add("a", "a");
    list.SetSorted(true);
    list.SetSorted(false);
    list.Add("0", "0");
    EXPECT_EQ((Keys{"a", "*b", "0"}), Shown());
    list.SetSortKey(1);
    EXPECT_EQ((Keys{"a", "*b", "0"}), Shown());
    list.Clear();
    for (const char *key : {"2", "1", "0"})
        list.Add(key, key);
    EXPECT_EQ((Keys{"*2", "1", "0"}), Shown()) << "the order goes with the items";
}

TEST_F(List, ColumnClicksCountFromOneAndNeedAHeader)
{
    std::vector<int> columns;
    list.OnColumnClick = [&](int column) { columns.push_back(column); };
    EXPECT_TRUE(list.ClickColumn(2));
    EXPECT_FALSE(list.ClickColumn(0));
    EXPECT_FALSE(list.ClickColumn(3));
    list.SetHideColumnHeaders(true);
    EXPECT_FALSE(list.ClickColumn(1));
    EXPECT_EQ((std::vector<int>{2}), columns);
}

TEST_F(List, RefusesAColumnFarBehind)
{
    EXPECT_EQ(runtime::kIndexOutOfBounds, ErrorOf([&] { list.AddColumn(4, {}); }));
    EXPECT_EQ(runtime::kInvalidPropertyValue, ErrorOf([&] { list.SetSortKey(-1); }));
}

TEST_F(List, TellsItsObserverOnceAfterARefill)
{
    list.Add("a", "a");
    RecordingObserver observer(list);
    {
        const UpdateLock outer(list);
        const UpdateLock inner(list);
        list.Clear();
        for (int i = 0; i < 100; ++i)
            list.Add(std::to_string(i), "text");
        list.SetSelectedItem(50);
        EXPECT_TRUE(observer.heard.empty());
    }
    { // nothing more behind
        const UpdateLock lock(list);
    }
    EXPECT_EQ((std::vector<std::pair<Property, int>>{{Property::Items, 0}, {Property::Selection, 0}}), observer.heard);
    list.SetSortOrder(SortOrder::Descending);
    EXPECT_EQ(1, observer.Count(Property::Sort));
}

} // namespace
