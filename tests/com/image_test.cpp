// The DLL as a file: for 32-bit Windows, with the entry points of a COM server and nothing else, in need of nothing but
// the system.
#include "component.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

namespace com_test
{

namespace
{

// A portable executable, read from its bytes.
class Image
{
public:
    Image()
    {
        std::ifstream file(ComponentFile().c_str(), std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(file), {});
    }

    const IMAGE_NT_HEADERS32 &Headers() const { return At<IMAGE_NT_HEADERS32>(At<IMAGE_DOS_HEADER>(0).e_lfanew); }

    std::vector<std::string> Exports() const
    {
        const auto &table = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
        const DWORD *names = &At<DWORD>(Offset(table.AddressOfNames));
        std::vector<std::string> found;
        for (DWORD i = 0; i < table.NumberOfNames; ++i)
            found.push_back(&At<char>(Offset(names[i])));
        EXPECT_EQ(table.NumberOfFunctions, table.NumberOfNames) << "exports without a name";
        return found;
    }

    std::set<std::string> Imports() const
    {
        std::set<std::string> found;
        for (const auto *entry = &Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT); entry->Name;
             ++entry)
        {
            std::string name = &At<char>(Offset(entry->Name));
            std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
            found.insert(name);
        }
        return found;
    }

private:
    template <class T>
    const T &At(std::size_t offset) const
    {
        return *reinterpret_cast<const T *>(m_bytes.data() + offset);
    }
    template <class T>
    const T &Directory(int index) const
    {
        return At<T>(Offset(Headers().OptionalHeader.DataDirectory[index].VirtualAddress));
    }
    std::size_t Offset(DWORD address) const
    {
        const IMAGE_SECTION_HEADER *section = IMAGE_FIRST_SECTION(&Headers());
        for (int i = 0; i < Headers().FileHeader.NumberOfSections; ++i, ++section)
            if (address >= section->VirtualAddress && address < section->VirtualAddress + section->SizeOfRawData)
                return address - section->VirtualAddress + section->PointerToRawData;
        ADD_FAILURE() << "address " << address << " is in no section";
        return 0;
    }

    std::vector<char> m_bytes;
};

TEST(Image, IsA32BitDll)
{
    const Image image;
    EXPECT_EQ(image.Headers().FileHeader.Machine, IMAGE_FILE_MACHINE_I386);
    EXPECT_EQ(image.Headers().OptionalHeader.Magic, IMAGE_NT_OPTIONAL_HDR32_MAGIC);
    EXPECT_NE(image.Headers().FileHeader.Characteristics & IMAGE_FILE_DLL, 0);
}

TEST(Image, ExportsTheEntryPointsOfAComServerAlone)
{
    const std::vector<std::string> expected = {"DllCanUnloadNow", "DllGetClassObject", "DllInstall",
                                               "DllRegisterServer", "DllUnregisterServer"};
    EXPECT_EQ(Image().Exports(), expected);
}

TEST(Image, ImportsSystemDllsAlone)
{
    const std::set<std::string> system = {
        "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll",  "kernel32.dll", "msvcrt.dll", "odbc32.dll",
        "ole32.dll",    "oleaut32.dll", "shell32.dll",  "user32.dll", "uxtheme.dll",  "version.dll"};
    const std::set<std::string> imports = Image().Imports();
    EXPECT_FALSE(imports.empty());
    for (const std::string &name : imports)
        EXPECT_TRUE(system.count(name)) << name;
}

} // namespace

} // namespace com_test
