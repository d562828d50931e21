// One editor of several that work on the same database at once: see one_editor.h.
#include "one_editor.h"

#include "editor/fake_view.h"
#include "editor/frmHeadings.h"
#include "host/clsConfig.h"
#include "odbc/rdoConnection.h"
#include "odbc/rdoEnvironment.h"
#include "support/fake_desktop.h"

#include <gtest/gtest.h>

#include <fstream>

namespace concurrency
{

namespace
{

using editor::frmHeadings;
using editor::controls::EditEnd;

void Rename(editor::controls::ListView &list, const std::string &name)
{
    EXPECT_TRUE(list.BeginLabelEdit()) << name;
    list.EndLabelEdit(name, EditEnd::Enter);
}

std::string Key(int editor, int round)
{
    return "Key" + std::to_string(Record(editor, round)) + "-" + std::to_string(Partition(editor));
}

void Edit(frmHeadings &form, int editor, int round)
{
    EXPECT_TRUE(form.chkTagKnown.Toggle());
    EXPECT_TRUE(form.SSTab1.ClickTab(1));
    EXPECT_TRUE(form.lvwFormats.Select(form.lvwFormats.Position(Key(editor, round))));
    EXPECT_TRUE(form.SSCheck1[static_cast<std::size_t>(round % 6)]->Toggle());
    const std::string format = Named("format", editor, round);
    Rename(form.lvwFormats, format);
    EXPECT_TRUE(form.SSTab1.ClickTab(2));
    EXPECT_TRUE(form.lvwHeadings.Select(form.lvwHeadings.Position(Key(editor, round))));
    Rename(form.lvwHeadings, Named("heading", editor, round));
    int entry = 0;
    while (entry < form.cmbFormats.ListCount() && !form.cmbFormats.List(entry).starts_with(format + " \\ "))
        ++entry;
    EXPECT_TRUE(form.cmbFormats.Choose(entry));
}

void Add(frmHeadings &form, int editor, int round, Round &told)
{
    EXPECT_TRUE(form.SSTab1.ClickTab(1));
    EXPECT_TRUE(form.btnAdd.Click());
    told.format = editor::ParseListKey(form.lvwFormats.SelectedItem().key).id;
    Rename(form.lvwFormats, Named("format", editor, round));
    EXPECT_TRUE(form.SSTab1.ClickTab(2));
    EXPECT_TRUE(form.btnAddHead.Click());
    told.heading = editor::ParseListKey(form.lvwHeadings.SelectedItem().key).id;
    Rename(form.lvwHeadings, Named("heading", editor, round));
}

} // namespace

std::string Named(const std::string &what, int editor, int round)
{
    return what + " " + std::to_string(round) + " of editor " + std::to_string(editor) + "'s";
}

std::vector<Round> WorkAsOrdered(const Orders &orders)
{
    const auto host = runtime::MakeRef<host::clsConfig>();
    host->SetPartitionID(Partition(orders.editor));
    host->SetSqlServerName("embedded");
    host->SetSqlDbName(orders.database);
    host->SetSqlUserName("sa");
    editor::RegisterForms();
    // Keeps the driver loaded from one save to the next opening.
    odbc::rdoEnvironment environment;
    const auto beside = environment.OpenConnection(
        "", odbc::kNeverPrompt, false,
        "UID=sa;PWD=;Server=embedded;Driver={SQL Server};APP=tests;Database=" + orders.database + ";");
    std::vector<Round> rounds;
    for (int round = 0; round < orders.rounds; ++round)
    {
        support::FakeDesktop desktop;
        Round &told = rounds.emplace_back();
        FakeView::Calls calls;
        editor::SetFormViewFactory(
            [&](editor::StagedForm &staged)
            {
                const auto work = [&]
                {
                    auto &form = dynamic_cast<frmHeadings &>(staged);
                    if (orders.work == Work::Edit)
                        Edit(form, orders.editor, round);
                    else
                        Add(form, orders.editor, round, told);
                    // Two editors that add at the same moment may be given the same number; the second save tells.
                    desktop.WillAnswerOk(orders.work == Work::Add ? 1 : 0);
                    EXPECT_TRUE(form.btnSave.Click());
                };
                return std::make_unique<FakeView>(calls, work);
            });
        EXPECT_EQ(0, host->ShowForm());
        told.boxes = desktop.boxes;
        if (desktop.AnswersLeft() > 0)
            desktop.ShowMessage("not needed", 0, "");
    }
    editor::SetFormViewFactory({});
    return rounds;
}

void WriteRounds(const std::string &path, const std::vector<Round> &rounds)
{
    std::ofstream file(path, std::ios::binary);
    for (const Round &round : rounds)
    {
        file << "round " << round.format << " " << round.heading << "\n";
        for (const std::string &box : round.boxes)
            file << box << "\n";
    }
}

std::vector<Round> ReadRounds(const std::string &path)
{
    std::vector<Round> rounds;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);)
    {
        Round round;
        if (std::sscanf(line.c_str(), "round %d %d", &round.format, &round.heading) == 2)
            rounds.push_back(round);
        else if (!rounds.empty())
            rounds.back().boxes.push_back(line);
    }
    return rounds;
}

} // namespace concurrency
