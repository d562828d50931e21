// Opening the window on a database: what is read, what is shown, and what becomes of failures.
#include "session.h"

#include "editor/queries.h"
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
protected:
    static std::string Formats(int id)
    {
        return "SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, "
               "bold, underline, indent, system_format FROM Report_header_formats WHERE flag1 = " +
               std::to_string(id) + "\r\nORDER BY system_format DESC, format_name";
    }
    static std::string Headings(int id)
    {
        return "SELECT heading_id, heading FROM Report_headers WHERE flag1 = " + std::to_string(id) +
               "ORDER BY heading ASC";
    }
    static std::string Settings()
    {
        return "SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 FROM Report_header_settings\r\n" +
               model::AccountScope(2) + "ORDER BY heading_id ASC";
    }
};

TEST_F(Startup, ReadsEverythingInOrder)
{
    Open();
    EXPECT_EQ((Lines{sql::PartitionAndBelow(2), sql::Ancestors(2), sql::TagOptions(), Formats(2), Headings(2),
                     Formats(3), Headings(3), Formats(1), Headings(1), sql::Accounts(2), sql::ReportTypes(7),
                     Settings(), sql::Accounts(2), sql::ReportTypes(7), sql::ReportTypes(7)}),
              Log());
}

TEST_F(Startup, ShowsTheHostsPartition)
{
    Open(
        [&]
        {
            EXPECT_EQ((Lines{"*Clinic", "Ward"}), Texts(Form().cmbPartition));
            EXPECT_EQ((Lines{"*Bold", "Default", "Plain"}), Texts(Form().lvwFormats));
            EXPECT_EQ((Lines{"*HISTORY", "PLAN", "<Default>"}), Texts(Form().lvwHeadings));
            EXPECT_EQ("Top", Form().lvwHeadings.Item(3).second);
            EXPECT_EQ((Lines{"<All New>", "*Seven", ""}), Texts(Form().cmbAccList));
            EXPECT_EQ((Lines{"*<All New>", "", "Notes"}), Texts(Form().lvwReportType));
            EXPECT_EQ((Lines{"Bold \\ Clinic", "*Plain \\ Clinic", "Default \\ Top"}), Texts(Form().cmbFormats))
                << "the setting of heading 0";
            EXPECT_EQ(20, Form().m_intHeadID);
            EXPECT_EQ(1, Form().m_intAccountIndex);
            EXPECT_EQ(0, Form().m_intReportType);
            EXPECT_FALSE(Form().m_blnChanged);
            EXPECT_FALSE(Form().m_blnLoading);
            EXPECT_FALSE(Form().btnDeleteHead.Enabled());
            EXPECT_EQ(nullptr, host::gResultset);
            EXPECT_EQ(0, desktop.waitCursors);
        });
    EXPECT_EQ(Lines{}, desktop.boxes);
}

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

TEST_F(Startup, ReadsTagOptions)
{
    Run(R"(INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'False', 2)
INSERT INTO System_user_cfg VALUES (-1, 1, 'tagknownheadings', 'true', 2)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', ' True', 2)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', NULL, 3)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', 'True', 1)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'True', 99)
INSERT INTO System_user_cfg VALUES (4, 1, 'TagKnownHeadings', 'True', 3))");
    Open(
        [&]
        {
            const auto &partitions = *model::gPartitions->m_colPartitions;
            struct Case
            {
                const char *id;
                bool known, knownFound, mixed, mixedFound;
            };
            for (const Case &c : {Case{"2", true, true, false, true}, Case{"3", false, false, false, true},
                                  Case{"1", false, false, true, true}})
            {
                const model::clsPartition &partition = *partitions.Item(c.id);
                EXPECT_EQ(c.known, partition.m_blnTagKnownHeadings) << c.id;
                EXPECT_EQ(c.knownFound, partition.m_blnKnownFound) << c.id;
                EXPECT_EQ(c.mixed, partition.m_blnAllowMixedCaseHeadings) << c.id;
                EXPECT_EQ(c.mixedFound, partition.m_blnMixFound) << c.id;
            }
            EXPECT_EQ(1, Form().chkTagKnown.Value());
            EXPECT_EQ(0, Form().chkTagMixed.Value());
            EXPECT_FALSE(Form().m_blnChanged);
        });
}

TEST_F(Startup, WritesSiteDefaultsThatAreOn)
{
    Run("INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'False', 2)");
    host::gIniTagKnownHeadings = true;
    Open([&] { EXPECT_EQ(0, Form().chkTagKnown.Value()) << "the partition's own value stands"; });
    EXPECT_EQ((Lines{"TagKnownHeadings | True | 1", "TagKnownHeadings | False | 2", "TagKnownHeadings | True | 3"}),
              Query("SELECT key_name, key_value, partition_id FROM System_user_cfg ORDER BY partition_id"));
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

TEST_F(Startup, LoadsADeletedAncestor)
{
    Run("UPDATE System_partitions SET delete_date = '2003-01-01' WHERE partition_id = 1");
    Open([&] { EXPECT_TRUE(Form().PartitionExists(1)); });
}

TEST_F(Startup, AnotherPartitionIsShownWithItsAncestors)
{
    Open(
        [&]
        {
            ASSERT_TRUE(Form().cmbPartition.Choose(1));
            EXPECT_EQ("Ward", model::gCurrentPartition->m_strPartitionName);
            EXPECT_EQ(model::gCurrentPartition->m_objcolFormats, model::gFormats);
            EXPECT_EQ(model::gCurrentPartition->m_objcolHeadings, model::gHeadings);
            EXPECT_EQ((Lines{"*WARD", "HISTORY", "PLAN", "<Default>"}), Texts(Form().lvwHeadings));
            EXPECT_EQ((Lines{"*<All New>"}), Texts(Form().cmbAccList));
            EXPECT_EQ(22, Form().m_intHeadID);
            EXPECT_EQ(0, Form().lvwReportType.Count());
            EXPECT_FALSE(Form().lvwReportType.Enabled());
            EXPECT_FALSE(Form().m_blnChanged);
        });
}

TEST_F(Startup, APartitionChangeOnTheFormatsTabSelectsItsFirstFormat)
{
    Open(
        [&]
        {
            PickTab(1);
            ASSERT_TRUE(Form().cmbPartition.Choose(1));
            EXPECT_EQ("*Bold", Texts(Form().lvwFormats)[0]);
            EXPECT_EQ(11, Form().m_intFormatID);
            EXPECT_EQ(2, Form().m_lngFormatPartitionID);
            EXPECT_EQ(1, Form().SSCheck1[3]->Value());
        });
}

TEST_F(Startup, OptionsThatDifferMarkTheWindowOnAPartitionChange)
{
    Run("INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'True', 3)");
    desktop.WillAnswer({platform::Answer::Yes});
    Open(
        [&]
        {
            ASSERT_TRUE(Form().cmbPartition.Choose(1));
            EXPECT_EQ(1, Form().chkTagKnown.Value());
            EXPECT_TRUE(Form().m_blnChanged);
            EXPECT_FALSE(model::gPartitions->m_colPartitions->Item("2")->m_blnTagKnownHeadings);
            EXPECT_TRUE(Form().btnCancel.Click());
        });
}

TEST_F(Startup, AnAccountIsChosen)
{
    Open(
        [&]
        {
            PickTab(2);
            database.ClearLog();
            ASSERT_TRUE(Form().cmbAccList.Choose(2));
            EXPECT_EQ((Lines{sql::ReportTypes(8)}), Log());
            EXPECT_EQ((Lines{"*<All New>"}), Texts(Form().lvwReportType));
            EXPECT_TRUE(Form().lvwReportType.Enabled());
            EXPECT_EQ(2, Form().m_intAccountIndex);
        });
}

TEST_F(Startup, SiteWithoutAnythingOpensInPeace)
{
    Run("DELETE FROM Report_header_formats DELETE FROM Report_headers DELETE FROM account_info "
        "DELETE FROM Report_header_settings DELETE FROM reports_cfg");
    Open(
        [&]
        {
            EXPECT_EQ(0, Form().lvwHeadings.Count());
            EXPECT_EQ((Lines{"*<All New>"}), Texts(Form().cmbAccList));
            for (int tab : {1, 2, 0})
                PickTab(tab);
            EXPECT_EQ(-1, Form().m_intFormatID);
            EXPECT_TRUE(Form().cmbPartition.Choose(1));
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ(Lines{}, desktop.boxes);
    EXPECT_EQ(Lines{}, Events());
}

TEST_F(Startup, WithoutAnyPartitionReportsAndOpens)
{
    runtime::MakeRef<host::clsConfig>()->SetPartitionID(99);
    Connect();
    desktop.WillAnswerOk(2);
    Open([&] { EXPECT_TRUE(Form().btnCancel.Click()); });
    const std::string accounts =
        "Error encountered while accessing accounts: Object variable or With block variable not set";
    ASSERT_EQ(2u, desktop.boxes.size());
    EXPECT_EQ(ErrorBox(accounts), desktop.boxes[0]);
    EXPECT_EQ(ErrorBox("Error encountered while writing to error log file: Object variable or With block variable not "
                       "set"),
              desktop.boxes[1]);
}

TEST_F(Startup, APartitionThatIsBothAboveAndBelowIsAnError)
{
    Run("UPDATE System_partitions SET lineage = '/1/3/' WHERE partition_id = 2");
    desktop.WillAnswerOk(2);
    Open([&] { EXPECT_EQ(0, Form().cmbPartition.ListCount()); });
    EXPECT_EQ(2u, desktop.boxes.size());
}

// --- Failures

TEST_F(Startup, ReportsEachFailedQueryAndOpensAllTheSame)
{
    const std::string atEnd = ErrorBox("Error encountered while writing to error log file: 42000: broken");
    struct Case
    {
        const char *name;
        const char *text;
        Lines boxes;
        Lines events;
    };
    const std::string loadEvent = "21000 | Error encountered while loading form: 42000: broken";
    const Case cases[] = {
        {"tag options", "FROM system_user_cfg ", {atEnd}, {loadEvent}},
        {"formats", "FROM Report_header_formats WHERE flag1 = 2", {atEnd}, {loadEvent}},
        {"headings", "FROM Report_headers WHERE flag1 = 2", {atEnd}, {loadEvent}},
        {"settings", "FROM Report_header_settings", {atEnd}, {loadEvent}},
        {"accounts",
         "FROM account_info WHERE is_deleted",
         {ErrorBox("Error encountered while accessing accounts: 42000: broken")},
         {"21005 | Error encountered while accessing accounts: 42000: broken"}},
        {"report types",
         "FROM reports_cfg",
         {ErrorBox("Error encountered while accessing reports: 42000: broken")},
         {"21006 | Error encountered while accessing reports: 42000: broken"}},
    };
    for (const Case &c : cases)
    {
        Run("DELETE FROM System_log");
        desktop.boxes.clear();
        desktop.WillAnswerOk(c.boxes.size());
        Fail(1, c.text, "broken", "42000");
        Open(
            [&]
            {
                EXPECT_FALSE(Form().m_blnLoading) << c.name;
                EXPECT_TRUE(Form().btnCancel.Click()) << c.name;
            });
        EXPECT_EQ(c.boxes, desktop.boxes) << c.name;
        EXPECT_EQ(c.events, Events()) << c.name;
        EXPECT_TRUE(host::LoadedForms().empty()) << c.name;
        database.ClearFaults();
        Connect();
    }
}

TEST_F(Startup, WithoutAccountsReadKeepsAllAccounts)
{
    desktop.WillAnswerOk(2);
    Fail(2, "FROM account_info WHERE is_deleted", "broken", "42000");
    Open(
        [&]
        {
            EXPECT_EQ((Lines{"*<All New>"}), Texts(Form().cmbAccList));
            EXPECT_FALSE(Form().lvwReportType.Enabled());
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
