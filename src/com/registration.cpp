// The component's entries in the registry. They are written one by one, the type library's too: the system's own
// function for that cannot be told everywhere to write for one user alone.
#include "com/registration.h"

#include "com/classes.h"
#include "com/errors.h"
#include "com/module.h"
#include "com/type_library.h"
#include "platform/windows/handle.h"

#include <string>
#include <vector>

namespace com
{

namespace
{

constexpr wchar_t kComponent[] = L"KVHEADERS";
constexpr wchar_t kAutomationMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";

using Key = platform::UniqueHandle<HKEY, RegCloseKey>;

std::wstring Text(REFGUID id)
{
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

void CheckRegistry(LSTATUS status)
{
    if (status != ERROR_SUCCESS)
        throw Failure{HRESULT_FROM_WIN32(static_cast<DWORD>(status))};
}

// The part of the registry that describes classes, for a scope.
class Classes
{
public:
    explicit Classes(Scope scope) : m_root(scope == Scope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE) {}

    void Set(const std::wstring &path, const wchar_t *name, const std::wstring &value) const
    {
        HKEY key = nullptr;
        CheckRegistry(RegCreateKeyExW(m_root, Full(path).c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr));
        const Key opened(key);
        CheckRegistry(RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE *>(value.c_str()),
                                     static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))));
    }
    void Set(const std::wstring &path, const std::wstring &value) const { Set(path, nullptr, value); }

    void Remove(const std::wstring &path) const
    {
        const LSTATUS status = RegDeleteTreeW(m_root, Full(path).c_str());
        if (status != ERROR_FILE_NOT_FOUND)
            CheckRegistry(status);
    }

    // Takes a key away that has neither keys nor values.
    void RemoveIfEmpty(const std::wstring &path) const
    {
        HKEY key = nullptr;
        if (RegOpenKeyExW(m_root, Full(path).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return;
        DWORD keys = 0;
        DWORD values = 0;
        const Key opened(key);
        const LSTATUS status = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                                                nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_SUCCESS && keys == 0 && values == 0)
            RegDeleteKeyW(m_root, Full(path).c_str());
    }

private:
    static std::wstring Full(const std::wstring &path)
    {
        return path.empty() ? L"Software\\Classes" : L"Software\\Classes\\" + path;
    }

    HKEY m_root;
};

// What the registry says about a library or one of its types.
struct Entry
{
    std::wstring name;
    std::wstring id;
};

std::wstring Documentation(ITypeLib &library, INT index, bool description)
{
    BSTR name = nullptr;
    BSTR text = nullptr;
    Check(library.GetDocumentation(index, &name, &text, nullptr, nullptr));
    const BSTR wanted = description ? text : name;
    const std::wstring result(wanted ? wanted : L"", SysStringLen(wanted));
    SysFreeString(name);
    SysFreeString(text);
    return result;
}

std::vector<Entry> Interfaces(ITypeLib &library)
{
    std::vector<Entry> entries;
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i)
    {
        TYPEKIND kind;
        Check(library.GetTypeInfoType(i, &kind));
        if (kind != TKIND_DISPATCH)
            continue;
        ComPtr<ITypeInfo> type;
        Check(library.GetTypeInfo(i, &type));
        TYPEATTR *attributes = nullptr;
        Check(type->GetTypeAttr(&attributes));
        const std::wstring id = Text(attributes->guid);
        type->ReleaseTypeAttr(attributes);
        entries.push_back({Documentation(library, static_cast<INT>(i), false), id});
    }
    return entries;
}

struct Library
{
    std::wstring id;
    std::wstring version; // in hexadecimal, as the registry has it
    std::wstring description;
    std::vector<Entry> interfaces;
};

Library Describe()
{
    const ComPtr<ITypeLib> library = TypeLibrary();
    TLIBATTR *attributes = nullptr;
    Check(library->GetLibAttr(&attributes));
    wchar_t version[16];
    wsprintfW(version, L"%x.%x", attributes->wMajorVerNum, attributes->wMinorVerNum);
    const std::wstring id = Text(attributes->guid);
    library->ReleaseTLibAttr(attributes);
    return {id, version, Documentation(*library.Get(), -1, true), Interfaces(*library.Get())};
}

} // namespace

void Register(Scope scope)
{
    const KeepsLoaded whileReading;
    const Library library = Describe();
    const std::wstring file = ModuleFile();
    const Classes classes(scope);

    for (const PublicClass &publicClass : PublicClasses())
    {
        const std::wstring name = std::wstring(kComponent) + L"." + publicClass.name;
        const std::wstring id = Text(*publicClass.id);
        const std::wstring path = L"CLSID\\" + id;
        classes.Set(name, name);
        classes.Set(name + L"\\CLSID", id);
        classes.Set(path, name);
        classes.Set(path + L"\\InprocServer32", file);
        classes.Set(path + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
        classes.Set(path + L"\\ProgID", name);
        classes.Set(path + L"\\Programmable", L"");
        classes.Set(path + L"\\TypeLib", library.id);
        classes.Set(path + L"\\Version", library.version);
    }

    const std::wstring path = L"TypeLib\\" + library.id + L"\\" + library.version;
    classes.Set(path, library.description);
    classes.Set(path + L"\\0\\win32", file);
    classes.Set(path + L"\\FLAGS", L"0");
    classes.Set(path + L"\\HELPDIR", file.substr(0, file.find_last_of(L'\\')));
    for (const Entry &entry : library.interfaces)
    {
        classes.Set(L"Interface\\" + entry.id, entry.name);
        classes.Set(L"Interface\\" + entry.id + L"\\ProxyStubClsid32", kAutomationMarshaler);
        classes.Set(L"Interface\\" + entry.id + L"\\TypeLib", library.id);
        classes.Set(L"Interface\\" + entry.id + L"\\TypeLib", L"Version", library.version);
    }
}

void Unregister(Scope scope)
{
    const KeepsLoaded whileReading;
    const Library library = Describe();
    const Classes classes(scope);
    for (const PublicClass &publicClass : PublicClasses())
    {
        classes.Remove(std::wstring(kComponent) + L"." + publicClass.name);
        classes.Remove(L"CLSID\\" + Text(*publicClass.id));
    }
    for (const Entry &entry : library.interfaces)
        classes.Remove(L"Interface\\" + entry.id);
    classes.Remove(L"TypeLib\\" + library.id + L"\\" + library.version);
    classes.RemoveIfEmpty(L"TypeLib\\" + library.id); // another version may be installed

    // A user who had nothing of this kind has nothing of it again.
    if (scope == Scope::User)
        for (const wchar_t *shared : {L"CLSID", L"Interface", L"TypeLib", L""})
            classes.RemoveIfEmpty(shared);
}

} // namespace com
