// Looking records up, flagging and appending settings.
#include "editor/records.h"

#include <string>

namespace editor
{

model::clsPartition &CurrentPartition()
{
    return *model::gCurrentPartition;
}

model::clsPartition &PartitionOf(std::int32_t id)
{
    return *model::gPartitions->m_colPartitions->Item(std::to_string(id));
}

model::clsFormats &FormatOf(const RecordKey &key)
{
    return *PartitionOf(key.partition).m_objcolFormats->ColFormatInfo->Item(std::to_string(key.id));
}

model::clsHeadings &HeadingOf(const RecordKey &key)
{
    return *PartitionOf(key.partition).m_objcolHeadings->ColHeadingInfo->Item(std::to_string(key.id));
}

bool IsReadOnlyFormat(const RecordKey &key)
{
    return FormatOf(key).SystemFormat || PartitionOf(key.partition).m_blnParent;
}

bool IsReadOnlyHeading(const RecordKey &key)
{
    return HeadingOf(key).SystemHeading || PartitionOf(key.partition).m_blnParent;
}

void FlagForRemoval(model::clsSettings &setting)
{
    setting.RemoveSetting = true;
    setting.HasChanged = true;
}

void AddSetting(std::int16_t headingId, std::int16_t accountId, std::int16_t reportType, std::int16_t formatId,
                std::int32_t partitionId)
{
    const auto setting = runtime::MakeRef<model::clsSettings>();
    setting->FillSettings(headingId, accountId, reportType, formatId, partitionId, true, true);
    model::gSettings->AddSettingtoCollection(setting);
}

void AppendSetting(std::int16_t headingId, std::int16_t accountId, std::int16_t reportType, std::int16_t formatId,
                   std::int32_t partitionId, const std::function<bool(const model::clsSettings &)> &replaces)
{
    // The new one comes first: a setting that it replaces must not be gone without it.
    AddSetting(headingId, accountId, reportType, formatId, partitionId);
    runtime::Collection<model::clsSettings> &settings = *model::gSettings->ColSettingInfo;
    const auto last = static_cast<std::int64_t>(settings.Count());
    const runtime::Ref<model::clsSettings> added = settings.Item(last);
    try
    {
        ForSettingsOf(headingId,
                      [&](model::clsSettings &setting)
                      {
                          if (&setting == added.get())
                              return;
                          const bool samePlace =
                              IsSettingOf(setting, headingId, accountId, reportType, partitionId) ||
                              (accountId == kAllAccounts && IsSettingOf(setting, headingId, accountId, reportType, 0));
                          if ((samePlace && !setting.RemoveSetting) || (replaces && replaces(setting)))
                              FlagForRemoval(setting);
                      });
    }
    catch (...)
    {
        settings.Remove(last);
        throw;
    }
}

bool IsSettingOf(const model::clsSettings &setting, std::int16_t headingId, std::int16_t accountId,
                 std::int16_t reportType, std::int32_t partitionId)
{
    return setting.SettingID() == headingId && setting.HospitalID == accountId && setting.ReportType == reportType &&
           setting.PartitionID == partitionId;
}

int CountSettingsOf(std::int16_t headingId, std::int16_t accountId, std::int16_t reportType, std::int32_t partitionId)
{
    int count = 0;
    ForSettingsOf(headingId, [&](const model::clsSettings &setting)
                  { count += IsSettingOf(setting, headingId, accountId, reportType, partitionId) ? 1 : 0; });
    return count;
}

std::int32_t PartitionOfSetting(std::int16_t accountId)
{
    return accountId == kAllAccounts ? CurrentPartition().m_lngPartitionID : 0;
}

} // namespace editor
