// The formats of one partition, and the query that loads them.
#pragma once

#include "model/clsFormats.h"
#include "runtime/collection.h"
#include "runtime/value.h"

#include <cstdint>

namespace model
{

class colFormats : public runtime::RefCounted<colFormats>
{
public:
    std::int32_t m_lngPartitionID = 0; // -1: all partitions

    // The collection itself, keyed by the decimal text of the format's id. Never null.
    runtime::Ref<runtime::Collection<clsFormats>> ColFormatInfo = runtime::MakeRef<runtime::Collection<clsFormats>>();

    // The record at a position (from 1), whatever text or number the position is given as. Every error gives null.
    runtime::Ref<clsFormats> Item(const runtime::Value &vntIndexKey) const;

    // Loads the partition's formats: system formats first, then by name. Errors of the database, a NULL or an id beyond
    // 16 bits, and an id that is in the collection already end the load; the rows read so far stay.
    void GetFormatInfo();
};

} // namespace model
