// The border between the component's errors and those of COM.
#include "com/errors.h"

#include "platform/windows/wide.h"
#include "runtime/error.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <string>

namespace com
{

namespace
{

using Microsoft::WRL::ComPtr;

std::string TextOf(HRESULT result)
{
    switch (result)
    {
    case E_POINTER:
        return "Invalid pointer";
    case RPC_E_WRONG_THREAD:
        return "The object was called from another thread than its own";
    case E_OUTOFMEMORY:
        return runtime::ErrorText(runtime::kOutOfMemory);
    default:
        return "Automation error";
    }
}

void SetErrorInfoText(REFIID interfaceId, const std::string &description)
{
    ComPtr<ICreateErrorInfo> creator;
    ComPtr<IErrorInfo> info;
    if (FAILED(CreateErrorInfo(&creator)) || FAILED(creator.As(&info)))
        return;
    std::wstring source = L"KVHEADERS";
    creator->SetGUID(interfaceId);
    creator->SetSource(source.data());
    creator->SetDescription(platform::ToWide(description).data());
    SetErrorInfo(0, info.Get());
}

} // namespace

HRESULT ResultOf(std::int32_t number) noexcept
{
    return number < 0 ? number : static_cast<HRESULT>(0x800A0000u + static_cast<std::uint32_t>(number));
}

HRESULT SetErrorInfoFromException(REFIID interfaceId) noexcept
{
    try
    {
        try
        {
            throw;
        }
        catch (const Failure &failure)
        {
            SetErrorInfoText(interfaceId, TextOf(failure.result));
            return failure.result;
        }
        catch (...)
        {
            const runtime::Error error = runtime::CurrentError();
            SetErrorInfoText(interfaceId, error.Description());
            return ResultOf(error.Number());
        }
    }
    catch (...)
    {
        SetErrorInfo(0, nullptr); // no memory even for the text
        return E_OUTOFMEMORY;
    }
}

} // namespace com
