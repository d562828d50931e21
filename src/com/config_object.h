// The COM object of clsConfig.
#pragma once

#include "com/members.h"
#include "host/clsConfig.h"

namespace com
{

class ConfigObject;

template <>
struct ComTraits<host::clsConfig> : ComClass<_clsConfig, ::clsConfig, ConfigObject>
{
};

class ConfigObject final : public Object<host::clsConfig>
{
public:
    using Object::Object;

    KV_VALUE(SHORT, User_ID)
    KV_VALUE(LONG, PartitionID)
    KV_VALUE(SHORT, DebugMode)
    KV_VALUE(BSTR, LogFile)
    KV_VALUE(BSTR, SqlServerName)
    KV_VALUE(BSTR, Password)
    KV_VALUE(BSTR, SqlUserName)
    KV_VALUE(BSTR, SqlDbName)
    KV_VALUE(BSTR, SQLDSN)
    KV_VALUE(SHORT, SqlTimeout)
    KV_VALUE(BSTR, Zentra_INIFile)
    KV_VALUE_GETTER(BSTR, Version)

    HRESULT STDMETHODCALLTYPE ShowForm(BYTE *result) override
    {
        return Guard([&] { Give(result, [&] { return Get().ShowForm(); }); });
    }
};

} // namespace com
