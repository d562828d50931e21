// The settings report: the saved configuration of the current partition as a text file, opened in the system's viewer.
#pragma once

#include "platform/desktop.h"

namespace report
{

// Writes ZENTRA\TEMP\HEADINGS.TXT below the suite's local root directory (registry) for model::gCurrentPartition and
// opens it; `owner` owns the viewer's messages and may be null. It reads the database, not the edits in memory. Errors
// are shown and logged at the end; nothing is raised.
void PrintSettings(platform::WindowHandle owner);

} // namespace report
