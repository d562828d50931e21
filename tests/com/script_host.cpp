// Runs a script inside the test program, by the system's own script engines.
#include "script_host.h"

#include "component.h"

#include "support/test_folder.h"

#include <activscp.h>

namespace com_test
{

namespace
{

// `WScript` as far as the scripts need it. Lives on the stack of RunScriptHere.
class WScript final : public Uncounted<IDispatch>
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR *names, UINT, LCID, DISPID *ids) override
    {
        ids[0] = _wcsicmp(names[0], L"Echo") == 0 ? kEcho : _wcsicmp(names[0], L"Quit") == 0 ? kQuit : DISPID_UNKNOWN;
        return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS *arguments, VARIANT *, EXCEPINFO *,
                                     UINT *) override
    {
        if (id != kEcho) // Quit stands at the end of the scripts
            return S_OK;
        for (UINT i = arguments->cArgs; i-- > 0;)
        {
            Value text;
            VariantChangeType(&text, &arguments->rgvarg[i], 0, VT_BSTR);
            lines += Narrow(text->vt == VT_BSTR ? text->bstrVal : L"?") + (i ? " " : "\n");
        }
        return S_OK;
    }

    std::string lines;

private:
    static constexpr DISPID kEcho = 1;
    static constexpr DISPID kQuit = 2;
};

class Site final : public Uncounted<IActiveScriptSite>
{
public:
    HRESULT STDMETHODCALLTYPE GetLCID(LCID *locale) override
    {
        *locale = GetUserDefaultLCID();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD, IUnknown **item, ITypeInfo **type) override
    {
        if (item)
            *item = &script;
        if (type)
            *type = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT *, const EXCEPINFO *) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError *error) override
    {
        EXCEPINFO info = {};
        DWORD context = 0;
        ULONG line = 0;
        LONG column = 0;
        error->GetExceptionInfo(&info);
        error->GetSourcePosition(&context, &line, &column);
        script.lines += "ERROR in line " + std::to_string(line + 1) + ": " +
                        Narrow(info.bstrDescription ? info.bstrDescription : L"") + "\n";
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

    WScript script;
};

} // namespace

std::string RunScriptHere(const wchar_t *language, const std::wstring &text)
{
    Site site;
    CLSID id;
    ComPtr<IActiveScript> engine;
    ComPtr<IActiveScriptParse> parser;
    EXPECT_EQ(CLSIDFromProgID(language, &id), S_OK);
    EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&engine)), S_OK);
    if (!engine || FAILED(engine.As(&parser)))
        return "ERROR: no script engine";
    EXPECT_EQ(engine->SetScriptSite(&site), S_OK);
    EXPECT_EQ(parser->InitNew(), S_OK);
    EXPECT_EQ(engine->AddNamedItem(L"WScript", SCRIPTITEM_ISVISIBLE), S_OK);
    EXPECT_EQ(engine->SetScriptState(SCRIPTSTATE_INITIALIZED), S_OK);
    parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 1, 1,
                            SCRIPTTEXT_HOSTMANAGESSOURCE | SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
    engine->SetScriptState(SCRIPTSTATE_STARTED); // here it runs
    engine->Close();
    return site.script.lines;
}

bool IsVbScript(const std::string &name)
{
    return name.ends_with(".vbs");
}

std::string ReadScript(const std::string &name)
{
    const std::string text = support::ReadFile(support::SourcePath("tests/com/scripts/" + name));
    EXPECT_FALSE(text.empty()) << name;
    return text;
}

std::string SourceOf(const std::string &name)
{
    return IsVbScript(name) ? ReadScript("checks.vbs") + ReadScript(name) : ReadScript(name);
}

} // namespace com_test
