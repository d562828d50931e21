// What each tab gives to the keyboard.
#include "site.h"

#include <set>

namespace
{

class TabStates : public Site
{
protected:
    TabStates()
    {
        model::clsPartition &partition = Partition(3, "Here");
        Format(partition, 10, "A");
        Heading(partition, 20, "HISTORY");
        Show(partition);
        form.ResetTabStates();
        form.ApplyTabStates();
    }
    // The controls of the pages that the Tab key stops at.
    std::set<std::string> Stops()
    {
        std::set<std::string> names;
        for (const auto &control : form.Controls().All())
            if (control->Container() && control->TabStop())
                names.insert(control->Name());
        return names;
    }
    std::string Captions() const
    {
        return form.btnAdd.Caption() + " " + form.btnDelete.Caption() + " " + form.btnAddHead.Caption() + " " +
               form.btnDeleteHead.Caption();
    }
    using Names = std::set<std::string>;
    const Names general{"chkTagKnown", "chkTagMixed"};
    const Names formats{"lvwFormats",  "SSCheck1(0)", "SSCheck1(1)", "SSCheck1(2)", "SSCheck1(3)",
                        "SSCheck1(4)", "SSCheck1(5)", "btnAdd",      "btnDelete"};
    const Names headings{"lvwHeadings", "cmbAccList",    "lvwReportType", "cmbFormats",
                         "btnAddHead",  "btnDeleteHead", "btnAllReports", "btnAllAccounts"};
};

TEST_F(TabStates, FollowTheTabShown)
{
    EXPECT_EQ(general, Stops());
    EXPECT_EQ("Add Delete Add Delete", Captions());
    form.SSTab1.ClickTab(1);
    EXPECT_EQ(formats, Stops());
    EXPECT_EQ("&Add &Delete Add Delete", Captions());
    form.SSTab1.ClickTab(2);
    EXPECT_EQ(headings, Stops());
    EXPECT_EQ("Add Delete &Add &Delete", Captions());
    form.SSTab1.ClickTab(0);
    EXPECT_EQ(general, Stops());
    EXPECT_EQ("Add Delete Add Delete", Captions());
}

TEST_F(TabStates, TheResetTakesEverythingAway)
{
    form.SSTab1.ClickTab(2);
    form.ResetTabStates();
    EXPECT_EQ(Names{}, Stops());
    EXPECT_EQ("Add Delete Add Delete", Captions());
}

TEST_F(TabStates, ControlsOutsideThePagesAreLeftAlone)
{
    for (int tab : {1, 2, 0})
    {
        form.SSTab1.ClickTab(tab);
        for (const editor::controls::Control *control : {static_cast<editor::controls::Control *>(&form.btnSave),
                                                         static_cast<editor::controls::Control *>(&form.btnCancel),
                                                         static_cast<editor::controls::Control *>(&form.btnPrint),
                                                         static_cast<editor::controls::Control *>(&form.cmbPartition)})
            EXPECT_TRUE(control->TabStop()) << control->Name();
    }
}

TEST_F(TabStates, TheHeadingsTabKeepsItsSelections)
{
    form.lvwHeadings.Add("Key99-3", "X");
    form.lvwHeadings.SetSelectedItem(2);
    form.SSTab1.ClickTab(2);
    form.SSTab1.ClickTab(1);
    form.SSTab1.ClickTab(2);
    EXPECT_EQ(2, form.lvwHeadings.SelectedPosition());
}

} // namespace
