// A user at the real editor.
#include "window/input/person.h"

#include "host/clsConfig.h"
#include "host/forms.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "runtime/handler.h"
#include "window/binding.h"
#include "window/label_edit.h"
#include "window/register.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <mutex>

namespace input_tests
{

namespace
{

const UINT kRun = RegisterWindowMessageW(L"KVHEADERS.Tests.Run");

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    if (message == kRun)
    {
        (*reinterpret_cast<const std::function<void()> *>(lParam))();
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

std::wstring Text(HWND window)
{
    wchar_t text[512] = L"";
    SendMessageW(window, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    return text;
}

// The visit that is under way: it begins when the window has come up.
struct Visit
{
    const std::function<void(Person &)> &act;
    std::thread thread;
};
Visit *visit = nullptr;

void CALLBACK WhenShown(HWND, UINT, UINT_PTR timer, DWORD)
{
    if (host::LoadedForms().empty())
        return;
    auto &form = dynamic_cast<editor::frmHeadings &>(*host::LoadedForms().back());
    const auto window = static_cast<HWND>(form.Handle());
    if (!window || !IsWindowVisible(window))
        return;
    KillTimer(nullptr, timer);
    SetWindowSubclass(window, &Procedure, 0, 0);
    visit->thread = std::thread(
        [&form, window]
        {
            Person person(form);
            visit->act(person);
            if (IsWindow(window))
                person.InWindow([window] { DestroyWindow(window); });
        });
}

} // namespace

Person::Person(editor::frmHeadings &form)
    : m_form(form), m_window(static_cast<HWND>(form.Handle())), m_thread(GetWindowThreadProcessId(m_window, nullptr))
{
    // A click beside everything: from now on the display gives the keys to this window.
    RECT client;
    GetClientRect(m_window, &client);
    ClickAt(m_window, {client.right - 5, 5});
    SEES(std::string("SSTab1"), Focused());
    POINT cursor;
    SEES(true, (GetCursorPos(&cursor), WindowFromPoint(cursor) == m_window));
}

// Wine starts a program of the system outside, of which it knows nothing more: a file tells of its end. Before that a
// key may still be down.
void Person::Act(const std::string &words) const
{
    const std::string status = "status" + std::to_string(++m_acts);
    std::string line =
        "sh -c \"xdotool \\\"$@\\\"; echo $? >\\\"$0\\\"\" \"" + m_folder.DriverPath(status) + "\" " + words;
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(
        CreateProcessA("Z:\\bin\\sh", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    SEES(std::string("0\n"), support::ReadFile(m_folder.Path(status)));
}

void Person::Press(const std::string &keys) const
{
    Act("key " + keys);
}

void Person::Type(const std::string &text) const
{
    Act("type --delay 10 \"" + text + "\"");
}

void Person::ClickAt(HWND window, POINT place) const
{
    ClientToScreen(window, &place);
    Act("mousemove " + std::to_string(place.x) + " " + std::to_string(place.y) + " click 1");
}

void Person::Click(const std::string &control) const
{
    RECT client;
    GetClientRect(Of(control), &client);
    ClickAt(Of(control), {client.right / 2, client.bottom / 2});
}

POINT Person::PlaceOfRow(const std::string &list, int row) const
{
    RECT place{LVIR_LABEL, 0, 0, 0};
    const HWND window = Of(list);
    InWindow(
        [&]
        {
            SendMessageW(window, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
            SendMessageW(window, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
        });
    return {place.left + 12, (place.top + place.bottom) / 2};
}

void Person::ClickRow(const std::string &list, int row) const
{
    ClickAt(Of(list), PlaceOfRow(list, row));
}

void Person::ClickHeader(const std::string &list, int column) const
{
    RECT place{};
    HWND header = nullptr;
    InWindow(
        [&]
        {
            header = reinterpret_cast<HWND>(SendMessageW(Of(list), LVM_GETHEADER, 0, 0));
            SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
        });
    ClickAt(header, {(place.left + place.right) / 2, (place.top + place.bottom) / 2});
}

void Person::ClickTab(int tab) const
{
    RECT place{};
    InWindow(
        [&]
        { SendMessageW(Of("SSTab1"), TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place)); });
    ClickAt(Of("SSTab1"), {(place.left + place.right) / 2, (place.top + place.bottom) / 2});
}

void Person::ClickButtonOf(HWND box, const wchar_t *caption) const
{
    const HWND button = FindWindowExW(box, nullptr, L"Button", caption);
    ASSERT_NE(button, nullptr);
    ClickAt(button, {10, 10});
}

std::string Person::Focused() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!GetGUIThreadInfo(m_thread, &info) || !info.hwndFocus)
        return "";
    if (info.hwndFocus == m_window)
        return "(form)";
    std::string name = "(box)";
    InWindow(
        [&]
        {
            if (!IsChild(m_window, info.hwndFocus))
                return;
            const window::Binding *const binding = window::Binding::Of(info.hwndFocus);
            name = binding ? binding->Owner().Name() : "(edit)";
        });
    return name;
}

HWND Person::Of(const std::string &control) const
{
    HWND window = nullptr;
    InWindow(
        [&]
        {
            if (const auto *const binding =
                    dynamic_cast<const window::Binding *>(m_form.Controls().Find(control)->GetObserver()))
                window = binding->Window();
        });
    EXPECT_NE(window, nullptr) << control;
    return window;
}

std::wstring Person::TextOf(const std::string &control) const
{
    return Text(Of(control));
}

bool Person::Checked(const std::string &box) const
{
    return SendMessageW(Of(box), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool Person::Enabled(const std::string &control) const
{
    return IsWindowEnabled(Of(control)) != FALSE;
}

bool Person::Dropped(const std::string &combo) const
{
    return SendMessageW(Of(combo), CB_GETDROPPEDSTATE, 0, 0) != 0;
}

int Person::Tab() const
{
    const char *const first[] = {"chkTagKnown", "lvwFormats", "lvwHeadings"};
    int shown = -1;
    for (int tab = 0; tab < 3; ++tab)
        if (IsWindowVisible(Of(first[tab])))
            shown = shown < 0 ? tab : 99;
    return shown;
}

std::wstring Person::Row(const std::string &list, int row) const
{
    wchar_t text[256] = L"";
    LVITEMW item{};
    item.pszText = text;
    item.cchTextMax = 256;
    SendMessageW(Of(list), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

int Person::SelectedRow(const std::string &list) const
{
    return static_cast<int>(
        SendMessageW(Of(list), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}

std::wstring Person::SelectedText(const std::string &list) const
{
    return Row(list, SelectedRow(list));
}

std::wstring Person::Edited(const std::string &list) const
{
    std::wstring text = L"(none)";
    InWindow(
        [&]
        {
            const HWND field = window::LabelEdit::Field(
                static_cast<const window::Binding *>(m_form.Controls().Find(list)->GetObserver())->Window());
            if (field && GetFocus() == field)
                text = Text(field);
        });
    return text;
}

int Person::Arrow(const std::string &list, int column) const
{
    const auto header = reinterpret_cast<HWND>(SendMessageW(Of(list), LVM_GETHEADER, 0, 0));
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    return item.fmt & HDF_SORTUP ? 1 : item.fmt & HDF_SORTDOWN ? -1 : 0;
}

HWND Person::Box() const
{
    HWND box = nullptr;
    while ((box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr)
        if (GetWindowThreadProcessId(box, nullptr) == m_thread && IsWindowVisible(box))
            return box;
    return nullptr;
}

std::wstring Person::BoxText() const
{
    const HWND box = Box();
    // It takes keys when it has the keyboard.
    return box && Focused() == "(box)" ? Text(GetDlgItem(box, 0xFFFF)) : std::wstring();
}

bool Person::Busy() const
{
    bool busy = true;
    InWindow([&] { busy = runtime::HandlerRunning() || HIWORD(GetQueueStatus(QS_INPUT)) != 0; });
    return busy;
}

void Person::InWindow(const std::function<void()> &act) const
{
    SendMessageW(m_window, kRun, 0, reinterpret_cast<LPARAM>(&act));
}

void AtTheEditor(support::TestDatabase &site, const std::function<void(Person &)> &person)
{
    static std::once_flag once;
    std::call_once(once,
                   []
                   {
                       window::Register();
                       editor::RegisterForms();
                   });
    const std::string ini = site.Folder().Path("ZENTRA.INI");
    support::WriteFile(ini, "[System]\r\nNetworkRootDir=" + site.Folder().Path() + "\r\n");
    const auto config = runtime::MakeRef<host::clsConfig>();
    config->SetPartitionID(3);
    config->SetSqlServerName(site.ServerName());
    config->SetSqlDbName(site.DatabaseName());
    config->SetSqlUserName("sa");
    config->SetZentra_INIFile(ini);

    Visit now{person, {}};
    visit = &now;
    SetTimer(nullptr, 0, 10, WhenShown);
    EXPECT_EQ(config->ShowForm(), 0);
    EXPECT_TRUE(now.thread.joinable()) << "the editor has not come up";
    if (now.thread.joinable())
        now.thread.join();
    visit = nullptr;
    // Out of the way of other programs' windows.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    host::Disconnect();
    host::gConnection.reset();
    host::gEnvironment.reset();
}

} // namespace input_tests
