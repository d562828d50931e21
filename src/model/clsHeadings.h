// One heading as the editor holds it, with the flags that tell the save what to do with it.
#pragma once

#include "runtime/ref.h"

#include <cstdint>
#include <string>

namespace model
{

// A plain record: setting a value sets no flag.
class clsHeadings : public runtime::RefCounted<clsHeadings>
{
public:
    std::string HeadingName;
    bool NewHeading = false;    // made in the editor and not in the table yet
    bool SystemHeading = false; // the heading of id 0
    bool HasChanged = false;
    std::int16_t HeadID = 0;
    bool RemoveHeader = false; // to be deleted

    // Sets everything but RemoveHeader.
    void FillHeadings(std::int16_t p_head_id, std::string p_heading_name, bool p_new_heading, bool p_system_heading,
                      bool p_haschanged);
};

} // namespace model
