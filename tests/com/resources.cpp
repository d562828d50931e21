// What this process holds of the system: see resources.h.
#include "resources.h"

#include <windows.h>

#include <psapi.h>
#include <winternl.h>

#include <vector>

namespace com_test
{

namespace
{

bool IsMine(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId();
}

BOOL CALLBACK CountMine(HWND window, LPARAM count)
{
    if (IsMine(window))
        ++*reinterpret_cast<unsigned *>(count);
    return TRUE;
}

unsigned CountWindows()
{
    unsigned count = 0;
    EnumChildWindows(GetDesktopWindow(), &CountMine, reinterpret_cast<LPARAM>(&count));
    for (HWND window = nullptr; (window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
        count += IsMine(window);
    return count;
}

bool IsIcon(HICON icon)
{
    ICONINFO info{};
    if (!GetIconInfo(icon, &info))
        return false;
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return true;
}

// A routine of ntdll.dll.
template <class Routine>
Routine SystemRoutine(const char *name)
{
    return reinterpret_cast<Routine>(reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll"), name)));
}

// Handles of menus and icons are even numbers whose upper half may be left out.
unsigned CountUser()
{
    unsigned count = CountWindows();
    for (UINT_PTR handle = 0x20; handle < 0x10000; handle += 2)
        count += IsMenu(reinterpret_cast<HMENU>(handle)) || IsIcon(reinterpret_cast<HICON>(handle));
    return count;
}

// The table of the process's drawing objects, as Wine lays it out: the place of its address in a 32-bit process, and of
// an entry's type, which is 0 for one that is free.
unsigned CountGdi()
{
    constexpr std::size_t kTableInProcess = 0x94, kEntries = 0x4000, kEntrySize = 24, kType = 14;
    using Query = NTSTATUS(NTAPI *)(HANDLE, PROCESSINFOCLASS, void *, ULONG, ULONG *);
    PROCESS_BASIC_INFORMATION basic{};
    SystemRoutine<Query>("NtQueryInformationProcess")(GetCurrentProcess(), ProcessBasicInformation, &basic,
                                                      sizeof basic, nullptr);
    const char *const process = reinterpret_cast<const char *>(basic.PebBaseAddress);
    const char *const table = *reinterpret_cast<const char *const *>(process + kTableInProcess);
    unsigned count = 0;
    for (std::size_t entry = 0; table && entry < kEntries; ++entry)
        count += table[entry * kEntrySize + kType] != 0;
    return count;
}

unsigned CountKernel()
{
    struct Handle
    {
        USHORT process;
        USHORT traced;
        UCHAR type;
        UCHAR flags;
        USHORT value;
        void *object;
        ULONG access;
    };
    constexpr int kSystemHandles = 16;
    std::vector<char> bytes(1 << 20);
    ULONG length = 0;
    using Query = NTSTATUS(NTAPI *)(int, void *, ULONG, ULONG *);
    if (SystemRoutine<Query>("NtQuerySystemInformation")(kSystemHandles, bytes.data(), static_cast<ULONG>(bytes.size()),
                                                         &length) != 0)
        return 0;
    const ULONG all = *reinterpret_cast<const ULONG *>(bytes.data());
    const auto *const handles = reinterpret_cast<const Handle *>(bytes.data() + sizeof(ULONG));
    unsigned count = 0;
    for (ULONG i = 0; i < all; ++i)
        count += handles[i].process == GetCurrentProcessId();
    return count;
}

std::size_t CountHeap()
{
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count; ++i)
    {
        HeapLock(heaps[i]);
        for (PROCESS_HEAP_ENTRY entry{}; HeapWalk(heaps[i], &entry);)
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)
                bytes += entry.cbData;
        HeapUnlock(heaps[i]);
    }
    return bytes;
}

} // namespace

Resources CountResources()
{
    Resources counted;
    const HANDLE process = GetCurrentProcess();
    counted.gdi = GetGuiResources(process, GR_GDIOBJECTS);
    counted.user = GetGuiResources(process, GR_USEROBJECTS);
    DWORD handles = 0;
    GetProcessHandleCount(process, &handles);
    counted.kernel = handles;
    if (counted.gdi == 0)
        counted.gdi = CountGdi();
    if (counted.user == 0)
        counted.user = CountUser();
    if (counted.kernel == 0)
        counted.kernel = CountKernel();
    counted.heap = CountHeap();
    PROCESS_MEMORY_COUNTERS memory{};
    K32GetProcessMemoryInfo(process, &memory, sizeof memory);
    counted.memory = memory.WorkingSetSize;
    return counted;
}

std::string Told(const Resources &resources)
{
    return "GDI " + std::to_string(resources.gdi) + ", USER " + std::to_string(resources.user) + ", handles " +
           std::to_string(resources.kernel) + ", heap " + std::to_string(resources.heap) + " bytes, memory " +
           std::to_string(resources.memory / 1024) + " KiB";
}

} // namespace com_test
