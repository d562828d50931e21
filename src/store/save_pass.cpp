// The save of everything that was edited: one pass over the loaded records, one statement each.
#include "store/modDataActivity.h"

#include "host/database.h"
#include "host/modMain.h"
#include "model/globals.h"
#include "store/statements.h"

#include <optional>

namespace store
{

namespace
{

// The records of one kind in a partition.
constexpr auto kFormats = [](const model::clsPartition &partition) -> const auto &
{
    return *partition.m_objcolFormats->ColFormatInfo;
};
constexpr auto kHeadings = [](const model::clsPartition &partition) -> const auto &
{
    return *partition.m_objcolHeadings->ColHeadingInfo;
};

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
        for (runtime::Ref<T> record : collection)
            m_trap.Try([&] { visit(*record); });
    }

    // Visits the records of a kind in all partitions, with the partition's id.
    template <class Records, class Visit>
    void ForEachIn(const Records &records, Visit &&visit)
    {
        m_trap.Try(
            [&]
            {
                ForEach(*model::gPartitions->m_colPartitions,
                        [&](const model::clsPartition &partition) {
                            ForEach(records(partition),
                                    [&](const auto &record) { visit(record, partition.m_lngPartitionID); });
                        });
            });
    }

    runtime::ErrorTrap m_trap;
};

void Pass::SaveFormats()
{
    ForEachIn(kFormats,
              [](const model::clsFormats &format, std::int32_t partitionId)
              {
                  if (format.HasChanged && !format.RemoveFormat)
                      host::Execute(format.NewFormat ? sql::InsertFormat(format, partitionId)
                                                     : sql::UpdateFormat(format));
              });
}

void Pass::SaveHeadings()
{
    ForEachIn(kHeadings,
              [](const model::clsHeadings &heading, std::int32_t partitionId)
              {
                  if (heading.HasChanged && !heading.RemoveHeader)
                      host::Execute(heading.NewHeading ? sql::InsertHeading(heading, partitionId)
                                                       : sql::UpdateHeading(heading));
              });
}

void Pass::SaveSettings()
{
    m_trap.Try(
        [&]
        {
            ForEach(*model::gSettings->ColSettingInfo,
                    [&](const model::clsSettings &setting)
                    {
                        if (!setting.HasChanged)
                            return;
                        m_trap.Try(
                            [&]
                            {
                                host::Execute(setting.RemoveSetting ? sql::DeleteSetting(setting)
                                              : setting.NewSetting  ? sql::InsertSetting(setting)
                                                                    : sql::UpdateSetting(setting));
                            });
                        // Whatever became of the setting, its removal included, its format is the partition's default
                        // heading mode.
                        if (sql::IsDefaultHeadingMode(setting))
                            host::Execute(sql::StoreDefaultHeadingMode(setting));
                    });
        });
}

void Pass::DeleteHeadings()
{
    ForEachIn(kHeadings,
              [&](const model::clsHeadings &heading, std::int32_t)
              {
                  if (!heading.HasChanged || !heading.RemoveHeader)
                      return;
                  m_trap.Try([&] { host::Execute(sql::DeleteHeading(heading)); });
                  host::Execute(sql::DeleteSettingsOfHeading(heading));
              });
}

void Pass::DeleteFormats()
{
    ForEachIn(kFormats,
              [](const model::clsFormats &format, std::int32_t)
              {
                  if (format.HasChanged && format.RemoveFormat)
                      host::Execute(sql::DeleteFormat(format));
              });
}

// Both options of every loaded partition, changed or not. Each reports its own error, and while that box is open the
// collection may change under the loop.
void SaveTaggingOptions()
{
    const auto partitions = model::gPartitions->m_colPartitions;
    for (runtime::Ref<model::clsPartition> partition : *partitions)
        for (const bool mixedCase : {false, true})
            SaveTaggingOption(partition->m_lngPartitionID, mixedCase);
}

} // namespace

bool SaveAll()
{
    std::optional<runtime::Error> unreachable;
    Pass pass;
    {
        const host::DatabaseAction save(host::DatabaseAction::Kind::Save);
        SaveTaggingOptions();
        // New records before the settings that refer to them, deletions after everything else.
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
