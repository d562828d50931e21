// The rules of COM: identity, counts, class objects, loading and unloading; and what the DLL exports and imports.
#include "component.h"
#include "resources.h"

#include <ocidl.h>

#include <algorithm>
#include <set>
#include <vector>

namespace com_test
{

namespace
{

using Objects = ComponentTest;

TEST_F(Objects, ARecordOutlivesItsObjectAndComesBackWithItsValues)
{
    const auto settings = component.Create<_colSettings, colSettings>();
    auto setting = component.Create<_clsSettings, clsSettings>();
    SHORT account = 31;
    EXPECT_EQ(setting->put_HospitalID(&account), S_OK);
    _clsSettings *argument = setting.Get();
    EXPECT_EQ(settings->AddSettingtoCollection(&argument), S_OK);
    setting.Reset();
    EXPECT_EQ(settings->get_Item(&Value(1), &setting), S_OK);
    account = 0;
    EXPECT_EQ(setting->get_HospitalID(&account), S_OK);
    EXPECT_EQ(account, 31);
}

TEST_F(Objects, TellTheirClass)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    ComPtr<IProvideClassInfo> provider;
    ASSERT_EQ(config.As(&provider), S_OK);
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(provider->GetClassInfo(&type), S_OK);
    TYPEATTR *attributes = nullptr;
    ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == __uuidof(clsConfig));
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    type->ReleaseTypeAttr(attributes);
    EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);

    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(config.As(&support), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(_clsConfig)), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(_clsFormats)), S_FALSE);
}

TEST_F(Objects, ClassObjectsRefuseWhatTheyDoNotDo)
{
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(component.GetClassObject(__uuidof(clsConfig), IID_PPV_ARGS(&factory)), S_OK);
    const auto outer = component.Create<_clsFormats, clsFormats>();
    void *object = &component;
    EXPECT_EQ(factory->CreateInstance(outer.Get(), __uuidof(IUnknown), &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
    object = &component;
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(_clsFormats), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IUnknown), nullptr), E_POINTER);
    object = &component;
    EXPECT_EQ(component.GetClassObject(__uuidof(_Collection), __uuidof(IClassFactory), &object),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(component.GetClassObject(__uuidof(clsConfig), __uuidof(IDispatch), &object), E_NOINTERFACE);
    EXPECT_EQ(component.GetClassObject(__uuidof(clsConfig), __uuidof(IClassFactory), nullptr), E_POINTER);
}

TEST_F(Objects, KeepTheComponentLoaded)
{
    EXPECT_EQ(component.CanUnload(), S_OK);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(component.GetClassObject(__uuidof(colFormats), IID_PPV_ARGS(&factory)), S_OK);
    EXPECT_EQ(component.CanUnload(), S_FALSE) << "a class object";
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    ComPtr<_colFormats> formats;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&formats)), S_OK);
    factory.Reset();
    EXPECT_EQ(component.CanUnload(), S_FALSE) << "a lock and an object";
    ASSERT_EQ(component.GetClassObject(__uuidof(colFormats), IID_PPV_ARGS(&factory)), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.Reset();
    EXPECT_EQ(component.CanUnload(), S_FALSE) << "an object";
    ComPtr<_Collection> elements;
    EXPECT_EQ(formats->get_ColFormatInfo(&elements), S_OK);
    formats.Reset();
    EXPECT_EQ(component.CanUnload(), S_FALSE) << "a collection";
    ComPtr<IUnknown> enumeration;
    EXPECT_EQ(elements->get__NewEnum(&enumeration), S_OK);
    elements.Reset();
    EXPECT_EQ(component.CanUnload(), S_FALSE) << "an enumeration";
    enumeration.Reset();
    EXPECT_EQ(component.CanUnload(), S_OK);
}

TEST_F(Objects, TheConfigurationInUseDoesNotKeepTheComponentLoaded)
{
    component.Create<_clsConfig, clsConfig>();
    EXPECT_EQ(component.CanUnload(), S_OK);
}

TEST_F(Objects, TellTheVersionOfTheVersionResource)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    Text version;
    ASSERT_EQ(config->get_Version(&version), S_OK);
    std::vector<char> resource(GetFileVersionInfoSizeW(ComponentFile().c_str(), nullptr));
    ASSERT_TRUE(GetFileVersionInfoW(ComponentFile().c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()));
    VS_FIXEDFILEINFO *info = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void **>(&info), &length));
    EXPECT_EQ(version.str(), std::to_wstring(HIWORD(info->dwFileVersionMS)) + L"." +
                                 std::to_wstring(LOWORD(info->dwFileVersionMS)) + L"." +
                                 std::to_wstring(LOWORD(info->dwFileVersionLS)));
}

TEST_F(Objects, SetNothingInACallThatFails)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    SHORT id = 12;
    Text name(L"Bold heading");
    VARIANT_BOOL yes = VARIANT_TRUE;
    EXPECT_EQ(format->FillFields(&id, name.Reference(), &yes, &yes, &yes, &yes, &yes, &yes, &yes, &yes, nullptr),
              E_POINTER);
    EXPECT_EQ(format->get_FormatID(&id), S_OK);
    EXPECT_EQ(id, 0);
}

// A host in C++ can pass any pointer for any other.
TEST_F(Objects, KnowTheirOwnAmongTheObjectsThatTheyAreGiven)
{
    const auto settings = component.Create<_colSettings, colSettings>();
    const auto heading = component.Create<_clsHeadings, clsHeadings>();
    const auto setting = component.Create<_clsSettings, clsSettings>();
    _clsSettings *argument = reinterpret_cast<_clsSettings *>(heading.Get());
    EXPECT_EQ(settings->AddSettingtoCollection(&argument), static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(Told(0), "0x00000000: Type mismatch (KVHEADERS)");
    ComPtr<IDispatch> foreign;
    CLSID id;
    ASSERT_EQ(CLSIDFromProgID(L"Scripting.Dictionary", &id), S_OK);
    ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&foreign)), S_OK);
    EXPECT_EQ(CallByName(*settings.Get(), L"AddSettingtoCollection", kCall, {Value(foreign.Get())}).told,
              "0x800A000D: Type mismatch (KVHEADERS)");
    argument = nullptr;
    EXPECT_EQ(settings->AddSettingtoCollection(&argument), static_cast<HRESULT>(0x800A005B));
    argument = setting.Get();
    EXPECT_EQ(settings->AddSettingtoCollection(&argument), S_OK);
    EXPECT_EQ(argument, setting.Get()) << "refers to the same object on return";
    ComPtr<_clsSettings> first;
    EXPECT_EQ(settings->get_Item(&Value(1), &first), S_OK);
    EXPECT_EQ(first.Get(), setting.Get());
    EXPECT_EQ(settings->get_Item(&Value(2), &first), S_OK);
    EXPECT_EQ(first.Get(), nullptr) << "nothing else has been added";
}

TEST(Loading, TheSystemFindsTheComponentAndLetsItGo)
{
    const Registered registered;
    const Component component;
    for (int round = 0; round < 2; ++round)
    {
        ComPtr<_clsConfig> config;
        ASSERT_EQ(CoCreateInstance(__uuidof(clsConfig), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&config)), S_OK);
        CoFreeUnusedLibrariesEx(0, 0);
        LONG partition = 0;
        EXPECT_EQ(config->get_PartitionID(&partition), S_OK) << "an object in use keeps it";
        config.Reset();
        EXPECT_EQ(component.CanUnload(), S_OK);
        CoFreeUnusedLibrariesEx(0, 0);
    }
}

TEST_F(Objects, LeaveNoMemoryBehind)
{
    const auto round = [this]
    {
        const auto partitions = component.Create<_colPartitions, colPartitions>();
        const auto partition = component.Create<_clsPartition, clsPartition>();
        ComPtr<_Collection> elements;
        EXPECT_EQ(partitions->get_colPartitions(&elements), S_OK);
        const auto add = [&](const wchar_t *key)
        { return elements->Add(Value(partition.Get()), Value(key), Value::Missing(), Value::Missing()); };
        EXPECT_EQ(add(L"a key that is longer than a short text"), S_OK);
        EXPECT_NE(add(L"A KEY that is longer than a short text"), S_OK);
        Told(0);
        ComPtr<IUnknown> enumeration;
        EXPECT_EQ(elements->get__NewEnum(&enumeration), S_OK);
        Text name(L"a name that is longer than a short text");
        EXPECT_EQ(partition->put_m_strPartitionName(name.get()), S_OK);
        Text back;
        EXPECT_EQ(partition->get_m_strPartitionName(&back), S_OK);
        EXPECT_EQ(CallByName(*partition.Get(), L"SetPartitionID", kCall, {Value(3)}).result, S_OK);
    };
    // A leak takes at least a small block a round, in every series; what the system's heap keeps for later, in the
    // first.
    constexpr std::size_t kRounds = 1000, kLeastBlock = 16;
    std::size_t lost = kRounds * kLeastBlock;
    for (int series = 0; series < 10 && lost >= kRounds * kLeastBlock; ++series)
    {
        const std::size_t before = CountResources().heap;
        for (std::size_t i = 0; i < kRounds; ++i)
            round();
        const std::size_t after = CountResources().heap;
        lost = after > before ? after - before : 0;
    }
    EXPECT_LT(lost, kRounds * kLeastBlock);
}

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
