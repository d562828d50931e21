// The editor opened again and again in one host, with edits that are saved or cancelled: nothing of it may stay behind.
#include "component.h"
#include "resources.h"

#include "support/test_database.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace com_test
{

namespace
{

constexpr char kSite[] = R"(
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (2, 'Region', '/', NULL)
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (3, 'Lakeside', '/2/', NULL)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (-1, 'All', '0', 0)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (101, 'Group', '0', 3)
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (2, 'Letter', 101, '0')
INSERT INTO Report_header_formats VALUES (1, 'Bold', 0, 0, 1, 1, 0, 0, 0, 3)
INSERT INTO Report_header_formats VALUES (2, 'Title', 1, 0, 1, 0, 1, 0, 1, 3)
INSERT INTO Report_headers VALUES (7, 'PLAN', 3)
INSERT INTO Report_headers VALUES (8, 'ALLERGIES', 2)
INSERT INTO Report_header_settings VALUES (7, -1, 0, 1, 3)
)";

// A visible window of the class that belongs to this process; null when there is none.
HWND Visible(const wchar_t *windowClass)
{
    DWORD owner = 0;
    for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, windowClass, nullptr)) != nullptr;)
        if (GetWindowThreadProcessId(window, &owner); owner == GetCurrentProcessId() && IsWindowVisible(window))
            return window;
    return nullptr;
}

struct Search
{
    const wchar_t *windowClass;
    const wchar_t *text; // null: any
    HWND found = nullptr;
};

BOOL CALLBACK Visit(HWND window, LPARAM parameter)
{
    auto &wanted = *reinterpret_cast<Search *>(parameter);
    wchar_t words[256];
    GetClassNameW(window, words, 256);
    if (_wcsicmp(words, wanted.windowClass) != 0 || !IsWindowVisible(window))
        return TRUE;
    SendMessageW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(words));
    if (wanted.text && std::wcscmp(words, wanted.text) != 0)
        return TRUE;
    wanted.found = window;
    return FALSE;
}

// The first control on the page that is shown.
HWND Control(HWND form, const wchar_t *windowClass, const wchar_t *text = nullptr)
{
    Search search{windowClass, text};
    EnumChildWindows(form, &Visit, reinterpret_cast<LPARAM>(&search));
    EXPECT_NE(search.found, nullptr) << Narrow(windowClass) << " " << Narrow(text ? text : L"");
    return search.found;
}

void Click(HWND form, const wchar_t *caption)
{
    SendMessageW(Control(form, L"Button", caption), BM_CLICK, 0, 0);
}

void ClickIn(HWND window, const RECT &place)
{
    const LPARAM at = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(window, WM_LBUTTONUP, 0, at);
}

void ShowTab(HWND form, int tab)
{
    const HWND tabs = Control(form, WC_TABCONTROLW);
    RECT place{};
    SendMessageW(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place));
    ClickIn(tabs, place);
}

// Types over the name whose edit is open.
void TypeName(HWND form, const wchar_t *name)
{
    const HWND list = Control(form, WC_LISTVIEWW);
    const auto field = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETEDITCONTROL, 0, 0));
    ASSERT_NE(field, nullptr);
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name));
    SendMessageW(field, WM_KEYDOWN, VK_RETURN, 1);
}

// --- What the user does, one after the other. The last of them saves, so that no connection is open behind it.

void LooksAndCancels(HWND form)
{
    ShowTab(form, 1);
    ShowTab(form, 2);
    Click(form, L"&Cancel");
}

void AddsAndThinksBetterOfIt(HWND form)
{
    ShowTab(form, 1);
    Click(form, L"Bold Heading");
    Click(form, L"&Add");
    TypeName(form, L"Bolder");
    ShowTab(form, 2);
    Click(form, L"&Add");
    TypeName(form, L"PLANS");
    PostMessageW(form, WM_SYSCOMMAND, SC_CLOSE, 0);
}

void SetsAnOptionAndSaves(HWND form)
{
    Click(form, L"Only tag known headings");
    Click(form, L"&Save");
}

void ChangesAFormatAndSaves(HWND form)
{
    ShowTab(form, 1);
    Click(form, L"Bold Heading");
    ShowTab(form, 2);
    Click(form, L"Use setting for all report types");
    Click(form, L"&Save");
}

constexpr void (*kSessions[])(HWND) = {&LooksAndCancels, &AddsAndThinksBetterOfIt, &SetsAnOptionAndSaves,
                                       &ChangesAFormatAndSaves};

// In the host's own thread, as its timer: no thread and nothing of another's is among what is counted.
class Person
{
public:
    static constexpr UINT kEvery = 10;

    Person() : m_timer(SetTimer(nullptr, 0, kEvery, &Look)) {}
    ~Person() { KillTimer(nullptr, m_timer); }

    static void Does(void (*session)(HWND)) { s_session = session; }
    static int BoxesAnswered() { return s_boxes; }
    // In the editor that was seen last.
    static int Labels() { return s_labels; }

private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD)
    {
        if (const HWND box = Visible(L"#32770"); box && GetDlgItem(box, 0xFFFF))
        {
            ++s_boxes;
            SendMessageW(box, WM_COMMAND, IDYES, 0);
            return;
        }
        const HWND form = Visible(L"KVHEADERS.Form");
        if (!s_session || !form)
            return;
        s_labels = 0;
        EnumChildWindows(form, &CountLabel, 0);
        (*std::exchange(s_session, nullptr))(form);
    }

    static BOOL CALLBACK CountLabel(HWND window, LPARAM)
    {
        wchar_t name[16];
        GetClassNameW(window, name, 16);
        s_labels += _wcsicmp(name, L"Static") == 0;
        return TRUE;
    }

    static inline void (*s_session)(HWND) = nullptr;
    static inline int s_boxes = 0;
    static inline int s_labels = 0;
    UINT_PTR m_timer;
};

class Endurance : public testing::Test
{
protected:
    Endurance()
    {
        database.Run(kSite);
        config->put_SqlServerName(Text(Wide(database.ServerName())).get());
        config->put_SqlDbName(Text(Wide(database.DatabaseName())).get());
        config->put_PartitionID(3);
        const std::string ini = database.Folder().Path("ZENTRA.INI");
        support::WriteFile(ini, "[System]\r\nNetworkRootDir=Z:\\\r\n");
        config->put_Zentra_INIFile(Text(Wide(ini)).get());
    }

    // Opens the editor so many times, each kind of session in turn.
    void Open(int times)
    {
        for (int time = 0; time < times; ++time)
        {
            Person::Does(kSessions[static_cast<std::size_t>(time) % std::size(kSessions)]);
            unsigned char result = 9;
            ASSERT_EQ(config->ShowForm(&result), S_OK);
            ASSERT_EQ(result, 0);
        }
    }

    std::ptrdiff_t ConnectionsOpen()
    {
        const std::string log = support::ReadFile(database.Folder().Path("log"));
        std::ptrdiff_t open = 0;
        for (std::size_t line = 0; line < log.size(); line = log.find('\n', line) + 1)
            open += log.compare(line, 8, "connect\t") == 0 ? 1 : log.compare(line, 11, "disconnect\t") == 0 ? -1 : 0;
        return open;
    }

    support::TestDatabase database;
    const Component component;
    const ComPtr<_clsConfig> config = component.Create<_clsConfig, clsConfig>();
    const Person person;
};

// How often the editor is opened; KV_OPENINGS asks for more.
int Openings()
{
    constexpr int kOpenings = 60;
    const char *const asked = std::getenv("KV_OPENINGS");
    return asked ? std::atoi(asked) : kOpenings;
}

TEST_F(Endurance, NothingStaysBehind)
{
    // The first ones load what the system keeps for good: libraries, fonts, window classes.
    constexpr int kBefore = 8;
    constexpr std::size_t kMemorySlack = 1 << 20;
    Open(kBefore);
    const std::ptrdiff_t connections = ConnectionsOpen();
    const Resources before = CountResources();
    std::printf("before:       %s\n", Told(before).c_str());
    const int openings = Openings();
    const int rounds = openings / 20;
    Resources after = before;
    for (int opened = 0, round = 1; round <= rounds; ++round)
    {
        Open(20);
        opened += 20;
        after = CountResources();
        if (opened == 20 || opened == 100 || opened % 200 == 0 || round == rounds)
            std::printf("after %6d: %s\n", opened, Told(after).c_str());
    }
    EXPECT_EQ(after.gdi, before.gdi);
    EXPECT_EQ(after.user, before.user);
    EXPECT_EQ(after.kernel, before.kernel);
    // Wine loses 12 bytes of its own with each themed label that was given a font; a message box has one.
    constexpr std::size_t kLostWithALabel = 12, kSlack = 512;
    const int labels = Person::Labels() * rounds * 20 + rounds * 5;
    EXPECT_LE(after.heap, before.heap + static_cast<std::size_t>(labels) * kLostWithALabel + kSlack);
    EXPECT_LE(after.memory, before.memory + kMemorySlack);
    EXPECT_EQ(ConnectionsOpen(), connections);
    EXPECT_EQ(connections, 0) << "the last session saves, and disconnects";
    EXPECT_EQ(Person::BoxesAnswered(), (kBefore + rounds * 20) / 4);
}

// The count sees one of each kind.
TEST(Counting, SeesWhatIsHeld)
{
    const Resources before = CountResources();
    const HBRUSH brush = CreateSolidBrush(1);
    const HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr);
    const HMENU menu = CreateMenu();
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_READ, &key);
    void *const block = HeapAlloc(GetProcessHeap(), 0, 1000);
    const Resources held = CountResources();
    EXPECT_EQ(held.gdi, before.gdi + 1);
    EXPECT_EQ(held.user, before.user + 2);
    EXPECT_EQ(held.kernel, before.kernel + 2);
    EXPECT_GE(held.heap, before.heap + 1000);
    HeapFree(GetProcessHeap(), 0, block);
    RegCloseKey(key);
    CloseHandle(event);
    DestroyMenu(menu);
    DestroyWindow(window);
    DeleteObject(brush);
    const Resources after = CountResources();
    EXPECT_EQ(after.gdi, before.gdi);
    EXPECT_EQ(after.user, before.user);
    EXPECT_EQ(after.kernel, before.kernel);
}

} // namespace

} // namespace com_test
