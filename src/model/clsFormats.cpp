// Filling a format record.
#include "model/clsFormats.h"

#include <utility>

namespace model
{

void clsFormats::FillFields(std::int16_t p_format_id, std::string p_format_name, bool p_insert_before,
                            bool p_insert_after, bool p_insert_colon, bool p_bold, bool p_underline, bool p_indent,
                            bool p_system_format, bool p_newformat, bool p_haschanged)
{
    FormatID = p_format_id;
    FormatName = std::move(p_format_name);
    InsertBefore = p_insert_before;
    InsertAfter = p_insert_after;
    InsertColon = p_insert_colon;
    Bold = p_bold;
    Underline = p_underline;
    Indent = p_indent;
    SystemFormat = p_system_format;
    NewFormat = p_newformat;
    HasChanged = p_haschanged;
}

} // namespace model
