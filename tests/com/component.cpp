// The built DLL as a host meets it.
#include <initguid.h> // the identifiers are defined here

#include <cguid.h>

#include "component.h"

#include "platform/windows/wide.h"

#include <algorithm>
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

std::string Hexadecimal(HRESULT result)
{
    char number[16];
    std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(result));
    return number;
}

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
    ComPtr<IErrorInfo> info;
    Text description, source;
    if (GetErrorInfo(0, &info) != S_OK)
        return Hexadecimal(result);
    info->GetDescription(&description);
    info->GetSource(&source);
    return Hexadecimal(result) + ": " + Narrow(description.str()) + " (" + Narrow(source.str()) + ")";
}

Outcome CallByName(IDispatch &object, std::wstring name, WORD kind, std::vector<VARIANT> arguments)
{
    Outcome outcome;
    LPOLESTR names = name.data();
    DISPID member = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
    outcome.result = outcome.error = object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
    if (FAILED(outcome.result))
        return outcome;
    std::reverse(arguments.begin(), arguments.end());
    const bool assigns = kind & (kPut | kPutReference);
    DISPPARAMS given = {arguments.data(), assigns ? &put : nullptr, static_cast<UINT>(arguments.size()), assigns};
    EXCEPINFO exception = {};
    outcome.result = outcome.error =
        object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &given, &outcome.value, &exception, nullptr);
    if (outcome.result == DISP_E_EXCEPTION)
    {
        outcome.error = exception.scode;
        const auto take = [](BSTR text)
        {
            const std::string narrow = Narrow({text ? text : L"", SysStringLen(text)});
            SysFreeString(text);
            return narrow;
        };
        outcome.told = Hexadecimal(exception.scode) + ": " + take(exception.bstrDescription);
        outcome.told += " (" + take(exception.bstrSource) + ")";
    }
    return outcome;
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
