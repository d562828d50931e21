// The partitions that the user may edit and their ancestors.
#pragma once

#include "model/clsPartition.h"
#include "runtime/collection.h"
#include "runtime/value.h"

namespace model
{

class colPartitions : public runtime::RefCounted<colPartitions>
{
public:
    // The collection itself (the property colPartitions of the type library), keyed by the decimal text of the
    // partition's id. Never null.
    runtime::Ref<runtime::Collection<clsPartition>> m_colPartitions =
        runtime::MakeRef<runtime::Collection<clsPartition>>();

    // The record at a position (from 1), whatever text or number the position is given as. Every error gives null.
    runtime::Ref<clsPartition> Item(const runtime::Value &vntIndexKey) const;
};

} // namespace model
