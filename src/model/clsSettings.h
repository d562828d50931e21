// One heading setting: the format that a heading gets for an account and a report type.
#pragma once

#include "runtime/ref.h"

#include <cstdint>

namespace model
{

// A plain record of 20 bytes: a site has up to a million of them. Setting a value sets no flag.
class clsSettings : public runtime::RefCounted<clsSettings>
{
public:
    std::int16_t HospitalID = 0; // the account; -1: all accounts
    std::int16_t ReportType = 0; // 0: all report types of the account
    std::int32_t PartitionID = 0;
    std::int16_t FormatID = 0;
    bool NewSetting = false; // made in the editor and not in the table yet
    bool HasChanged = false;
    bool RemoveSetting = false; // to be deleted

    // The heading's id; a setting has none of its own.
    std::int16_t SettingID() const noexcept { return m_settingId; }
    void SetSettingID(std::int16_t headingId) noexcept;

    // Sets everything but RemoveSetting.
    void FillSettings(std::int16_t p_setting_id, std::int16_t p_hosp_acct_id, std::int16_t p_report_type_nbr,
                      std::int16_t p_format_id, std::int32_t p_partition_id, bool p_new_setting, bool p_haschanged);

    // Set by colSettings when it has the record in its index.
    bool InIndex = false;

    // Increases whenever a record that is in an index changes its heading: the index is then out of date.
    static std::uint32_t HeadingRevision() noexcept { return s_headingRevision; }

private:
    std::int16_t m_settingId = 0;
    inline static std::uint32_t s_headingRevision = 0;
};

} // namespace model
