// The object that hosts use, set up for partition 3 of a site. What it has connected is disconnected at its end.
#pragma once

#include "editor/frmHeadings.h"
#include "host/clsConfig.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "support/test_database.h"
#include "window/register.h"

namespace window_tests
{

class EditorHost
{
public:
    explicit EditorHost(support::TestDatabase &site)
    {
        window::Register();
        editor::RegisterForms();
        const std::string ini = site.Folder().Path("ZENTRA.INI");
        support::WriteFile(ini, "[System]\r\nNetworkRootDir=" + site.Folder().Path() + "\r\n");
        config->SetPartitionID(3);
        config->SetSqlServerName(site.ServerName());
        config->SetSqlDbName(site.DatabaseName());
        config->SetSqlUserName("sa");
        config->SetZentra_INIFile(ini);
    }
    ~EditorHost()
    {
        host::Disconnect();
        host::gConnection.reset();
        host::gEnvironment.reset();
        host::gConfig = nullptr;
    }
    EditorHost(const EditorHost &) = delete;
    EditorHost &operator=(const EditorHost &) = delete;

    const runtime::Ref<host::clsConfig> config = runtime::MakeRef<host::clsConfig>();
};

} // namespace window_tests
