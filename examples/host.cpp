// A host in C++, bound early: opens the editor with the settings it finds in the environment, so that no password
// appears on a command line. The interfaces come from the type library (here: from the header made of kvheaders.idl).
//
//   KVHEADERS_SERVER, KVHEADERS_DATABASE   the server and its database, or
//   KVHEADERS_DATA_SOURCE                  the name of a registered ODBC data source
//   KVHEADERS_USER, KVHEADERS_PASSWORD     the log-in at the server
//   KVHEADERS_TIMEOUT                      seconds to wait for the log-in, 15 when missing
//   KVHEADERS_PARTITION                    the partition to open
//   KVHEADERS_USER_ID                      the suite's user, 0 when missing
//   KVHEADERS_INI                          the path of the site's INI file
#include <windows.h>

#include <ole2.h>

#include "kvheaders_idl.h"

#include <wrl/client.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace
{

// A text as COM passes it.
class Text
{
public:
    explicit Text(const std::wstring &text) : m_text(SysAllocString(text.c_str())) {}
    ~Text() { SysFreeString(m_text); }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;
    operator BSTR() const { return m_text; }

private:
    BSTR m_text;
};

std::wstring Setting(const wchar_t *name, const wchar_t *otherwise = L"")
{
    const std::wstring variable = std::wstring(L"KVHEADERS_") + name;
    wchar_t value[1024];
    const DWORD length = GetEnvironmentVariableW(variable.c_str(), value, 1024);
    return length > 0 && length < 1024 ? std::wstring(value, length) : std::wstring(otherwise);
}

long Number(const wchar_t *name, const wchar_t *otherwise)
{
    return std::wcstol(Setting(name, otherwise).c_str(), nullptr, 10);
}

// The description that the component has left for a call that failed.
void PrintError(const char *what, HRESULT result)
{
    Microsoft::WRL::ComPtr<IErrorInfo> error;
    BSTR description = nullptr;
    if (GetErrorInfo(0, &error) == S_OK)
        error->GetDescription(&description);
    std::fprintf(stderr, "%s failed: 0x%08lX %ls\n", what, static_cast<unsigned long>(result),
                 description ? description : L"");
    SysFreeString(description);
}

HRESULT OpenEditor()
{
    Microsoft::WRL::ComPtr<_clsConfig> editor;
    HRESULT result = CoCreateInstance(__uuidof(clsConfig), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&editor));
    if (FAILED(result))
    {
        PrintError("creating KVHEADERS.clsConfig", result);
        return result;
    }
    BSTR version = nullptr;
    editor->get_Version(&version);
    std::printf("KVHEADERS %ls\n", version ? version : L"");
    SysFreeString(version);

    editor->put_SqlServerName(Text(Setting(L"SERVER")));
    editor->put_SqlDbName(Text(Setting(L"DATABASE")));
    editor->put_SQLDSN(Text(Setting(L"DATA_SOURCE")));
    editor->put_SqlUserName(Text(Setting(L"USER")));
    editor->put_Password(Text(Setting(L"PASSWORD")));
    editor->put_SqlTimeout(static_cast<SHORT>(Number(L"TIMEOUT", L"15")));
    editor->put_PartitionID(Number(L"PARTITION", L"-1"));
    editor->put_User_ID(static_cast<SHORT>(Number(L"USER_ID", L"0")));
    editor->put_Zentra_INIFile(Text(Setting(L"INI")));

    unsigned char answer = 0;
    result = editor->ShowForm(&answer);
    if (FAILED(result))
        PrintError("ShowForm", result);
    else
        std::printf("ShowForm returned %u\n", answer);
    return result;
}

} // namespace

int main()
{
    if (FAILED(OleInitialize(nullptr)))
        return 1;
    const HRESULT result = OpenEditor();
    OleUninitialize();
    return FAILED(result) ? 1 : 0;
}
