// The desktop of the headless stage: see desktop.h.
#include "headless/desktop.h"

#include "platform/files.h"
#include "runtime/error.h"

namespace scenario
{

platform::Answer HeadlessDesktop::ShowMessage(const std::string &text, int flags, const std::string &title)
{
    const std::string answer = m_audience.AnswerBox({flags, title, text});
    return answer == "Yes" ? platform::Answer::Yes : answer == "No" ? platform::Answer::No : platform::Answer::Ok;
}

void HeadlessDesktop::OpenFile(platform::WindowHandle, const std::string &path, const std::string &)
{
    if (!platform::FileExists(path))
        runtime::Raise(runtime::kFileNotFound);
    m_audience.ReportOpened(path);
}

void HeadlessDesktop::SetWindowPos(platform::WindowHandle window, int insertAfter, int, int, int, int)
{
    constexpr int kTopmost = -1;
    if (!window)
        runtime::Raise(runtime::kInvalidProcedureCall);
    m_topmost = insertAfter == kTopmost;
}

} // namespace scenario
