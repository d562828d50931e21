// A user before the screen.
#include "person.h"

#include "component.h"

namespace com_test
{

namespace
{

std::string TextOf(HWND window)
{
    wchar_t text[1024] = L"";
    SendMessageW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
    return Narrow(text);
}

// A visible window of the class that belongs to the process; null when there is none.
HWND Find(const wchar_t *windowClass, DWORD process)
{
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, windowClass, nullptr)) != nullptr)
    {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process && IsWindowVisible(window))
            return window;
    }
    return nullptr;
}

void WaitUntilGone(HWND window)
{
    for (int i = 0; i < 500 && IsWindow(window); ++i)
        Sleep(10);
}

} // namespace

Person::Person(DWORD process, DWORD looksFor) : m_thread([this, process, looksFor] { Run(process, looksFor); }) {}

Person::~Person()
{
    Leave();
}

std::vector<std::string> Person::Leave()
{
    m_leaves = true;
    if (m_thread.joinable())
        m_thread.join();
    return m_seen;
}

void Person::Run(DWORD process, DWORD looksFor)
{
    while (!m_leaves)
    {
        Sleep(20);
        if (const HWND box = Find(L"#32770", process); box && GetDlgItem(box, 0xFFFF))
        {
            m_seen.push_back(TextOf(box) + ": " + TextOf(GetDlgItem(box, 0xFFFF)));
            SendMessageW(box, WM_COMMAND, IDOK, 0);
            WaitUntilGone(box);
        }
        else if (const HWND editor = Find(L"KVHEADERS.Form", process))
        {
            m_seen.push_back("window: " + TextOf(editor));
            Sleep(looksFor);
            PostMessageW(editor, WM_CLOSE, 0, 0);
            WaitUntilGone(editor);
        }
    }
}

} // namespace com_test
