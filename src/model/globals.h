// The objects that the open editor works on; its parts and the save pass share them.
#pragma once

#include "model/clsPartition.h"
#include "model/colFormats.h"
#include "model/colHeadings.h"
#include "model/colPartitions.h"
#include "model/colSettings.h"
#include "runtime/ref.h"

namespace model
{

inline runtime::Ref<colPartitions> gPartitions;
inline runtime::Ref<clsPartition> gCurrentPartition; // the one chosen in the partition list
inline runtime::Ref<colFormats> gFormats;            // its formats
inline runtime::Ref<colHeadings> gHeadings;          // its headings
inline runtime::Ref<colSettings> gSettings;          // the settings of all partitions

} // namespace model
