// The headings of one partition, and the query that loads them.
#pragma once

#include "model/clsHeadings.h"
#include "runtime/collection.h"
#include "runtime/value.h"

#include <cstdint>

namespace model
{

class colHeadings : public runtime::RefCounted<colHeadings>
{
public:
    std::int32_t m_lngPartitionID = 0; // -1 has no meaning of its own here

    // The collection itself, keyed by the decimal text of the heading's id. Never null.
    runtime::Ref<runtime::Collection<clsHeadings>> ColHeadingInfo =
        runtime::MakeRef<runtime::Collection<clsHeadings>>();

    // The record at a position (from 1), whatever text or number the position is given as. Every error gives null.
    runtime::Ref<clsHeadings> Item(const runtime::Value &vntIndexKey) const;

    // Loads the partition's headings in the order of their texts. Errors of the database, a NULL or an id beyond
    // 16 bits, and an id that is in the collection already end the load; the rows read so far stay.
    void GetHeadingInfo();
};

} // namespace model
