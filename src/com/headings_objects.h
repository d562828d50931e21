// The COM objects of clsHeadings and colHeadings.
#pragma once

#include "com/collection_object.h"
#include "com/members.h"
#include "model/colHeadings.h"

namespace com
{

class HeadingObject;
class HeadingsObject;

template <>
struct ComTraits<model::clsHeadings> : ComClass<_clsHeadings, ::clsHeadings, HeadingObject>
{
};

template <>
struct ComTraits<model::colHeadings> : ComClass<_colHeadings, ::colHeadings, HeadingsObject>
{
};

class HeadingObject final : public Object<model::clsHeadings>
{
public:
    using Object::Object;

    KV_FIELD_BY_REFERENCE(BSTR, HeadingName)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, NewHeading)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, SystemHeading)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, HasChanged)
    KV_FIELD_BY_REFERENCE(SHORT, HeadID)
    KV_FIELD_BY_REFERENCE(VARIANT_BOOL, RemoveHeader)

    HRESULT STDMETHODCALLTYPE FillHeadings(SHORT *p_head_id, BSTR *p_heading_name, VARIANT_BOOL *p_new_heading,
                                           VARIANT_BOOL *p_system_heading, VARIANT_BOOL *p_haschanged) override
    {
        return Guard(
            [&]
            {
                Get().FillHeadings(Checked(p_head_id), FromHost<std::string>(Checked(p_heading_name)),
                                   FromHost<bool>(Checked(p_new_heading)), FromHost<bool>(Checked(p_system_heading)),
                                   FromHost<bool>(Checked(p_haschanged)));
            });
    }
};

class HeadingsObject final : public Object<model::colHeadings>
{
public:
    using Object::Object;

    KV_FIELD(LONG, m_lngPartitionID)
    KV_OBJECT(_Collection, ColHeadingInfo, ColHeadingInfo)
    KV_ITEM(_clsHeadings)

    HRESULT STDMETHODCALLTYPE GetHeadingInfo() override
    {
        return Guard([&] { Get().GetHeadingInfo(); });
    }
};

} // namespace com
