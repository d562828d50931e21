// Loading formats, headings and settings: the statements whole, the order, and what NULLs and ids out of range do.
#include "host/clsConfig.h"
#include "host/modGlobalVariables.h"
#include "model/clsPartition.h"
#include "model/colFormats.h"
#include "model/colHeadings.h"
#include "model/colPartitions.h"
#include "model/colSettings.h"
#include "runtime/error_trap.h"
#include "support/database_fixture.h"
#include "support/error_number.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using runtime::MakeRef;
using runtime::Ref;
using support::Lines;
using support::NumberOf;

std::string Flag(bool set)
{
    return set ? "1" : "0";
}

std::string Describe(const model::clsFormats &f)
{
    return std::to_string(f.FormatID) + " " + f.FormatName + " " + Flag(f.InsertBefore) + Flag(f.InsertAfter) +
           Flag(f.InsertColon) + Flag(f.Bold) + Flag(f.Underline) + Flag(f.Indent) + " " + Flag(f.SystemFormat) +
           Flag(f.NewFormat) + Flag(f.HasChanged) + Flag(f.RemoveFormat);
}

std::string Describe(const model::clsHeadings &h)
{
    return std::to_string(h.HeadID) + " " + h.HeadingName + " " + Flag(h.SystemHeading) + Flag(h.NewHeading) +
           Flag(h.HasChanged) + Flag(h.RemoveHeader);
}

std::string Describe(const model::clsSettings &s)
{
    return std::to_string(s.SettingID()) + " " + std::to_string(s.HospitalID) + " " + std::to_string(s.ReportType) +
           " " + std::to_string(s.FormatID) + " " + std::to_string(s.PartitionID) + " " + Flag(s.NewSetting) +
           Flag(s.HasChanged) + Flag(s.RemoveSetting);
}

template <class T>
Lines DescribeAll(const runtime::Collection<T> &collection)
{
    Lines lines;
    for (std::size_t i = 1; i <= collection.Count(); ++i)
        lines.push_back(Describe(*collection.Item(static_cast<std::int64_t>(i))));
    return lines;
}

class Loading : public support::DatabaseTest
{
protected:
    ~Loading() override { host::gConfig = nullptr; }

    // The tables as a site has them refuse NULL and large ids; these take anything.
    void LooseTables()
    {
        Run("DROP TABLE Report_header_formats\n"
            "DROP TABLE Report_headers\n"
            "DROP TABLE Report_header_settings\n"
            "CREATE TABLE Report_header_formats (format_id int NULL, format_name varchar(60) NULL,"
            " insert_empty_line_before int NULL, insert_carriage_return_after int NULL, insert_colon int NULL,"
            " bold int NULL, underline int NULL, indent int NULL, system_format int NULL, flag1 int NULL)\n"
            "CREATE TABLE Report_headers (heading_id int NULL, heading varchar(60) NULL, flag1 int NULL)\n"
            "CREATE TABLE Report_header_settings (heading_id int NULL, hosp_acct_id int NULL,"
            " report_type_nbr int NULL, format_id int NULL, flag1 bigint NULL)\n");
    }

    void AddFormat(const std::string &id, const std::string &name, const std::string &flags, const std::string &system,
                   const std::string &partition)
    {
        Run("INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before,"
            " insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (" +
            id + ", " + name + ", " + flags + ", " + system + ", " + partition + ")");
    }
    void AddHeading(const std::string &id, const std::string &name, const std::string &partition)
    {
        Run("INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (" + id + ", " + name + ", " + partition +
            ")");
    }
    void AddSetting(const std::string &values)
    {
        Run("INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES "
            "(" +
            values + ")");
    }
};

constexpr char kSelectFormats[] = "SELECT format_id, format_name, insert_empty_line_before, "
                                  "insert_carriage_return_after, insert_colon, bold, underline, indent, "
                                  "system_format ";

TEST_F(Loading, FormatsOfOnePartition)
{
    AddFormat("12", "'plain'", "0, 0, 0, 0, 0, 0", "0", "3");
    AddFormat("7", "'Bold'", "1, 0, 1, 1, 0, 1", "0", "3");
    AddFormat("1", "'System'", "0, 1, 0, 0, 1, 0", "1", "3");
    AddFormat("2", "'Other'", "0, 0, 0, 0, 0, 0", "0", "4");
    model::colFormats formats;
    formats.m_lngPartitionID = 3;
    formats.GetFormatInfo();
    EXPECT_EQ(DescribeAll(*formats.ColFormatInfo),
              (Lines{"1 System 010010 1000", "7 Bold 101101 0000", "12 plain 000000 0000"}));
    EXPECT_EQ(formats.ColFormatInfo->Item("12")->FormatName, "plain");
    EXPECT_EQ(Log(), Lines{std::string(kSelectFormats) + "FROM Report_header_formats WHERE flag1 = 3\r\n"
                                                         "ORDER BY system_format DESC, format_name"});
    EXPECT_EQ(host::gResultset, nullptr);
}

TEST_F(Loading, FormatsOfAllPartitions)
{
    AddFormat("2", "'b'", "0, 0, 0, 0, 0, 0", "0", "4");
    AddFormat("1", "'a'", "0, 0, 0, 0, 0, 0", "0", "3");
    model::colFormats formats;
    formats.m_lngPartitionID = -1;
    formats.GetFormatInfo();
    EXPECT_EQ(DescribeAll(*formats.ColFormatInfo), (Lines{"1 a 000000 0000", "2 b 000000 0000"}));
    EXPECT_EQ(Log(), Lines{std::string(kSelectFormats) +
                           "FROM Report_header_formats ORDER BY system_format DESC, format_name"});
}

TEST_F(Loading, APartitionWithoutRecordsIsEmpty)
{
    model::clsPartition partition;
    partition.SetPartitionID(9);
    partition.m_objcolFormats->GetFormatInfo();
    partition.m_objcolHeadings->GetHeadingInfo();
    EXPECT_EQ(partition.m_objcolFormats->ColFormatInfo->Count(), 0u);
    EXPECT_EQ(partition.m_objcolHeadings->ColHeadingInfo->Count(), 0u);
}

TEST_F(Loading, AFlagOfTwoMinusOneOrNullIsFalse)
{
    LooseTables();
    AddFormat("1", "'a'", "2, -1, NULL, 1, 0, 1", "NULL", "3");
    model::colFormats formats;
    formats.m_lngPartitionID = 3;
    formats.GetFormatInfo();
    EXPECT_EQ(DescribeAll(*formats.ColFormatInfo), Lines{"1 a 000101 0000"});
}

struct BrokenRow
{
    const char *name;
    const char *id;
    const char *text;
    std::int32_t number;
};

void PrintTo(const BrokenRow &row, std::ostream *out)
{
    *out << row.name;
}

class LoadingBrokenRows : public Loading, public testing::WithParamInterface<BrokenRow>
{
};

TEST_P(LoadingBrokenRows, EndTheFormatsAndKeepTheRowsReadSoFar)
{
    LooseTables();
    AddFormat("1", "'a'", "0, 0, 0, 0, 0, 0", "1", "3");
    AddFormat(GetParam().id, GetParam().text, "0, 0, 0, 0, 0, 0", "0", "3");
    AddFormat("5", "'z'", "0, 0, 0, 0, 0, 0", "-1", "3");
    model::colFormats formats;
    formats.m_lngPartitionID = 3;
    EXPECT_EQ(NumberOf([&] { formats.GetFormatInfo(); }), GetParam().number);
    EXPECT_EQ(DescribeAll(*formats.ColFormatInfo), Lines{"1 a 000000 1000"});
    EXPECT_NE(host::gResultset, nullptr) << "the result set is left open";
}

TEST_P(LoadingBrokenRows, EndTheHeadingsAndKeepTheRowsReadSoFar)
{
    LooseTables();
    // NULL sorts first, so that the good row stands in front of a text alone.
    const bool nullText = std::string(GetParam().text) == "NULL";
    AddHeading("1", "'a'", "3");
    AddHeading(GetParam().id, GetParam().text, "3");
    model::colHeadings headings;
    headings.m_lngPartitionID = 3;
    EXPECT_EQ(NumberOf([&] { headings.GetHeadingInfo(); }), GetParam().number);
    EXPECT_EQ(DescribeAll(*headings.ColHeadingInfo), nullText ? Lines{} : Lines{"1 a 0000"});
}

INSTANTIATE_TEST_SUITE_P(Rows, LoadingBrokenRows,
                         testing::Values(BrokenRow{"nullId", "NULL", "'b'", 94}, BrokenRow{"nullText", "2", "NULL", 94},
                                         BrokenRow{"idTooLarge", "32768", "'b'", 6},
                                         BrokenRow{"idTooSmall", "-32769", "'b'", 6},
                                         BrokenRow{"duplicate", "1", "'b'", 457}),
                         [](const auto &info) { return info.param.name; });

TEST_F(Loading, HeadingsInTheOrderOfTheirTexts)
{
    AddHeading("0", "'<Default>'", "5");
    AddHeading("9", "'IMPRESSION'", "5");
    AddHeading("3", "'Findings'", "5");
    AddHeading("4", "'Elsewhere'", "6");
    model::colHeadings headings;
    headings.m_lngPartitionID = 5;
    headings.GetHeadingInfo();
    EXPECT_EQ(DescribeAll(*headings.ColHeadingInfo),
              (Lines{"0 <Default> 1000", "3 Findings 0000", "9 IMPRESSION 0000"}));
    EXPECT_EQ(headings.ColHeadingInfo->Item("9")->HeadingName, "IMPRESSION");
    EXPECT_EQ(Log(), Lines{"SELECT heading_id, heading FROM Report_headers WHERE flag1 = 5ORDER BY heading ASC"});
}

TEST_F(Loading, HeadingsOfPartitionMinusOneAreThoseOfMinusOneAlone)
{
    LooseTables();
    AddHeading("1", "'a'", "5");
    AddHeading("2", "'b'", "-1");
    model::clsPartition partition;
    partition.SetPartitionID(-1);
    EXPECT_EQ(partition.m_objcolFormats->m_lngPartitionID, -1);
    partition.m_objcolHeadings->GetHeadingInfo();
    EXPECT_EQ(DescribeAll(*partition.m_objcolHeadings->ColHeadingInfo), Lines{"2 b 0000"});
}

TEST_F(Loading, ASecondLoadFailsOnTheFirstKey)
{
    AddFormat("1", "'a'", "0, 0, 0, 0, 0, 0", "0", "3");
    AddHeading("1", "'a'", "3");
    model::clsPartition partition;
    partition.SetPartitionID(3);
    partition.m_objcolFormats->GetFormatInfo();
    partition.m_objcolHeadings->GetHeadingInfo();
    EXPECT_EQ(NumberOf([&] { partition.m_objcolFormats->GetFormatInfo(); }), 457);
    EXPECT_EQ(NumberOf([&] { partition.m_objcolHeadings->GetHeadingInfo(); }), 457);
    EXPECT_EQ(partition.m_objcolFormats->ColFormatInfo->Count(), 1u);
}

constexpr char kSelectSettings[] =
    "SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 FROM Report_header_settings";

// Partition 1 with 2 below it and 3, deleted, below that; accounts in each, one deleted, one of id 0.
class LoadingSettings : public Loading
{
protected:
    void SetUp() override
    {
        Loading::SetUp();
        Run("INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES"
            " (1, 'One', '/', NULL), (2, 'Two', '/1/', NULL), (3, 'Three', '/1/2/', '2001-02-03T00:00:00'),"
            " (4, 'Four', '/', NULL), (11, 'Eleven', '/4/', NULL)");
        AddAccount("-1", "4", "0");
        AddAccount("0", "1", "0");
        AddAccount("10", "1", "0");
        AddAccount("20", "2", "0");
        AddAccount("21", "2", "1");
        AddAccount("30", "3", "0");
        AddAccount("40", "4", "0");
        for (const char *account : {"-1", "0", "10", "20", "21", "30", "40"})
            AddSetting(std::string("5, ") + account + ", 0, 1, 0");
        database.ClearLog();
    }

    void AddAccount(const std::string &id, const std::string &partition, const std::string &deleted)
    {
        Run("INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (" + id +
            ", 'Account " + id + "', " + deleted + ", " + partition + ")");
    }

    Lines LoadFor(std::int32_t partition)
    {
        m_config->SetPartitionID(partition);
        m_settings = MakeRef<model::colSettings>();
        m_settings->GetSettingInfo();
        Lines accounts;
        for (std::size_t i = 1; i <= m_settings->ColSettingInfo->Count(); ++i)
            accounts.push_back(
                std::to_string(m_settings->ColSettingInfo->Item(static_cast<std::int64_t>(i))->HospitalID));
        return accounts;
    }

    Ref<host::clsConfig> m_config = MakeConfig();
    Ref<model::colSettings> m_settings;

private:
    // A configuration object starts by calling the component disconnected.
    static Ref<host::clsConfig> MakeConfig()
    {
        const bool connected = host::gConnected;
        auto config = MakeRef<host::clsConfig>();
        host::gConnected = connected;
        return config;
    }
};

TEST_F(LoadingSettings, InTheScopeOfTheHostsPartition)
{
    EXPECT_EQ(LoadFor(1), (Lines{"-1", "10", "20"}));
    EXPECT_EQ(Log(), Lines{std::string(kSelectSettings) +
                           "\r\n WHERE hosp_acct_id IN (SELECT hosp_acct_id FROM account_info "
                           "WHERE hosp_acct_id = -1 OR (is_deleted = '0' AND (hosp_acct_id > '0' "
                           " AND partition_id IN (SELECT partition_id FROM System_partitions \r\n"
                           "   WHERE (partition_id = 1\r\n"
                           "    OR lineage LIKE '%/' + CAST(1 AS varchar(12)) + '/%')\r\n"
                           "    AND delete_date IS NULL))))ORDER BY heading_id ASC"});
}

TEST_F(LoadingSettings, ThePartitionsBelowAloneWithTheAllAccountsRow)
{
    EXPECT_EQ(LoadFor(2), (Lines{"-1", "20"}));
    EXPECT_EQ(LoadFor(3), Lines{"-1"}) << "a deleted partition";
    EXPECT_EQ(LoadFor(4), (Lines{"-1", "40"}));
}

TEST_F(LoadingSettings, WithoutAHostsPartitionTheAllAccountsRowAlone)
{
    EXPECT_EQ(LoadFor(-1), Lines{"-1"});
}

TEST_F(LoadingSettings, AllRowsWhenAskedFor)
{
    model::colSettings settings;
    settings.m_lngPartitionID = -1;
    settings.GetSettingInfo();
    EXPECT_EQ(settings.ColSettingInfo->Count(), 7u);
    EXPECT_EQ(Log(), Lines{std::string(kSelectSettings) + " ORDER BY heading_id ASC"});
}

TEST_F(LoadingSettings, InTheOrderOfTheirHeadingsAndWithoutAHeadingToo)
{
    AddSetting("2, -1, 0, 9, 70000");
    AddSetting("2, 10, 3, 8, 0");
    m_config->SetPartitionID(1);
    model::colSettings settings;
    settings.GetSettingInfo();
    const Lines all = DescribeAll(*settings.ColSettingInfo);
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[0], "2 -1 0 9 70000 000");
    EXPECT_EQ(all[1], "2 10 3 8 0 000");
    EXPECT_EQ(all[2], "5 -1 0 1 0 000") << "no heading 5 exists";
}

TEST_F(LoadingSettings, ASecondLoadAppendsEveryRowOnceMore)
{
    LoadFor(1);
    m_settings->GetSettingInfo();
    EXPECT_EQ(m_settings->ColSettingInfo->Count(), 6u);
}

class LoadingBrokenSettings : public LoadingSettings, public testing::WithParamInterface<BrokenRow>
{
};

TEST_P(LoadingBrokenSettings, EndTheLoadAndKeepTheRowsReadSoFar)
{
    LooseTables();
    AddSetting("4, -1, 0, 1, 2");
    AddSetting(GetParam().text);
    model::colSettings settings;
    settings.m_lngPartitionID = -1;
    EXPECT_EQ(NumberOf([&] { settings.GetSettingInfo(); }), GetParam().number);
    // NULL sorts in front of the good row, everything else behind it
    EXPECT_EQ(settings.ColSettingInfo->Count(), std::string_view(GetParam().name) == "nullHeading" ? 0u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Rows, LoadingBrokenSettings,
                         testing::Values(BrokenRow{"nullHeading", "", "NULL, -1, 0, 1, 2", 94},
                                         BrokenRow{"nullAccount", "", "5, NULL, 0, 1, 2", 94},
                                         BrokenRow{"nullReportType", "", "5, -1, NULL, 1, 2", 94},
                                         BrokenRow{"nullFormat", "", "5, -1, 0, NULL, 2", 94},
                                         BrokenRow{"nullPartition", "", "5, -1, 0, 1, NULL", 94},
                                         BrokenRow{"largeHeading", "", "32768, -1, 0, 1, 2", 6},
                                         BrokenRow{"smallAccount", "", "5, -32769, 0, 1, 2", 6},
                                         BrokenRow{"largeReportType", "", "5, -1, 32768, 1, 2", 6},
                                         BrokenRow{"largeFormat", "", "5, -1, 0, 32768, 2", 6},
                                         BrokenRow{"largePartition", "", "5, -1, 0, 1, 2147483648", 6}),
                         [](const auto &info) { return info.param.name; });

TEST_F(Loading, AFailingQueryIsRaised)
{
    Fail(1, "Report_headers", "refused");
    model::colHeadings headings;
    runtime::ErrorTrap trap;
    trap.Try([&] { headings.GetHeadingInfo(); });
    EXPECT_EQ(trap.Description().substr(0, 7), "HY000: ");
    EXPECT_NE(trap.Description().find("refused"), std::string::npos);
    headings.GetHeadingInfo();
    EXPECT_EQ(headings.ColHeadingInfo->Count(), 0u);
}

TEST_F(Loading, AFetchThatFailsInTheMiddleKeepsTheRowsBefore)
{
    for (int i = 1; i <= 600; ++i)
        AddHeading(std::to_string(i), "'" + std::to_string(1000 + i) + "'", "3");
    for (const int row : {1, 2, 256, 257, 600})
    {
        database.FailAtRow(row, 1, "Report_headers", "torn");
        model::colHeadings headings;
        headings.m_lngPartitionID = 3;
        runtime::ErrorTrap trap;
        trap.Try([&] { headings.GetHeadingInfo(); });
        EXPECT_NE(trap.Description().find("torn"), std::string::npos) << row;
        EXPECT_EQ(headings.ColHeadingInfo->Count(), static_cast<std::size_t>(row) - 1);
    }
}

} // namespace
