// Filling a heading record.
#include "model/clsHeadings.h"

#include <utility>

namespace model
{

void clsHeadings::FillHeadings(std::int16_t p_head_id, std::string p_heading_name, bool p_new_heading,
                               bool p_system_heading, bool p_haschanged)
{
    HeadID = p_head_id;
    HeadingName = std::move(p_heading_name);
    SystemHeading = p_system_heading;
    NewHeading = p_new_heading;
    HasChanged = p_haschanged;
}

} // namespace model
