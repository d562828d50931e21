// The built DLL as a host meets it, and small helpers for the tests of its COM face.
#pragma once

#include <windows.h>

#include <ole2.h>

#include "kvheaders_idl.h"
#include "support/test_database.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace com_test
{

using Microsoft::WRL::ComPtr;

// Of the build.
inline const std::string kTypeLibraryVersion =
    std::to_string(KVHEADERS_VERSION_MAJOR) + "." + std::to_string(KVHEADERS_VERSION_MINOR);
inline const std::string kVersion = kTypeLibraryVersion + "." + std::to_string(KVHEADERS_VERSION_PATCH);

// The DLL beside this program.
std::wstring ComponentFile(const std::wstring &name = L"KVHEADERS.dll");

// The DLL, loaded and unloaded with this object; no registration is needed.
class Component
{
public:
    explicit Component(const std::wstring &name = L"KVHEADERS.dll");
    ~Component();
    Component(const Component &) = delete;
    Component &operator=(const Component &) = delete;

    HRESULT GetClassObject(REFCLSID classId, REFIID id, void **object) const
    {
        return Call<REFCLSID, REFIID, void **>("DllGetClassObject", classId, id, object);
    }
    HRESULT CanUnload() const { return Call("DllCanUnloadNow"); }
    HRESULT Register() const { return Call("DllRegisterServer"); }
    HRESULT Unregister() const { return Call("DllUnregisterServer"); }
    HRESULT Install(bool install, const wchar_t *commandLine) const
    {
        return Call<BOOL, const wchar_t *>("DllInstall", install, commandLine);
    }
    // A function that it exports.
    template <class Function>
    Function EntryPoint(const char *name) const
    {
        return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(m_module, name)));
    }

    // A new object through its class object. Fails the test and gives null when there is none.
    template <class Interface, class Class>
    ComPtr<Interface> Create() const
    {
        ComPtr<Interface> object;
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(GetClassObject(__uuidof(Class), IID_PPV_ARGS(&factory)), S_OK);
        if (factory)
        {
            EXPECT_EQ(
                factory->CreateInstance(nullptr, __uuidof(Interface), reinterpret_cast<void **>(object.GetAddressOf())),
                S_OK);
        }
        return object;
    }

private:
    template <class... Arguments>
    HRESULT Call(const char *name, Arguments... arguments) const
    {
        return EntryPoint<HRESULT(STDAPICALLTYPE *)(Arguments...)>(name)(arguments...);
    }

    HMODULE m_module;
};

// Loads the component for each test, and looks at its end that nothing keeps it loaded.
class ComponentTest : public testing::Test
{
protected:
    explicit ComponentTest(const std::wstring &name = L"KVHEADERS.dll") : component(name) {}
    ~ComponentTest() override { EXPECT_EQ(component.CanUnload(), S_OK) << "something was not released"; }

    Component component;
};

// Registered for the machine while it lives.
class Registered
{
public:
    Registered() { EXPECT_EQ(m_component.Register(), S_OK); }
    ~Registered() { EXPECT_EQ(m_component.Unregister(), S_OK); }

private:
    Component m_component;
};

// The public classes with their default interfaces.
struct PublicClass
{
    const char *name;
    const CLSID &id;
    const IID &interfaceId;
};
extern const PublicClass kClasses[10];

// Visits the functions of a dual interface as its vtable has them.
void VisitMembers(ITypeInfo &dispatch, const std::function<void(ITypeInfo &type, const FUNCDESC &)> &visit);

// What a host sets to open the editor on a site.
void SetUpHost(_clsConfig &config, const support::TestDatabase &site, LONG partition = 3);

// A BSTR that is freed. Ownership is taken over from the pointer.
class Text
{
public:
    Text() = default;
    explicit Text(std::wstring_view text) : m_text(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    ~Text() { SysFreeString(m_text); }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    BSTR *operator&()
    {
        SysFreeString(m_text);
        m_text = nullptr;
        return &m_text;
    }
    BSTR *Reference() { return &m_text; }
    BSTR get() const { return m_text; }
    std::wstring str() const { return {m_text ? m_text : L"", SysStringLen(m_text)}; }

private:
    BSTR m_text = nullptr;
};

// A VARIANT that is cleared.
class Value
{
public:
    Value() { VariantInit(&m_value); }
    explicit Value(long number) : Value()
    {
        m_value.vt = VT_I4;
        m_value.lVal = number;
    }
    explicit Value(std::wstring_view text) : Value()
    {
        m_value.vt = VT_BSTR;
        m_value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }
    explicit Value(IDispatch *object) : Value()
    {
        m_value.vt = VT_DISPATCH;
        m_value.pdispVal = object;
        if (object)
            object->AddRef();
    }
    static VARIANT Missing();
    ~Value() { VariantClear(&m_value); }
    Value(Value &&other) noexcept : m_value(other.m_value) { VariantInit(&other.m_value); }
    Value(const Value &) = delete;
    Value &operator=(const Value &) = delete;

    VARIANT *operator&() { return &m_value; }
    VARIANT *operator->() { return &m_value; }
    operator VARIANT() const { return m_value; }

private:
    VARIANT m_value;
};

// "0x8000FFFF: text (source)" of a result and the thread's error object, which is taken out by this.
std::string Told(HRESULT result);

// What has come of a call through IDispatch.
struct Outcome
{
    HRESULT result = S_OK;
    HRESULT error = S_OK; // the result, or the number of the exception
    std::string told;     // "0x8000FFFF: text (source)" of an exception
    Value value;
};

constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kPutReference = DISPATCH_PROPERTYPUTREF;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kCall = DISPATCH_METHOD;

// Calls a member by its name; the arguments stand in the order in which they are written.
Outcome CallByName(IDispatch &object, std::wstring name, WORD kind, std::vector<VARIANT> arguments = {});

std::string Narrow(std::wstring_view text);
std::wstring Wide(std::string_view text);

} // namespace com_test
