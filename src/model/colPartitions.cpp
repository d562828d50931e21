// The positional look-up of partitions.
#include "model/colPartitions.h"

#include "model/item.h"

namespace model
{

runtime::Ref<clsPartition> colPartitions::Item(const runtime::Value &vntIndexKey) const
{
    return ItemOrNothing(*m_colPartitions, vntIndexKey);
}

} // namespace model
