// The editor's window with its state open to tests.
#pragma once

#include "editor/frmHeadings.h"

namespace support
{

class EditorForm final : public editor::frmHeadings
{
public:
    using frmHeadings::kHeadingPicked;
    using frmHeadings::m_blnChanged;
    using frmHeadings::m_blnCheckClick;
    using frmHeadings::m_blnLoading;
    using frmHeadings::m_blnReadOnly;
    using frmHeadings::m_intAccountIndex;
    using frmHeadings::m_intFormatID;
    using frmHeadings::m_intFormatIndex;
    using frmHeadings::m_intHeadID;
    using frmHeadings::m_intHeadingIndex;
    using frmHeadings::m_intReportType;
    using frmHeadings::m_intSettingIndex;
    using frmHeadings::m_lngFormatPartitionID;
    using frmHeadings::m_lngHeadPartitionID;
    using frmHeadings::m_strFormatKeys;
};

} // namespace support
