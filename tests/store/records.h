// Loaded records as the editor would have made them, for the tests of the store.
#pragma once

#include "model/globals.h"
#include "runtime/ref.h"

#include <cstdint>
#include <string>

namespace records
{

// What the editor has done to a record.
enum class State
{
    Unchanged,
    Changed,
    New,           // made in this session
    Removed,       // loaded, then deleted
    NewAndRemoved, // made and deleted in this session
    OnlyMarked,    // marked for deletion without the changed flag
};

// Empty collections, as a window that opens makes them.
inline void Start()
{
    model::gPartitions = runtime::MakeRef<model::colPartitions>();
    model::gSettings = runtime::MakeRef<model::colSettings>();
}

inline bool IsNew(State state)
{
    return state == State::New || state == State::NewAndRemoved;
}
inline bool IsRemoved(State state)
{
    return state == State::Removed || state == State::NewAndRemoved || state == State::OnlyMarked;
}
inline bool HasChanged(State state)
{
    return state != State::Unchanged && state != State::OnlyMarked;
}

inline model::clsPartition &Partition(std::int32_t id)
{
    const auto partition = runtime::MakeRef<model::clsPartition>();
    partition->SetPartitionID(id);
    model::gPartitions->m_colPartitions->Add(partition, std::to_string(id));
    return *partition;
}

inline model::clsFormats &Format(model::clsPartition &partition, std::int16_t id, const std::string &name, State state)
{
    const auto format = runtime::MakeRef<model::clsFormats>();
    format->FillFields(id, name, true, false, true, false, false, true, false, IsNew(state), HasChanged(state));
    format->RemoveFormat = IsRemoved(state);
    partition.m_objcolFormats->ColFormatInfo->Add(format, std::to_string(id));
    return *format;
}

inline model::clsHeadings &Heading(model::clsPartition &partition, std::int16_t id, const std::string &name,
                                   State state)
{
    const auto heading = runtime::MakeRef<model::clsHeadings>();
    heading->FillHeadings(id, name, IsNew(state), id == 0, HasChanged(state));
    heading->RemoveHeader = IsRemoved(state);
    partition.m_objcolHeadings->ColHeadingInfo->Add(heading, std::to_string(id));
    return *heading;
}

inline model::clsSettings &Setting(std::int16_t heading, std::int16_t account, std::int16_t reportType,
                                   std::int16_t format, std::int32_t partition, State state)
{
    const auto setting = runtime::MakeRef<model::clsSettings>();
    setting->FillSettings(heading, account, reportType, format, partition, IsNew(state), HasChanged(state));
    setting->RemoveSetting = IsRemoved(state);
    model::gSettings->AddSettingtoCollection(setting);
    return *setting;
}

} // namespace records
