// Watching what the component asks the system to open: its import of the shell's function is replaced.
#include "windowed/component.h"

#include "platform/code_page.h"
#include "script/failure.h"

#include <shellapi.h>

#include <cstring>

namespace scenario
{

namespace
{

std::function<void(const std::string &)> &Opened()
{
    static std::function<void(const std::string &)> opened;
    return opened;
}

HINSTANCE WINAPI WatchedShellExecute(HWND owner, const char *operation, const char *file, const char *parameters,
                                     const char *folder, INT show)
{
    const DWORD attributes = GetFileAttributesA(file);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY))
        return ShellExecuteA(owner, operation, file, parameters, folder, show);
    Opened()(platform::FromAnsi(file));
    constexpr INT_PTR kStarted = 42;
    return reinterpret_cast<HINSTANCE>(kStarted);
}

template <class T>
T *At(HMODULE module, DWORD place)
{
    return reinterpret_cast<T *>(reinterpret_cast<char *>(module) + place);
}

// The place where a module keeps the address of a function that it imports by name; null when it imports none such.
DWORD_PTR *Import(HMODULE module, const char *name)
{
    const auto *const header = At<IMAGE_NT_HEADERS>(module, At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
    const IMAGE_DATA_DIRECTORY &imports = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto *library = At<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress); library->Name; ++library)
    {
        const auto *names = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto *places = At<DWORD_PTR>(module, library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++places)
            if (!IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal) &&
                std::strcmp(
                    reinterpret_cast<const char *>(At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData)->Name),
                    name) == 0)
                return places;
    }
    return nullptr;
}

} // namespace

void WatchOpenedFiles(std::function<void(const std::string &path)> opened)
{
    const HMODULE component = GetModuleHandleW(L"KVHEADERS.dll");
    DWORD_PTR *const place = component ? Import(component, "ShellExecuteA") : nullptr;
    DWORD before = 0;
    if (!place || !VirtualProtect(place, sizeof *place, PAGE_READWRITE, &before))
        throw Refusal("KVHEADERS.dll opens no files by ShellExecuteA");
    Opened() = std::move(opened);
    *place = reinterpret_cast<DWORD_PTR>(&WatchedShellExecute);
    VirtualProtect(place, sizeof *place, before, &before);
}

} // namespace scenario
