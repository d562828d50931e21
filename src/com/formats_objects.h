// The COM objects of clsFormats and colFormats.
#pragma once

#include "com/collection_object.h"
#include "com/members.h"
#include "model/colFormats.h"

namespace com
{

class FormatObject;
class FormatsObject;

template <>
struct ComTraits<model::clsFormats> : ComClass<_clsFormats, ::clsFormats, FormatObject>
{
};

template <>
struct ComTraits<model::colFormats> : ComClass<_colFormats, ::colFormats, FormatsObject>
{
};

class FormatObject final : public Object<model::clsFormats>
{
public:
    using Object::Object;

    KV_FIELD_BY_REFERENCE(SHORT, FormatID)
    KV_FIELD_BY_REFERENCE(BSTR, FormatName)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, InsertBefore)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, InsertAfter)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, InsertColon)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, Bold)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, Underline)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, Indent)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, NewFormat)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, SystemFormat)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, HasChanged)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, RemoveFormat)

    HRESULT STDMETHODCALLTYPE FillFields(SHORT *p_format_id, BSTR *p_format_name, VARIANT_BOOL *p_insert_before,
                                         VARIANT_BOOL *p_insert_after, VARIANT_BOOL *p_insert_colon,
                                         VARIANT_BOOL *p_bold, VARIANT_BOOL *p_underline, VARIANT_BOOL *p_indent,
                                         VARIANT_BOOL *p_system_format, VARIANT_BOOL *p_newformat,
                                         VARIANT_BOOL *p_haschanged) override
    {
        return Guard(
            [&]
            {
                Get().FillFields(Checked(p_format_id), FromHost<std::string>(Checked(p_format_name)),
                                 FromHost<bool>(Checked(p_insert_before)), FromHost<bool>(Checked(p_insert_after)),
                                 FromHost<bool>(Checked(p_insert_colon)), FromHost<bool>(Checked(p_bold)),
                                 FromHost<bool>(Checked(p_underline)), FromHost<bool>(Checked(p_indent)),
                                 FromHost<bool>(Checked(p_system_format)), FromHost<bool>(Checked(p_newformat)),
                                 FromHost<bool>(Checked(p_haschanged)));
            });
    }
};

class FormatsObject final : public Object<model::colFormats>
{
public:
    using Object::Object;

    KV_FIELD(LONG, m_lngPartitionID)
    KV_OBJECT(_Collection, ColFormatInfo, ColFormatInfo)
    KV_ITEM(_clsFormats)

    HRESULT STDMETHODCALLTYPE GetFormatInfo() override
    {
        return Guard([&] { Get().GetFormatInfo(); });
    }
};

} // namespace com
