// The component's entries in the registry. They are written one by one, the type library's too: the system's own
// function for that cannot be told everywhere to write for one user alone.
#include "com/registration.h"

#include "com/classes.h"
#include "com/errors.h"
#include "com/module.h"
#include "com/type_library.h"
#include "platform/windows/handle.h"

#include <optional>
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

// The part of the registry that describes classes, for a scope. What has been set is taken back by the end of this
// object, unless Keep is called.
class Classes
{
public:
    explicit Classes(Scope scope) : m_root(scope == Scope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE) {}
    ~Classes()
    {
        for (auto change = m_changes.rbegin(); change != m_changes.rend(); ++change)
            TakeBack(*change);
    }
    Classes(const Classes &) = delete;
    Classes &operator=(const Classes &) = delete;

    void Keep() { m_changes.clear(); }

    void Set(const std::wstring &path, const std::wstring &name, const std::wstring &value)
    {
        const Key key = Create(path);
        Remember(key.get(), path, name);
        CheckRegistry(RegSetValueExW(key.get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(value.c_str()),
                                     static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))));
    }
    void Set(const std::wstring &path, const std::wstring &value) { Set(path, L"", value); }

    void RemoveValue(const std::wstring &path, const std::wstring &name)
    {
        const Key key = Create(path);
        Remember(key.get(), path, name);
        const LSTATUS status = RegDeleteValueW(key.get(), name.c_str());
        if (status != ERROR_FILE_NOT_FOUND)
            CheckRegistry(status);
    }

    // These two are not taken back.
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
    // A key that was made, or a value as it was before.
    struct Change
    {
        std::wstring path; // in full
        bool made;
        std::wstring name;
        std::optional<std::vector<BYTE>> data; // none: there was no such value
        DWORD type;
    };

    static std::wstring Full(const std::wstring &path)
    {
        return path.empty() ? L"Software\\Classes" : L"Software\\Classes\\" + path;
    }

    // Opens a key; it and those above it are made where they are missing.
    Key Create(const std::wstring &path)
    {
        const std::wstring full = Full(path);
        for (std::size_t end = full.find(L'\\');; end = full.find(L'\\', end + 1))
        {
            const std::wstring part = full.substr(0, end);
            HKEY key = nullptr;
            DWORD disposition = 0;
            const REGSAM access = end == std::wstring::npos ? KEY_READ | KEY_WRITE : KEY_READ;
            CheckRegistry(RegCreateKeyExW(m_root, part.c_str(), 0, nullptr, 0, access, nullptr, &key, &disposition));
            Key opened(key);
            if (disposition == REG_CREATED_NEW_KEY)
                m_changes.push_back({part, true, {}, {}, 0});
            if (end == std::wstring::npos)
                return opened;
        }
    }

    void Remember(HKEY key, const std::wstring &path, const std::wstring &name)
    {
        DWORD type = 0;
        DWORD size = 0;
        std::optional<std::vector<BYTE>> data;
        if (RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS)
        {
            data.emplace(size);
            CheckRegistry(RegQueryValueExW(key, name.c_str(), nullptr, &type, data->data(), &size));
        }
        m_changes.push_back({Full(path), false, name, std::move(data), type});
    }

    // As far as it can: there is nothing left to do about an error here.
    void TakeBack(const Change &change) const
    {
        if (change.made)
        {
            RegDeleteKeyW(m_root, change.path.c_str());
            return;
        }
        HKEY key = nullptr;
        if (RegOpenKeyExW(m_root, change.path.c_str(), 0, KEY_WRITE, &key) != ERROR_SUCCESS)
            return;
        const Key opened(key);
        if (change.data)
            RegSetValueExW(key, change.name.c_str(), 0, change.type, change.data->data(),
                           static_cast<DWORD>(change.data->size()));
        else
            RegDeleteValueW(key, change.name.c_str());
    }

    HKEY m_root;
    std::vector<Change> m_changes;
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
    const ModuleLock whileReading;
    const Library library = Describe();
    const std::wstring file = ModuleFile();
    Classes classes(scope);

    for (const PublicClass &publicClass : PublicClasses())
    {
        const std::wstring name = std::wstring(kComponent) + L"." + publicClass.name;
        const std::wstring id = Text(*publicClass.id);
        const std::wstring path = L"CLSID\\" + id;
        classes.Set(name, name);
        classes.Set(name + L"\\CLSID", id);
        classes.Set(path, name);
        classes.Set(path + L"\\InprocServer32", file);
        // Without a threading model all objects live in the host's main apartment: one set of values, one thread.
        classes.RemoveValue(path + L"\\InprocServer32", L"ThreadingModel");
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
    classes.Keep();
}

void Unregister(Scope scope)
{
    const ModuleLock whileReading;
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
