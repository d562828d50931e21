// What has to be ready before the first object of a host.
#include "com/prepare.h"

#include "editor/frmHeadings.h"
#include "window/register.h"

#include <mutex>

namespace com
{

void PrepareOnce()
{
    static std::once_flag once;
    std::call_once(once,
                   []
                   {
                       editor::RegisterForms();
                       window::Register();
                   });
}

} // namespace com
