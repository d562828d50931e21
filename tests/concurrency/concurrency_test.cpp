// Two and four editors at once on one database, each a process of its own: what one saves the others do not lose.
#include "one_editor.h"

#include "support/database_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <thread>

namespace concurrency
{

namespace
{

using support::Lines;

constexpr const char *kTold = "--told="; // a file; the orders stand behind it
constexpr int kFirstFormat = 7;
constexpr int kFirstHeading = 9;

std::string Text(int number)
{
    return std::to_string(number);
}

// How often the editors of a test save in all; KV_SAVES asks for more, 1500 at most.
int Saves()
{
    constexpr int kSaves = 100;
    const char *const asked = std::getenv("KV_SAVES");
    return asked ? std::atoi(asked) : kSaves;
}

// This program runs itself once for each editor; a test of that process does as it is ordered, and writes the file.
int RunEditor(const std::string &told, const Orders &orders)
{
    const std::string command =
        "\"" + testing::internal::GetArgvs().front() + "\" --gtest_filter=OneEditor.WorksAsOrdered \"" + kTold + told +
        "\" " + Text(orders.editor) + " " + Text(orders.rounds) + " " + (orders.work == Work::Add ? "add" : "edit") +
        " \"" + orders.database + "\" >\"" + told + ".output\" 2>&1";
    // Windows' shell takes the outermost quotes away.
#ifdef _WIN32
    return std::system(("\"" + command + "\"").c_str());
#else
    return std::system(command.c_str());
#endif
}

class Concurrency : public testing::Test
{
protected:
    // A partition, an account and records for each editor, which nobody else works on.
    void MakeSite(int editors, int records)
    {
        std::string sql = "INSERT INTO account_info VALUES (-1, 'All', '0', 0)\n";
        for (int editor = 1; editor <= editors; ++editor)
        {
            const std::string partition = Text(Partition(editor));
            sql += "INSERT INTO System_partitions VALUES (" + partition + ", 'Site " + partition + "', '/', NULL)\n";
            sql += "INSERT INTO account_info VALUES (" + Text(Account(editor)) + ", 'Desk', '0', " + partition + ")\n";
            for (int i = 0; i < records; ++i)
            {
                const std::string id = Text(Record(editor, i));
                sql += "INSERT INTO Report_header_formats VALUES (" + id + ", 'old " + id + "', 0, 0, 0, 0, 0, 0, 0, " +
                       partition + ")\n";
                sql += "INSERT INTO Report_headers VALUES (" + id + ", 'old " + id + "', " + partition + ")\n";
            }
        }
        sql += "INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRFormatID', '" + Text(kFirstFormat) + "', NULL)\n";
        sql += "INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRHeaderID', '" + Text(kFirstHeading) + "', NULL)\n";
        database.Run("BEGIN TRANSACTION\n" + sql + "COMMIT TRANSACTION");
    }

    // All at once; what each editor tells, in the order of their numbers.
    std::vector<std::vector<Round>> RunAll(int editors, int rounds, Work work)
    {
        std::vector<std::thread> waiting;
        std::vector<std::string> files;
        for (int editor = 1; editor <= editors; ++editor)
        {
            files.push_back(database.Folder().Path("editor" + Text(editor)));
            waiting.emplace_back([file = files.back(), orders = Orders{database.DatabaseName(), editor, rounds, work}]
                                 { EXPECT_EQ(0, RunEditor(file, orders)) << support::ReadFile(file + ".output"); });
        }
        for (std::thread &thread : waiting)
            thread.join();
        std::vector<std::vector<Round>> told;
        for (const std::string &file : files)
            told.push_back(ReadRounds(file));
        return told;
    }

    std::vector<std::string> Query(const std::string &sql) { return database.Query(sql); }

    support::TestDatabase database;
};

// A row for each editor and round, in their order.
Lines Rows(int editors, int rounds, const std::function<std::string(int editor, int round)> &row)
{
    Lines rows;
    for (int editor = 1; editor <= editors; ++editor)
        for (int round = 0; round < rounds; ++round)
            rows.push_back(row(editor, round));
    return rows;
}

// What is in the tables when every change of every editor is there.
std::string EditedFormat(int editor, int round)
{
    std::string row = Text(Record(editor, round)) + " | " + Named("format", editor, round);
    for (int box = 0; box < 6; ++box)
        row += box == round % 6 ? " | 1" : " | 0";
    return row + " | " + Text(Partition(editor));
}

std::string EditedHeading(int editor, int round)
{
    return Text(Record(editor, round)) + " | " + Named("heading", editor, round) + " | " + Text(Partition(editor));
}

std::string ChosenSetting(int editor, int round)
{
    const std::string id = Text(Record(editor, round));
    return id + " | " + Text(Account(editor)) + " | 0 | " + id + " | 0";
}

Lines StoredOptions(int editors, int rounds)
{
    Lines rows;
    for (int editor = 1; editor <= editors; ++editor)
    {
        const std::string partition = Text(Partition(editor));
        rows.push_back("TagKnownHeadings | " + std::string(rounds % 2 == 1 ? "True" : "False") + " | " + partition);
        rows.push_back("TagMixedCaseHeadings | False | " + partition);
    }
    return rows;
}

class ConcurrentEditing : public Concurrency, public testing::WithParamInterface<int>
{
};

// Their changes touch different rows: nothing is lost and nobody is told of an error.
TEST_P(ConcurrentEditing, LosesNothing)
{
    const int editors = GetParam();
    const int rounds = Saves() / editors;
    MakeSite(editors, rounds);
    for (const std::vector<Round> &told : RunAll(editors, rounds, Work::Edit))
    {
        EXPECT_EQ(static_cast<std::size_t>(rounds), told.size());
        for (const Round &round : told)
            EXPECT_EQ(Lines{}, round.boxes);
    }
    EXPECT_EQ(Rows(editors, rounds, &EditedFormat),
              Query("SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, "
                    "insert_colon, bold, underline, indent, flag1 FROM Report_header_formats ORDER BY format_id"));
    EXPECT_EQ(Rows(editors, rounds, &EditedHeading),
              Query("SELECT heading_id, heading, flag1 FROM Report_headers ORDER BY heading_id"));
    EXPECT_EQ(Rows(editors, rounds, &ChosenSetting),
              Query("SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, "
                    "flag1 FROM Report_header_settings ORDER BY heading_id"));
    EXPECT_EQ(StoredOptions(editors, rounds),
              Query("SELECT key_name, key_value, partition_id FROM System_user_cfg WHERE partition_id IS NOT NULL "
                    "ORDER BY partition_id, key_name"));
    EXPECT_EQ(Lines{}, Query("SELECT error_code, msg1 FROM System_log"));
}

INSTANTIATE_TEST_SUITE_P(Editors, ConcurrentEditing, testing::Values(2, 4),
                         [](const auto &editors) { return std::to_string(editors.param); });

// Which editors and rounds were given each number.
using Handed = std::map<int, std::vector<std::pair<int, int>>>;

Handed HandedOut(const std::vector<std::vector<Round>> &told, int Round::*number)
{
    Handed handed;
    for (std::size_t editor = 0; editor < told.size(); ++editor)
        for (std::size_t round = 0; round < told[editor].size(); ++round)
            handed[told[editor][round].*number].push_back({static_cast<int>(editor) + 1, static_cast<int>(round)});
    return handed;
}

// The counter is raised by one statement and read by another: it counts every addition, and a number can be handed out
// twice, but only to two editors, and only when another one is passed over.
void ExpectCounted(const Handed &handed, int first, int additions, const Lines &counter)
{
    char last[11];
    std::snprintf(last, sizeof last, "%10d", first + additions);
    EXPECT_EQ(Lines{last}, counter);
    std::map<int, int> lastOf;
    int count = 0;
    for (const auto &[number, holders] : handed)
    {
        EXPECT_GT(number, first);
        EXPECT_LE(number, first + additions);
        for (const auto &[editor, round] : holders)
        {
            ++count;
            EXPECT_EQ(round, lastOf[editor]++) << "editor " << editor << " was given " << number << " out of turn";
        }
    }
    EXPECT_EQ(additions, count);
}

// Each number is stored once, under the name of one of those who were given it.
void ExpectStored(const Handed &handed, const std::string &what, const Lines &rows)
{
    ASSERT_EQ(handed.size(), rows.size());
    auto row = rows.begin();
    for (const auto &[number, holders] : handed)
    {
        const bool known = std::ranges::any_of(holders,
                                               [&](const auto &holder)
                                               {
                                                   const auto [editor, round] = holder;
                                                   return *row == Text(number) + " | " + Named(what, editor, round) +
                                                                      " | " + Text(Partition(editor));
                                               });
        EXPECT_TRUE(known) << *row;
        ++row;
    }
}

TEST_F(Concurrency, AddsWithCountersThatCountEveryAddition)
{
    constexpr int kEditors = 4;
    const int rounds = Saves() / kEditors;
    MakeSite(kEditors, 0);
    const auto told = RunAll(kEditors, rounds, Work::Add);
    const Handed formats = HandedOut(told, &Round::format);
    const Handed headings = HandedOut(told, &Round::heading);
    const std::string counter = "SELECT key_value FROM System_user_cfg WHERE key_name = ";
    ExpectCounted(formats, kFirstFormat, kEditors * rounds, Query(counter + "'NextSRFormatID'"));
    ExpectCounted(headings, kFirstHeading, kEditors * rounds, Query(counter + "'NextSRHeaderID'"));
    ExpectStored(formats, "format",
                 Query("SELECT format_id, format_name, flag1 FROM Report_header_formats ORDER BY format_id"));
    ExpectStored(headings, "heading",
                 Query("SELECT heading_id, heading, flag1 FROM Report_headers ORDER BY heading_id"));

    // Nobody is told of an error but those whose number was taken, and they are told and logged once a save.
    std::size_t boxes = 0;
    for (int editor = 1; editor <= kEditors; ++editor)
        for (int round = 0; round < rounds; ++round)
        {
            const Round &saved = told[static_cast<std::size_t>(editor - 1)][static_cast<std::size_t>(round)];
            const bool shared = formats.at(saved.format).size() + headings.at(saved.heading).size() > 2;
            EXPECT_LE(saved.boxes.size(), shared ? 1u : 0u) << Named("round", editor, round);
            for (const std::string &box : saved.boxes)
                EXPECT_TRUE(box.starts_with("box 48 \"Error\" \"Error encountered while accessing data: 23000: "))
                    << box;
            boxes += saved.boxes.size();
        }
    const std::size_t twice = 2 * kEditors * rounds - formats.size() - headings.size();
    EXPECT_LE(boxes, twice);
    EXPECT_LE(twice, 2 * boxes) << "a save tells of two numbers at most";
    EXPECT_EQ(Lines(boxes, "21010"), Query("SELECT error_code FROM System_log"));
    RecordProperty("handed-out-twice", static_cast<int>(twice));
    std::printf("%zu of %d numbers were handed out twice\n", twice, 2 * kEditors * rounds);
}

// What each process runs; by itself it is one editor that works alone.
TEST(OneEditor, WorksAsOrdered)
{
    const std::vector<std::string> given = testing::internal::GetArgvs();
    for (std::size_t i = 0; i + 4 < given.size(); ++i)
        if (given[i].starts_with(kTold))
            return WriteRounds(given[i].substr(std::string(kTold).size()),
                               WorkAsOrdered({given[i + 4], std::stoi(given[i + 1]), std::stoi(given[i + 2]),
                                              given[i + 3] == "add" ? Work::Add : Work::Edit}));
    support::TestDatabase database;
    database.Run("INSERT INTO System_partitions VALUES (11, 'Site', '/', NULL)");
    const std::vector<Round> told = WorkAsOrdered({database.DatabaseName(), 1, 2, Work::Add});
    ASSERT_EQ(2u, told.size());
    EXPECT_EQ(1, told[0].format);
    EXPECT_EQ(2, told[1].format);
    EXPECT_EQ(2, told[1].heading);
    EXPECT_EQ(Lines{}, told[1].boxes);
    EXPECT_EQ((Lines{"1 | format 0 of editor 1's", "2 | format 1 of editor 1's"}),
              database.Query("SELECT format_id, format_name FROM Report_header_formats ORDER BY format_id"));
}

} // namespace

} // namespace concurrency
