// Registration writes what hosts look for, and its removal leaves the registry as it was.
#include "component.h"
#include "programs.h"

#include "platform/windows/handle.h"

#include <map>
#include <vector>

namespace com_test
{

namespace
{

using Key = platform::UniqueHandle<HKEY, RegCloseKey>;

// Every key and value below a path: "path\name" and the raw data.
using Snapshot = std::map<std::wstring, std::wstring>;

constexpr int kAll = 99;

// Down to so many levels below the children of the key; of those of the last level the names alone.
void Collect(HKEY key, const std::wstring &path, Snapshot &into, int levels)
{
    wchar_t name[512];
    for (DWORD i = 0;; ++i)
    {
        DWORD nameLength = 512;
        BYTE data[4096];
        DWORD length = sizeof data;
        DWORD type = 0;
        const LSTATUS status = RegEnumValueW(key, i, name, &nameLength, nullptr, &type, data, &length);
        if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA)
            break;
        if (status == ERROR_MORE_DATA)
            length = 0;
        into[path + L"\\\\" + name] =
            std::to_wstring(type) + L":" + std::wstring(reinterpret_cast<wchar_t *>(data), length / 2);
    }
    for (DWORD i = 0; RegEnumKeyW(key, i, name, 512) == ERROR_SUCCESS; ++i)
    {
        into[path + L"\\" + name] = L"key";
        HKEY child = nullptr;
        if (levels == 0 || RegOpenKeyExW(key, name, 0, KEY_READ, &child) != ERROR_SUCCESS)
            continue;
        const Key opened(child);
        Collect(child, path + L"\\" + name, into, levels - 1);
    }
}

Snapshot TakeSnapshot(int levels)
{
    Snapshot snapshot;
    for (const auto &[root, name] : {std::pair(HKEY_LOCAL_MACHINE, L"HKLM"), std::pair(HKEY_CURRENT_USER, L"HKCU")})
    {
        HKEY key = nullptr;
        if (RegOpenKeyExW(root, L"Software\\Classes", 0, KEY_READ, &key) != ERROR_SUCCESS)
            continue;
        const Key opened(key);
        snapshot[name] = L"key";
        Collect(key, name, snapshot, levels);
    }
    return snapshot;
}

// What is in one and not, or not so, in the other.
std::string Difference(const Snapshot &a, const Snapshot &b)
{
    std::string text;
    const auto only = [&text](const Snapshot &here, const Snapshot &there, const char *sign)
    {
        for (const auto &[path, data] : here)
        {
            const auto found = there.find(path);
            if (found == there.end() || found->second != data)
                text += sign + Narrow(path) + " = " + Narrow(data) + "\n";
        }
    };
    only(a, b, "- ");
    only(b, a, "+ ");
    return text;
}

std::wstring Read(HKEY root, const std::wstring &path, const wchar_t *name = nullptr)
{
    wchar_t text[512] = L"";
    DWORD length = sizeof text;
    if (RegGetValueW(root, (L"Software\\Classes\\" + path).c_str(), name, RRF_RT_REG_SZ, nullptr, text, &length) !=
        ERROR_SUCCESS)
        return L"(none)";
    return text;
}

std::wstring IdText(REFGUID id)
{
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

void ExpectRegistered(HKEY root)
{
    for (const PublicClass &known : kClasses)
    {
        const std::wstring name = L"KVHEADERS." + Wide(known.name);
        SCOPED_TRACE(Narrow(name));
        const std::wstring id = IdText(known.id);
        EXPECT_EQ(Read(root, name + L"\\CLSID"), id);
        EXPECT_EQ(Read(root, L"CLSID\\" + id), name);
        EXPECT_EQ(Read(root, L"CLSID\\" + id + L"\\ProgID"), name);
        EXPECT_EQ(Read(root, L"CLSID\\" + id + L"\\InprocServer32"), ComponentFile());
        EXPECT_EQ(Read(root, L"CLSID\\" + id + L"\\InprocServer32", L"ThreadingModel"), L"(none)");
        EXPECT_EQ(Read(root, L"CLSID\\" + id + L"\\TypeLib"), IdText(LIBID_KVHEADERS));
        EXPECT_EQ(Read(root, L"CLSID\\" + id + L"\\Version"), Wide(kTypeLibraryVersion));
    }
    const std::wstring library = L"TypeLib\\" + IdText(LIBID_KVHEADERS) + L"\\" + Wide(kTypeLibraryVersion);
    EXPECT_EQ(Read(root, library), L"KVHEADERS Speech Recognition Headings Editor");
    EXPECT_EQ(Read(root, library + L"\\0\\win32"), ComponentFile());
    EXPECT_EQ(Read(root, library + L"\\FLAGS"), L"0");
    EXPECT_EQ(Read(root, library + L"\\HELPDIR") + L"\\KVHEADERS.dll", ComponentFile());
    const std::wstring interfaceKey = L"Interface\\" + IdText(__uuidof(_colFormats));
    EXPECT_EQ(Read(root, interfaceKey), L"_colFormats");
    EXPECT_EQ(Read(root, interfaceKey + L"\\TypeLib"), IdText(LIBID_KVHEADERS));
    EXPECT_EQ(Read(root, interfaceKey + L"\\TypeLib", L"Version"), Wide(kTypeLibraryVersion));
    EXPECT_EQ(Read(root, interfaceKey + L"\\ProxyStubClsid32"), L"{00020424-0000-0000-C000-000000000046}");
    EXPECT_EQ(Read(root, L"Interface\\" + IdText(__uuidof(_Collection))), L"_Collection");
}

// By the system's own program, in the registry that all programs share.
TEST(RegistrationByRegsvr32, IsForTheMachineOrForOneUserAndLeavesNothing)
{
    struct Scope
    {
        std::wstring options;
        HKEY root;
        HKEY other;
    };
    const std::wstring file = L" \"" + ComponentFile() + L"\"";
    constexpr int kNamesOfClasses = 1; // the whole takes seconds
    const Snapshot before = TakeSnapshot(kNamesOfClasses);
    for (const Scope &scope :
         {Scope{L"", HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}, {L" /n /i:user", HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}})
    {
        ASSERT_EQ(RunProgram(L"regsvr32.exe /s" + scope.options + file).code, 0u);
        ExpectRegistered(scope.root);
        EXPECT_EQ(Read(scope.other, L"KVHEADERS.clsConfig\\CLSID"), L"(none)");
        EXPECT_EQ(RunProgram(L"regsvr32.exe /s /u" + scope.options + file).code, 0u);
    }
    EXPECT_EQ(Difference(before, TakeSnapshot(kNamesOfClasses)), "");
}

// A registry of this process alone, with another component's entries for the machine. Each test leaves it as it was.
class Registration : public testing::Test
{
protected:
    Registration()
    {
        std::vector<Key> keys;
        for (const wchar_t *name : {L"machine", L"user"})
        {
            HKEY key = nullptr;
            EXPECT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, (kPrivate + name).c_str(), &key), ERROR_SUCCESS);
            keys.emplace_back(key);
        }
        EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, keys[0].get()), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, keys[1].get()), ERROR_SUCCESS);
        WriteOther(HKEY_LOCAL_MACHINE);
        before = Now();
    }
    ~Registration() override
    {
        EXPECT_EQ(Difference(before, Now()), "");
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, kPrivate.substr(0, kPrivate.size() - 1).c_str()), ERROR_SUCCESS);
    }

    static void WriteOther(HKEY root)
    {
        for (const wchar_t *path : {L"CLSID\\{other}\\InprocServer32", L"Interface\\{other}", L"TypeLib\\{other}\\1.0"})
            EXPECT_EQ(
                RegSetKeyValueW(root, (L"Software\\Classes\\" + std::wstring(path)).c_str(), L"", REG_SZ, L"x", 4),
                ERROR_SUCCESS);
    }

    static Snapshot Now() { return TakeSnapshot(kAll); }

    inline static const std::wstring kPrivate = L"Software\\KVHEADERS test\\";
    const Component component;
    Snapshot before;
};

// An earlier version's entries: its own file, and a threading model.
void WriteEarlierVersion()
{
    const std::wstring server = L"Software\\Classes\\CLSID\\" + IdText(__uuidof(clsConfig)) + L"\\InprocServer32";
    for (const auto &[name, value] : {std::pair(L"", L"C:\\earlier.dll"), std::pair(L"ThreadingModel", L"Apartment")})
        EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, server.c_str(), name, REG_SZ, value,
                                  static_cast<DWORD>(2 * (wcslen(value) + 1))),
                  ERROR_SUCCESS);
}

TEST_F(Registration, OverAnotherIsAsTheFirst)
{
    EXPECT_EQ(component.Register(), S_OK);
    const Snapshot once = Now();
    EXPECT_EQ(component.Register(), S_OK);
    EXPECT_EQ(Difference(once, Now()), "");
    WriteEarlierVersion();
    EXPECT_EQ(component.Register(), S_OK);
    EXPECT_EQ(Difference(once, Now()), "");
    EXPECT_EQ(component.Unregister(), S_OK);
    EXPECT_EQ(component.Unregister(), S_OK) << "what is not there need not be removed";
    EXPECT_EQ(component.CanUnload(), S_OK);
}

// A key that nothing lasting can be made below: it goes when Windows ends.
class Obstacle
{
public:
    explicit Obstacle(const std::wstring &path) : m_path(L"Software\\Classes\\" + path)
    {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, m_path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                                  nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
    ~Obstacle() { EXPECT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, m_path.c_str()), ERROR_SUCCESS); }

private:
    const std::wstring m_path;
};

TEST_F(Registration, ThatFailsLeavesWhatWasThereBefore)
{
    const std::wstring obstacles[] = {L"KVHEADERS.Collection", L"Interface\\" + IdText(__uuidof(_Collection)),
                                      L"TypeLib\\" + IdText(LIBID_KVHEADERS) + L"\\" + Wide(kTypeLibraryVersion)};
    for (const bool earlier : {false, true})
        for (const std::wstring &path : obstacles)
        {
            SCOPED_TRACE(Narrow(path) + (earlier ? " over an earlier one" : ""));
            if (earlier)
            {
                EXPECT_EQ(component.Register(), S_OK);
                WriteEarlierVersion();
                EXPECT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + path).c_str()), ERROR_SUCCESS);
            }
            Snapshot there;
            {
                const Obstacle obstacle(path);
                there = Now();
                EXPECT_LT(component.Register(), 0);
                EXPECT_EQ(Difference(there, Now()), "");
            }
            EXPECT_EQ(component.Unregister(), S_OK);
        }
}

TEST_F(Registration, TheUsersEntriesOutliveTheMachines)
{
    EXPECT_EQ(component.Install(true, nullptr), S_OK);
    EXPECT_EQ(component.Install(true, L"user"), S_OK);
    EXPECT_EQ(component.Install(false, L""), S_OK);
    ExpectRegistered(HKEY_CURRENT_USER);
    EXPECT_EQ(component.Install(false, L"USER"), S_OK);
}

TEST_F(Registration, KeepsWhatOthersHaveInTheUsersClasses)
{
    WriteOther(HKEY_CURRENT_USER);
    before = Now();
    EXPECT_EQ(component.Install(true, L"user"), S_OK);
    EXPECT_EQ(component.Install(false, L"user"), S_OK);
}

TEST_F(Registration, RefusesAnUnknownCommandLine)
{
    for (const wchar_t *line : {L"everybody", L" ", L"user ", L"users", L"use", L"user machine", L"\xFFFF"})
        for (const bool install : {true, false})
            EXPECT_EQ(component.Install(install, line), E_INVALIDARG) << Narrow(line);
}

} // namespace

} // namespace com_test
