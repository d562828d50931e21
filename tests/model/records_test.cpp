// The records and their collections without a database: defaults, filling, positional look-up, and the walks over the
// settings of one heading or one format compared with walking all of them.
#include "host/modGlobalVariables.h"
#include "model/clsPartition.h"
#include "model/colFormats.h"
#include "model/colHeadings.h"
#include "model/colPartitions.h"
#include "model/colSettings.h"
#include "runtime/error_trap.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace
{

using runtime::MakeRef;
using runtime::Ref;
using runtime::Value;

TEST(Records, StartEmpty)
{
    const model::clsFormats format;
    EXPECT_EQ(format.FormatID, 0);
    EXPECT_EQ(format.FormatName, "");
    EXPECT_FALSE(format.InsertBefore || format.InsertAfter || format.InsertColon || format.Bold || format.Underline ||
                 format.Indent || format.NewFormat || format.SystemFormat || format.HasChanged || format.RemoveFormat);
    const model::clsHeadings heading;
    EXPECT_EQ(heading.HeadID, 0);
    EXPECT_FALSE(heading.NewHeading || heading.SystemHeading || heading.HasChanged || heading.RemoveHeader);
    const model::clsSettings setting;
    EXPECT_EQ(setting.SettingID(), 0);
    EXPECT_EQ(setting.FormatID, 0);
    EXPECT_EQ(setting.HospitalID, 0);
    EXPECT_EQ(setting.PartitionID, 0);
    EXPECT_FALSE(setting.NewSetting || setting.HasChanged || setting.RemoveSetting);
}

TEST(Records, FillLeavesTheRemoveFlagAsItIs)
{
    model::clsFormats format;
    format.RemoveFormat = true;
    format.FillFields(12, "Bold", true, false, true, true, false, true, true, true, true);
    EXPECT_EQ(format.FormatID, 12);
    EXPECT_EQ(format.FormatName, "Bold");
    EXPECT_TRUE(format.InsertBefore && format.InsertColon && format.Bold && format.Indent && format.SystemFormat &&
                format.NewFormat && format.HasChanged && format.RemoveFormat);
    EXPECT_FALSE(format.InsertAfter || format.Underline);
    format.FillFields(13, "", false, true, false, false, true, false, false, false, false);
    EXPECT_TRUE(format.InsertAfter && format.Underline && format.RemoveFormat);
    EXPECT_FALSE(format.InsertBefore || format.InsertColon || format.Bold || format.Indent || format.SystemFormat ||
                 format.NewFormat || format.HasChanged);

    model::clsHeadings heading;
    heading.RemoveHeader = true;
    heading.FillHeadings(7, "FINDINGS", true, false, true);
    EXPECT_EQ(heading.HeadID, 7);
    EXPECT_EQ(heading.HeadingName, "FINDINGS");
    EXPECT_TRUE(heading.NewHeading && heading.HasChanged && heading.RemoveHeader);
    EXPECT_FALSE(heading.SystemHeading);

    model::clsSettings setting;
    setting.RemoveSetting = true;
    setting.FillSettings(1, -1, 3, 4, 70000, false, true);
    EXPECT_EQ(setting.SettingID(), 1);
    EXPECT_EQ(setting.HospitalID, -1);
    EXPECT_EQ(setting.ReportType, 3);
    EXPECT_EQ(setting.FormatID, 4);
    EXPECT_EQ(setting.PartitionID, 70000);
    EXPECT_TRUE(setting.HasChanged && setting.RemoveSetting);
    EXPECT_FALSE(setting.NewSetting);
}

TEST(Records, SettingAValueSetsNoFlag)
{
    model::clsFormats format;
    format.Bold = true;
    EXPECT_FALSE(format.HasChanged);
    model::clsHeadings heading;
    heading.HeadingName = "x";
    EXPECT_FALSE(heading.HasChanged);
}

TEST(Records, ItemIsPositionalAndForgiving)
{
    model::colFormats formats;
    for (int i = 1; i <= 12; ++i)
    {
        auto format = MakeRef<model::clsFormats>();
        format->FormatID = static_cast<std::int16_t>(100 - i);
        formats.ColFormatInfo->Add(format, std::to_string(format->FormatID));
    }
    EXPECT_EQ(formats.Item(Value(std::string("12")))->FormatID, 88) << "the twelfth, whatever its id";
    EXPECT_EQ(formats.Item(Value(std::int64_t{1}))->FormatID, 99);
    EXPECT_EQ(formats.Item(Value(1.5))->FormatID, 98);
    EXPECT_EQ(formats.Item(Value(std::int64_t{13})), nullptr);
    EXPECT_EQ(formats.Item(Value(std::int64_t{0})), nullptr);
    EXPECT_EQ(formats.Item(Value(std::int64_t{100000})), nullptr);
    EXPECT_EQ(formats.Item(Value(std::string("none"))), nullptr);
    EXPECT_EQ(formats.Item(Value(runtime::Null())), nullptr);
    EXPECT_EQ(formats.Item(Value(true)), nullptr) << "-1";

    model::colPartitions partitions;
    for (const int id : {30, 20, 3})
    {
        auto partition = MakeRef<model::clsPartition>();
        partition->SetPartitionID(id);
        partitions.m_colPartitions->Add(partition, std::to_string(id));
    }
    EXPECT_EQ(partitions.Item(Value(std::string("3")))->m_lngPartitionID, 3) << "the third";
    EXPECT_EQ(partitions.Item(Value(std::string("2")))->m_lngPartitionID, 20);
    EXPECT_EQ(partitions.Item(Value(std::string("x"))), nullptr);

    model::colHeadings headings;
    EXPECT_EQ(headings.Item(Value(std::int64_t{1})), nullptr);
    model::colSettings settings;
    EXPECT_EQ(settings.Item(Value(std::int64_t{1})), nullptr);
}

TEST(Records, APartitionStartsWithEmptyCollectionsAndTheSitesDefaults)
{
    host::gIniTagKnownHeadings = true;
    host::gIniTagMixedCaseHeadings = false;
    model::clsPartition partition;
    host::gIniTagKnownHeadings = false;
    EXPECT_TRUE(partition.m_blnTagKnownHeadings);
    EXPECT_FALSE(partition.m_blnAllowMixedCaseHeadings);
    EXPECT_FALSE(partition.m_blnParent || partition.m_blnKnownFound || partition.m_blnMixFound);
    EXPECT_EQ(partition.m_objcolFormats->m_lngPartitionID, 0);
    EXPECT_EQ(partition.m_objcolHeadings->m_lngPartitionID, 0);
    EXPECT_EQ(partition.m_objcolFormats->ColFormatInfo->Count(), 0u);
    partition.SetPartitionID(42);
    EXPECT_EQ(partition.m_lngPartitionID, 42);
    EXPECT_EQ(partition.m_objcolFormats->m_lngPartitionID, 42);
    EXPECT_EQ(partition.m_objcolHeadings->m_lngPartitionID, 42);
}

TEST(Records, AncestorsStandBetweenSlashes)
{
    EXPECT_TRUE(model::IsInLineage(1, "/1/2/"));
    EXPECT_TRUE(model::IsInLineage(2, "/1/2/"));
    EXPECT_FALSE(model::IsInLineage(12, "/1/2/"));
    EXPECT_FALSE(model::IsInLineage(1, "/11/"));
    EXPECT_FALSE(model::IsInLineage(1, ""));
    EXPECT_TRUE(model::IsInLineage(-1, "/-1/"));
}

TEST(Settings, AddingNothingIsAnError)
{
    model::colSettings settings;
    runtime::ErrorTrap trap;
    trap.Try([&] { settings.AddSettingtoCollection(nullptr); });
    EXPECT_EQ(trap.Number(), 91);
    const auto setting = MakeRef<model::clsSettings>();
    settings.AddSettingtoCollection(setting);
    EXPECT_EQ(settings.ColSettingInfo->Item(std::int64_t{1}), setting);
}

using Found = std::vector<std::pair<std::int64_t, const model::clsSettings *>>;

// What walking the whole collection finds.
template <class Matches>
Found Walk(const model::colSettings &settings, Matches matches)
{
    Found found;
    for (std::size_t i = 1; i <= settings.ColSettingInfo->Count(); ++i)
    {
        const auto position = static_cast<std::int64_t>(i);
        const model::clsSettings &setting = *settings.ColSettingInfo->Item(position);
        if (matches(setting))
            found.emplace_back(position, &setting);
    }
    return found;
}

void ExpectWalksAgree(const model::colSettings &settings)
{
    for (std::int16_t id = -1; id <= 8; ++id)
    {
        Found byHeading;
        settings.ForHeading(id,
                            [&](std::int64_t position, model::clsSettings &setting)
                            {
                                byHeading.emplace_back(position, &setting);
                                return true;
                            });
        EXPECT_EQ(byHeading, Walk(settings, [&](const auto &s) { return s.SettingID() == id; }));
    }
}

TEST(Settings, TheWalksFindWhatAWholeWalkFindsWhateverHappens)
{
    std::mt19937 random(20031121);
    const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto id = [&] { return static_cast<std::int16_t>(upTo(8)); };
    for (int round = 0; round < 30; ++round)
    {
        model::colSettings settings;
        for (int step = 0; step < 60; ++step)
        {
            auto &all = *settings.ColSettingInfo;
            const auto position =
                static_cast<std::int64_t>(all.Count() == 0 ? 0 : upTo(static_cast<int>(all.Count())) + 1);
            const int act = upTo(10);
            if (act < 5 || position == 0)
            {
                auto setting = MakeRef<model::clsSettings>();
                setting->FillSettings(id(), 1, 0, id(), 0, false, false);
                settings.AddSettingtoCollection(setting);
            }
            else if (act == 5)
                all.Item(position)->SetSettingID(id());
            else if (act <= 7)
                all.Remove(position);
            else if (act == 8)
            {
                auto setting = MakeRef<model::clsSettings>();
                setting->FillSettings(id(), 1, 0, id(), 0, false, false);
                all.AddBefore(setting, "", position);
            }
            else if (upTo(4) == 0)
            {
                // A host assigns another collection.
                settings.ColSettingInfo = MakeRef<runtime::Collection<model::clsSettings>>();
            }
            if (upTo(3) == 0)
                ExpectWalksAgree(settings);
        }
        ExpectWalksAgree(settings);
    }
}

TEST(Settings, AWalkDoesNotVisitWhatItAppends)
{
    model::colSettings settings;
    for (int i = 0; i < 3; ++i)
    {
        auto setting = MakeRef<model::clsSettings>();
        setting->SetSettingID(5);
        settings.AddSettingtoCollection(setting);
    }
    int visited = 0;
    settings.ForHeading(5,
                        [&](std::int64_t, model::clsSettings &)
                        {
                            ++visited;
                            auto copy = MakeRef<model::clsSettings>();
                            copy->SetSettingID(5);
                            settings.AddSettingtoCollection(copy);
                            settings.ForHeading(5, [](std::int64_t, model::clsSettings &) { return true; });
                            return true;
                        });
    EXPECT_EQ(visited, 3);
    EXPECT_EQ(settings.ColSettingInfo->Count(), 6u);
}

TEST(Settings, AWalkCanBeStopped)
{
    model::colSettings settings;
    for (int i = 0; i < 3; ++i)
        settings.AddSettingtoCollection(MakeRef<model::clsSettings>());
    int visited = 0;
    settings.ForHeading(0, [&](std::int64_t, model::clsSettings &) { return ++visited < 2; });
    EXPECT_EQ(visited, 2);
}

TEST(Settings, ARecordTakesNoMoreThanTwentyBytes)
{
    EXPECT_LE(sizeof(model::clsSettings), 20u);
}

} // namespace
