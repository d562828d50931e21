// The save of everything that was edited: one pass over the loaded records, one statement each.
#include "store/modDataActivity.h"

#include "host/database.h"
#include "host/modMain.h"
#include "model/globals.h"
#include "store/loaded.h"
#include "store/statements.h"

#include <optional>

namespace store
{

namespace
{

void Run(const std::string &statement)
{
    host::Execute(statement);
}

// The pass from where an error no longer stops it: what fails is left out, and the last error stays in the trap.
class Pass
{
public:
    void SaveFormats();
    void SaveHeadings();
    void SaveSettings();
    void DeleteHeadings();
    void DeleteFormats();

    const runtime::ErrorTrap &Trap() const { return m_trap; }

private:
    // Visits each record of a collection; a visit that fails does not keep the others from theirs. The record is held
    // while it is visited.
    template <class T, class Visit>
    void ForEach(const runtime::Collection<T> &collection, Visit &&visit)
    {
        for (std::size_t position = 1; position <= collection.Count(); ++position)
        {
            const runtime::Ref<T> record = collection.Item(static_cast<std::int64_t>(position));
            m_trap.Try([&] { visit(Loaded(record)); });
        }
    }

    template <class Visit>
    void ForEachFormat(Visit &&visit)
    {
        m_trap.Try(
            [&]
            {
                ForEach(*Loaded(model::gPartitions).m_colPartitions,
                        [&](const model::clsPartition &partition)
                        {
                            ForEach(*Loaded(partition.m_objcolFormats).ColFormatInfo,
                                    [&](const model::clsFormats &format)
                                    { visit(format, partition.m_lngPartitionID); });
                        });
            });
    }

    template <class Visit>
    void ForEachHeading(Visit &&visit)
    {
        m_trap.Try(
            [&]
            {
                ForEach(*Loaded(model::gPartitions).m_colPartitions,
                        [&](const model::clsPartition &partition)
                        {
                            ForEach(*Loaded(partition.m_objcolHeadings).ColHeadingInfo,
                                    [&](const model::clsHeadings &heading)
                                    { visit(heading, partition.m_lngPartitionID); });
                        });
            });
    }

    runtime::ErrorTrap m_trap;
};

void Pass::SaveFormats()
{
    ForEachFormat(
        [](const model::clsFormats &format, std::int32_t partitionId)
        {
            if (format.HasChanged && !format.RemoveFormat)
                Run(format.NewFormat ? sql::InsertFormat(format, partitionId) : sql::UpdateFormat(format));
        });
}

void Pass::SaveHeadings()
{
    ForEachHeading(
        [](const model::clsHeadings &heading, std::int32_t partitionId)
        {
            if (heading.HasChanged && !heading.RemoveHeader)
                Run(heading.NewHeading ? sql::InsertHeading(heading, partitionId) : sql::UpdateHeading(heading));
        });
}

void Pass::SaveSettings()
{
    m_trap.Try(
        [&]
        {
            ForEach(*Loaded(model::gSettings).ColSettingInfo,
                    [&](const model::clsSettings &setting)
                    {
                        if (!setting.HasChanged)
                            return;
                        m_trap.Try(
                            [&]
                            {
                                Run(setting.RemoveSetting ? sql::DeleteSetting(setting)
                                    : setting.NewSetting  ? sql::InsertSetting(setting)
                                                          : sql::UpdateSetting(setting));
                            });
                        // Whatever became of the setting, its removal included, its format is the partition's default
                        // heading mode.
                        if (sql::IsDefaultHeadingMode(setting))
                            Run(sql::StoreDefaultHeadingMode(setting));
                    });
        });
}

void Pass::DeleteHeadings()
{
    ForEachHeading(
        [&](const model::clsHeadings &heading, std::int32_t)
        {
            if (!heading.HasChanged || !heading.RemoveHeader)
                return;
            m_trap.Try([&] { Run(sql::DeleteHeading(heading)); });
            Run(sql::DeleteSettingsOfHeading(heading));
        });
}

void Pass::DeleteFormats()
{
    ForEachFormat(
        [](const model::clsFormats &format, std::int32_t)
        {
            if (format.HasChanged && format.RemoveFormat)
                Run(sql::DeleteFormat(format));
        });
}

} // namespace

namespace
{

// Both options of every loaded partition, changed or not. Each reports its own error, and while that box is open the
// collection may change under the loop.
void SaveTaggingOptions()
{
    const runtime::Ref<model::colPartitions> partitions(&Loaded(model::gPartitions));
    for (std::size_t position = 1; position <= partitions->m_colPartitions->Count(); ++position)
    {
        const runtime::Ref<model::clsPartition> partition =
            partitions->m_colPartitions->Item(static_cast<std::int64_t>(position));
        for (const bool mixedCase : {false, true})
            SaveTaggingOption(Loaded(partition).m_lngPartitionID, mixedCase);
    }
}

} // namespace

bool SaveAll()
{
    std::optional<runtime::Error> unreachable;
    Pass pass;
    {
        const host::DatabaseAction save(host::DatabaseAction::Kind::Save);
        SaveTaggingOptions();
        // New records before the settings that refer to them, deletions behind everything else.
        pass.SaveFormats();
        pass.SaveHeadings();
        pass.SaveSettings();
        pass.DeleteHeadings();
        pass.DeleteFormats();
        unreachable = save.Ended();
    }
    if (unreachable)
    {
        host::TellConnectFailure(*unreachable);
        return false;
    }
    ReportError(pass.Trap(), "Error encountered while accessing data: ", kSavingAll);
    return true;
}

} // namespace store
