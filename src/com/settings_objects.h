// The COM objects of clsSettings and colSettings.
#pragma once

#include "com/collection_object.h"
#include "com/members.h"
#include "model/colSettings.h"

namespace com
{

class SettingObject;
class SettingsObject;

template <>
struct ComTraits<model::clsSettings> : ComClass<_clsSettings, ::clsSettings, SettingObject>
{
};

template <>
struct ComTraits<model::colSettings> : ComClass<_colSettings, ::colSettings, SettingsObject>
{
};

class SettingObject final : public Object<model::clsSettings>
{
public:
    using Object::Object;

    KV_FIELD_BY_REFERENCE(SHORT, HospitalID)
    KV_FIELD_BY_REFERENCE(SHORT, ReportType)
    KV_FIELD_BY_REFERENCE(SHORT, FormatID)
    KV_FIELD_BY_REFERENCE(LONG, PartitionID)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, NewSetting)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, HasChanged)
    KV_VALUE_BY_REFERENCE(SHORT, SettingID)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, RemoveSetting)

    HRESULT STDMETHODCALLTYPE FillSettings(SHORT *p_setting_id, SHORT *p_hosp_acct_id, SHORT *p_report_type_nbr,
                                           SHORT *p_format_id, LONG *p_partition_id, VARIANT_BOOL *p_new_setting,
                                           VARIANT_BOOL *p_haschanged) override
    {
        return Guard(
            [&]
            {
                Get().FillSettings(Checked(p_setting_id), Checked(p_hosp_acct_id), Checked(p_report_type_nbr),
                                   Checked(p_format_id), Checked(p_partition_id),
                                   FromHost<bool>(Checked(p_new_setting)), FromHost<bool>(Checked(p_haschanged)));
            });
    }
};

class SettingsObject final : public Object<model::colSettings>
{
public:
    using Object::Object;

    KV_FIELD(LONG, m_lngPartitionID)
    KV_OBJECT(_Collection, ColSettingInfo, ColSettingInfo)
    KV_ITEM(_clsSettings)

    // On return the argument refers to the same object.
    HRESULT STDMETHODCALLTYPE AddSettingtoCollection(_clsSettings **p_clsSetting) override
    {
        return Guard([&] { Get().AddSettingtoCollection(Unwrap<model::clsSettings>(Checked(p_clsSetting))); });
    }

    HRESULT STDMETHODCALLTYPE GetSettingInfo() override
    {
        return Guard([&] { Get().GetSettingInfo(); });
    }
};

} // namespace com
