// Who sees the messages of the thread's queue before the windows do.
#include "platform/windows/message_filter.h"

#include <utility>

namespace platform
{

namespace
{

MessageFilter current;

} // namespace

MessageFilter SetMessageFilter(MessageFilter filter)
{
    return std::exchange(current, std::move(filter));
}

bool Filtered(const MSG &message)
{
    // A copy: what it does may end in another being set.
    const MessageFilter asked = current;
    return asked && asked(message);
}

} // namespace platform
