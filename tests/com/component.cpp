// The built DLL as a host meets it.
#include <initguid.h> // the identifiers are defined here

#include "component.h"

#include "platform/windows/wide.h"

#include <cstdio>

namespace com_test
{

namespace
{

// One single-threaded apartment for the whole program.
class Apartment : public testing::Environment
{
public:
    void SetUp() override { ASSERT_EQ(OleInitialize(nullptr), S_OK); }
    void TearDown() override { OleUninitialize(); }
};
[[maybe_unused]] testing::Environment *const apartment = testing::AddGlobalTestEnvironment(new Apartment);

} // namespace

std::wstring ComponentFile(const std::wstring &name)
{
    wchar_t path[MAX_PATH];
    std::wstring file(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return file.substr(0, file.find_last_of(L'\\') + 1) + name;
}

Component::Component(const std::wstring &name) : m_module(LoadLibraryW(ComponentFile(name).c_str()))
{
    EXPECT_NE(m_module, nullptr) << Narrow(name);
}

Component::~Component()
{
    FreeLibrary(m_module);
}

HRESULT Component::GetClassObject(REFCLSID classId, REFIID id, void **object) const
{
    return EntryPoint<HRESULT(STDAPICALLTYPE *)(REFCLSID, REFIID, void **)>("DllGetClassObject")(classId, id, object);
}

HRESULT Component::CanUnload() const
{
    return EntryPoint<HRESULT(STDAPICALLTYPE *)()>("DllCanUnloadNow")();
}

HRESULT Component::Register() const
{
    return EntryPoint<HRESULT(STDAPICALLTYPE *)()>("DllRegisterServer")();
}

HRESULT Component::Unregister() const
{
    return EntryPoint<HRESULT(STDAPICALLTYPE *)()>("DllUnregisterServer")();
}

HRESULT Component::Install(bool install, const wchar_t *commandLine) const
{
    return EntryPoint<HRESULT(STDAPICALLTYPE *)(BOOL, const wchar_t *)>("DllInstall")(install, commandLine);
}

Registered::Registered()
{
    EXPECT_EQ(m_component.Register(), S_OK);
}

Registered::~Registered()
{
    EXPECT_EQ(m_component.Unregister(), S_OK);
}

#define PUBLIC_CLASS(name)                                                                                             \
    {                                                                                                                  \
#name, __uuidof(name), __uuidof(_##name)                                                                       \
    }
const PublicClass kClasses[10] = {PUBLIC_CLASS(clsConfig),   PUBLIC_CLASS(clsFormats),   PUBLIC_CLASS(colFormats),
                                  PUBLIC_CLASS(clsHeadings), PUBLIC_CLASS(colHeadings),  PUBLIC_CLASS(clsSettings),
                                  PUBLIC_CLASS(colSettings), PUBLIC_CLASS(clsPartition), PUBLIC_CLASS(colPartitions),
                                  PUBLIC_CLASS(Collection)};

void VisitMembers(ITypeInfo &dispatch, const std::function<void(ITypeInfo &type, const FUNCDESC &)> &visit)
{
    ComPtr<ITypeInfo> type;
    HREFTYPE reference = 0;
    ASSERT_EQ(dispatch.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
    ASSERT_EQ(dispatch.GetRefTypeInfo(reference, &type), S_OK);
    FUNCDESC *function = nullptr;
    for (UINT i = 0; SUCCEEDED(type->GetFuncDesc(i, &function)); ++i)
    {
        visit(*type.Get(), *function);
        type->ReleaseFuncDesc(function);
    }
}

void SetUpHost(_clsConfig &config, const support::TestDatabase &site, LONG partition)
{
    EXPECT_EQ(config.put_SqlServerName(Text(Wide(site.ServerName())).get()), S_OK);
    EXPECT_EQ(config.put_SqlDbName(Text(Wide(site.DatabaseName())).get()), S_OK);
    EXPECT_EQ(config.put_PartitionID(partition), S_OK);
}

VARIANT Value::Missing()
{
    VARIANT missing;
    VariantInit(&missing);
    missing.vt = VT_ERROR;
    missing.scode = DISP_E_PARAMNOTFOUND;
    return missing;
}

std::string Told(HRESULT result)
{
    char number[16];
    std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(result));
    std::string told = number;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, &info) == S_OK)
    {
        Text description;
        Text source;
        info->GetDescription(&description);
        info->GetSource(&source);
        told += ": " + Narrow(description.str()) + " (" + Narrow(source.str()) + ")";
    }
    return told;
}

std::string Narrow(std::wstring_view text)
{
    return platform::FromWide(text);
}

std::wstring Wide(std::string_view text)
{
    return platform::ToWide(text);
}

} // namespace com_test
