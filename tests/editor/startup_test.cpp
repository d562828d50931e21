// Opening the window on a database: what is read, what is shown, and what becomes of failures.
#include "session.h"

#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "model/globals.h"

#include <algorithm>

using namespace editor;
using editor::controls::ListView;
using editor::controls::TabControl;
using support::Box;
using support::ErrorBox;

namespace
{

class Startup : public Session
{
};

TEST_F(Startup, OpensThePartitionStrip)
{
    Open(
        [&]
        {
            EXPECT_EQ(720, Form().SSTab1.Bounds().top);
            EXPECT_EQ(5520, Form().btnPrint.Bounds().top);
            EXPECT_EQ(5520, Form().btnSave.Bounds().top);
            EXPECT_EQ(5520, Form().btnCancel.Bounds().top);
            EXPECT_EQ(6120, Form().ClientHeight());
            EXPECT_EQ(10725, Form().ClientWidth());
            EXPECT_TRUE(Form().labPartition.Visible());
            EXPECT_TRUE(Form().cmbPartition.Visible());
            for (const controls::ListView *list : {&Form().lvwFormats, &Form().lvwHeadings})
            {
                EXPECT_FALSE(list->HideColumnHeaders());
                ASSERT_EQ(2u, list->Columns().size());
                EXPECT_EQ("C2", list->Columns()[1].key);
                EXPECT_EQ("Partition", list->Columns()[1].text);
                EXPECT_EQ(2000, list->Columns()[1].width);
            }
            EXPECT_TRUE(Form().lvwFormats.Sorted());
            EXPECT_FALSE(Form().lvwHeadings.Sorted());
        });
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "end", "destroy"}), calls);
}

TEST_F(Startup, KeepsTheWindowOnTop)
{
    Open(
        [&]
        {
            ASSERT_EQ(1u, desktop.placings.size());
            EXPECT_EQ(-1, desktop.placings[0].insertAfter);
            EXPECT_EQ(100, desktop.placings[0].left);
            EXPECT_EQ(720, desktop.placings[0].width);
            ASSERT_EQ(1u, host::LoadedForms().size());
            EXPECT_EQ(&Form(), host::LoadedForms()[0]);
        });
    EXPECT_TRUE(host::LoadedForms().empty());
}

TEST_F(Startup, TheTabShownHasItsStops)
{
    Open(
        [&]
        {
            EXPECT_EQ(0, Form().SSTab1.Tab());
            EXPECT_TRUE(Form().chkTagKnown.TabStop());
            EXPECT_TRUE(Form().chkTagMixed.TabStop());
            EXPECT_FALSE(Form().lvwFormats.TabStop());
            EXPECT_EQ("Add", Form().btnAdd.Caption());
        });
}

TEST_F(Startup, KnowsWhichPartitionsExist)
{
    Open(
        [&]
        {
            EXPECT_TRUE(Form().PartitionExists(1));
            EXPECT_TRUE(Form().PartitionExists(3));
            EXPECT_FALSE(Form().PartitionExists(5)) << "deleted";
            EXPECT_FALSE(Form().PartitionExists(99));
            model::gPartitions = nullptr;
            EXPECT_FALSE(Form().PartitionExists(1));
        });
}

TEST_F(Startup, AReportTypeNumberTwiceIsLeftOutAndReported)
{
    Run("DROP TABLE reports_cfg");
    Run("CREATE TABLE reports_cfg (report_type_nbr smallint NOT NULL, report_name varchar(60) NULL, "
        "hosp_acct_id smallint NOT NULL, is_deleted char(1) NOT NULL)");
    Run("INSERT INTO reports_cfg VALUES (4, 'Notes', 7, '0') INSERT INTO reports_cfg VALUES (4, 'Other', 7, '0') "
        "INSERT INTO reports_cfg VALUES (5, 'Third', 7, '0')");
    desktop.WillAnswerOk(3);
    Open([&] { EXPECT_EQ((Lines{"*<All New>", "Notes", "Third"}), Texts(Form().lvwReportType)); });
    ASSERT_EQ(3u, desktop.boxes.size());
    EXPECT_EQ(ErrorBox("Error encountered while accessing reports: Key is not unique in collection"), desktop.boxes[0]);
}

// The opening and handlers let messages through, and a host's message may call in again. Waiting there for the window
// would never end, since they go on only behind that call.
TEST_F(Startup, AHostsCallFromWithinTheOpeningOrAHandlerReturnsAtOnce)
{
    editor::RegisterForms();
    host::Disconnect();
    int calledIn = 0;
    desktop.onEvents = [&]
    {
        ++calledIn;
        EXPECT_EQ(0, host::gConfig->ShowForm());
        EXPECT_FALSE(desktop.hostAnswers);
    };
    FakeView::Calls asked;
    int opened = 0;
    editor::SetFormViewFactory(
        [&](editor::StagedForm &form)
        {
            return std::make_unique<FakeView>(asked,
                                              [&]
                                              {
                                                  ++opened;
                                                  EXPECT_GT(std::exchange(calledIn, 0), 2) << "connecting and loading";
                                                  EXPECT_TRUE(form.Controls().Get<TabControl>("SSTab1").ClickTab(2));
                                                  EXPECT_TRUE(form.Controls().Get<ListView>("lvwHeadings").Select(1));
                                              });
        });
    EXPECT_EQ(0, host::gConfig->ShowForm());
    EXPECT_TRUE(desktop.hostAnswers);
    EXPECT_GT(calledIn, 0);
    EXPECT_EQ(1, opened);
    EXPECT_EQ(1, std::count(asked.begin(), asked.end(), "create"));
    EXPECT_TRUE(host::LoadedForms().empty());
    host::SetFormFactory("frmHeadings", nullptr);
}

} // namespace
