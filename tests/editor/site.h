// A site made by hand, and a window on it that no database has filled: for tests of the window's routines.
#pragma once

#include "editor/records.h"
#include "support/editor_form.h"
#include "support/fake_desktop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

class Site : public testing::Test
{
protected:
    using Lines = std::vector<std::string>;

    Site()
    {
        model::gPartitions = runtime::MakeRef<model::colPartitions>();
        model::gSettings = runtime::MakeRef<model::colSettings>();
        model::gCurrentPartition = nullptr;
        model::gFormats = nullptr;
        model::gHeadings = nullptr;
    }
    ~Site() override
    {
        model::gPartitions = nullptr;
        model::gCurrentPartition = nullptr;
        model::gFormats = nullptr;
        model::gHeadings = nullptr;
        model::gSettings = nullptr;
    }

    static model::clsPartition &Partition(std::int32_t id, const std::string &name, const std::string &lineage = "/",
                                          bool parent = false)
    {
        const auto partition = runtime::MakeRef<model::clsPartition>();
        partition->SetPartitionID(id);
        partition->m_strPartitionName = name;
        partition->m_strLineage = lineage;
        partition->m_blnParent = parent;
        model::gPartitions->m_colPartitions->Add(partition, std::to_string(id));
        return *partition;
    }
    static model::clsFormats &Format(model::clsPartition &partition, std::int16_t id, const std::string &name,
                                     bool system = false)
    {
        const auto format = runtime::MakeRef<model::clsFormats>();
        format->FillFields(id, name, false, false, false, false, false, false, system, false, false);
        partition.m_objcolFormats->ColFormatInfo->Add(format, std::to_string(id));
        return *format;
    }
    static model::clsHeadings &Heading(model::clsPartition &partition, std::int16_t id, const std::string &name)
    {
        const auto heading = runtime::MakeRef<model::clsHeadings>();
        heading->FillHeadings(id, name, false, id == 0, false);
        partition.m_objcolHeadings->ColHeadingInfo->Add(heading, std::to_string(id));
        return *heading;
    }
    static model::clsSettings &Setting(std::int16_t heading, std::int16_t account, std::int16_t reportType,
                                       std::int16_t format, std::int32_t partition)
    {
        const auto setting = runtime::MakeRef<model::clsSettings>();
        setting->FillSettings(heading, account, reportType, format, partition, false, false);
        model::gSettings->AddSettingtoCollection(setting);
        return *setting;
    }

    // Makes a partition current and shows its formats, headings and these accounts, as the window does, with all
    // accounts selected.
    void Show(model::clsPartition &partition, std::initializer_list<std::int16_t> accounts = {})
    {
        model::gCurrentPartition = &partition;
        model::gFormats = partition.m_objcolFormats;
        model::gHeadings = partition.m_objcolHeadings;
        form.FillFormatLists(true, true);
        form.FillHeadingList(true);
        form.cmbAccList.Clear();
        form.cmbAccList.SetItemData(form.cmbAccList.AddItem("<All New>"), -1);
        for (const std::int16_t account : accounts)
            form.cmbAccList.SetItemData(form.cmbAccList.AddItem("account " + std::to_string(account)), account);
        ChooseAccount(0);
        // A user can get at everything on the tab shown.
        form.lvwFormats.SetHideColumnHeaders(false);
        form.lvwHeadings.SetHideColumnHeaders(false);
    }
    // Selects an account without asking the database for its report types.
    void ChooseAccount(int position, std::int16_t reportType = 0)
    {
        const auto click = std::exchange(form.cmbAccList.OnClick, nullptr);
        form.cmbAccList.SetListIndex(position);
        form.cmbAccList.OnClick = click;
        form.m_intAccountIndex = position;
        form.m_intReportType = reportType;
    }
    bool PickHeading(const std::string &key) { return form.lvwHeadings.Select(form.lvwHeadings.Position(key)); }
    bool PickFormat(const std::string &key) { return form.lvwFormats.Select(form.lvwFormats.Position(key)); }

    static Lines Entries(const editor::controls::ComboBox &combo)
    {
        Lines lines;
        for (int i = 0; i < combo.ListCount(); ++i)
            lines.push_back((i == combo.ListIndex() ? "* " : "  ") + combo.List(i) + " {" +
                            std::to_string(combo.ItemData(i)) + "}");
        return lines;
    }
    static Lines Items(const editor::controls::ListView &list)
    {
        Lines lines;
        for (int i = 1; i <= list.Count(); ++i)
        {
            const editor::controls::ListItem &item = list.Item(i);
            lines.push_back((i == list.SelectedPosition() ? "* " : "  ") + item.key + " | " + item.text + " | " +
                            item.second);
        }
        return lines;
    }
    // Every setting as "heading account type format partition flags", flags N(ew) C(hanged) R(emoved).
    static Lines Settings()
    {
        Lines lines;
        for (const auto &setting : *model::gSettings->ColSettingInfo)
        {
            const model::clsSettings &s = *setting;
            std::string flags;
            flags += s.NewSetting ? "N" : "";
            flags += s.HasChanged ? "C" : "";
            flags += s.RemoveSetting ? "R" : "";
            lines.push_back(std::to_string(s.SettingID()) + " " + std::to_string(s.HospitalID) + " " +
                            std::to_string(s.ReportType) + " " + std::to_string(s.FormatID) + " " +
                            std::to_string(s.PartitionID) + (flags.empty() ? "" : " ") + flags);
        }
        return lines;
    }
    std::string FormatShown() const
    {
        return form.cmbFormats.ListIndex() < 0 ? "" : form.cmbFormats.List(form.cmbFormats.ListIndex());
    }

    support::FakeDesktop desktop;
    support::EditorForm form;
};

// One partition with three formats and two headings.
class HeadingSite : public Site
{
protected:
    HeadingSite() : partition(Partition(3, "Here"))
    {
        Format(partition, 10, "A");
        Format(partition, 11, "B");
        Format(partition, 12, "C");
        Heading(partition, 20, "HISTORY");
        Heading(partition, 21, "PLAN");
    }
    model::clsPartition &partition;
};
