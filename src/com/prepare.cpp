// What has to be ready before the first object of a host.
#include "com/prepare.h"

#include <mutex>

namespace com
{

void PrepareOnce()
{
    static std::once_flag once;
    std::call_once(once,
                   []
                   {
                       // The call site of editor::RegisterForms() and window::Register().
                   });
}

} // namespace com
