// Filling a setting record.
#include "model/clsSettings.h"

namespace model
{

void clsSettings::SetSettingID(std::int16_t headingId) noexcept
{
    if (m_settingId != headingId && InIndex)
        ++s_headingRevision;
    m_settingId = headingId;
}

void clsSettings::FillSettings(std::int16_t p_setting_id, std::int16_t p_hosp_acct_id, std::int16_t p_report_type_nbr,
                               std::int16_t p_format_id, std::int32_t p_partition_id, bool p_new_setting,
                               bool p_haschanged)
{
    SetSettingID(p_setting_id);
    HospitalID = p_hosp_acct_id;
    ReportType = p_report_type_nbr;
    FormatID = p_format_id;
    PartitionID = p_partition_id;
    NewSetting = p_new_setting;
    HasChanged = p_haschanged;
}

} // namespace model
