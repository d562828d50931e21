// The COM objects of clsPartition and colPartitions.
#pragma once

#include "com/collection_object.h"
#include "com/formats_objects.h"
#include "com/headings_objects.h"
#include "com/members.h"
#include "model/colPartitions.h"

namespace com
{

class PartitionObject;
class PartitionsObject;

template <>
struct ComTraits<model::clsPartition> : ComClass<_clsPartition, ::clsPartition, PartitionObject>
{
};

template <>
struct ComTraits<model::colPartitions> : ComClass<_colPartitions, ::colPartitions, PartitionsObject>
{
};

class PartitionObject final : public Object<model::clsPartition>
{
public:
    using Object::Object;

    KV_FIELD(BSTR, m_strPartitionName)
    KV_FIELD(LONG, m_lngPartitionID)
    KV_FIELD(VARIANT_BOOL, m_blnParent)
    KV_FIELD(BSTR, m_strLineage)
    KV_FIELD(VARIANT_BOOL, m_blnTagKnownHeadings)
    KV_FIELD(VARIANT_BOOL, m_blnKnownFound)
    KV_FIELD(VARIANT_BOOL, m_blnAllowMixedCaseHeadings)
    KV_FIELD(VARIANT_BOOL, m_blnMixFound)
    KV_OBJECT(_colFormats, m_objcolFormats, m_objcolFormats)
    KV_OBJECT(_colHeadings, m_objcolHeadings, m_objcolHeadings)

    HRESULT STDMETHODCALLTYPE SetPartitionID(LONG *p_lngPartitionID) override
    {
        return Guard([&] { Get().SetPartitionID(Checked(p_lngPartitionID)); });
    }
};

class PartitionsObject final : public Object<model::colPartitions>
{
public:
    using Object::Object;

    KV_OBJECT(_Collection, colPartitions, m_colPartitions)
    HRESULT STDMETHODCALLTYPE put_colPartitions(_Collection *value) override { return putref_colPartitions(value); }
    KV_ITEM(_clsPartition)
};

} // namespace com
