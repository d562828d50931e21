// One heading format as the editor holds it, with the flags that tell the save what to do with it.
#pragma once

#include "runtime/ref.h"

#include <cstdint>
#include <string>

namespace model
{

// A plain record: setting a value sets no flag.
class clsFormats : public runtime::RefCounted<clsFormats>
{
public:
    std::int16_t FormatID = 0;
    std::string FormatName;
    bool InsertBefore = false; // an empty line before the heading
    bool InsertAfter = false;  // a carriage return after it
    bool InsertColon = false;  // a colon and two spaces after it
    bool Bold = false;
    bool Underline = false;
    bool Indent = false;
    bool NewFormat = false; // made in the editor and not in the table yet
    bool SystemFormat = false;
    bool HasChanged = false;
    bool RemoveFormat = false; // to be deleted

    // Sets everything but RemoveFormat.
    void FillFields(std::int16_t p_format_id, std::string p_format_name, bool p_insert_before, bool p_insert_after,
                    bool p_insert_colon, bool p_bold, bool p_underline, bool p_indent, bool p_system_format,
                    bool p_newformat, bool p_haschanged);
};

} // namespace model
