// The DLL as a file: the entry points of a COM server and nothing else, in need of nothing but the system. That it is
// one for 32-bit Windows shows wherever this program loads it.
#include "component.h"

#include <algorithm>
#include <set>
#include <vector>

namespace com_test
{

namespace
{

// The headers and tables of the component as the system has laid them out in memory.
class Image : public testing::Test
{
protected:
    template <class T>
    const T *At(DWORD address) const
    {
        return reinterpret_cast<const T *>(reinterpret_cast<const char *>(GetModuleHandleW(L"KVHEADERS.dll")) +
                                           address);
    }
    template <class T>
    const T *Directory(int index) const
    {
        const auto *headers = At<IMAGE_NT_HEADERS32>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
        return At<T>(headers->OptionalHeader.DataDirectory[index].VirtualAddress);
    }

    const Component component;
};

TEST_F(Image, ExportsTheEntryPointsOfAComServerAlone)
{
    const auto &table = *Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    std::vector<std::string> found;
    for (DWORD i = 0; i < table.NumberOfNames; ++i)
        found.push_back(At<char>(At<DWORD>(table.AddressOfNames)[i]));
    EXPECT_EQ(found, (std::vector<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllInstall",
                                               "DllRegisterServer", "DllUnregisterServer"}));
    EXPECT_EQ(table.NumberOfFunctions, table.NumberOfNames) << "exports without a name";
}

TEST_F(Image, ImportsSystemDllsAlone)
{
    const std::set<std::string> system = {
        "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll",  "kernel32.dll", "msvcrt.dll", "odbc32.dll",
        "ole32.dll",    "oleaut32.dll", "shell32.dll",  "user32.dll", "uxtheme.dll",  "version.dll"};
    const auto *entry = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
    EXPECT_NE(entry->Name, 0u);
    for (; entry->Name; ++entry)
    {
        std::string name = At<char>(entry->Name);
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
        EXPECT_TRUE(system.count(name)) << name;
    }
}

} // namespace

} // namespace com_test
