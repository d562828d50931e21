' A host in VBScript: opens the editor with the settings it finds in the environment, so that no password appears on a
' command line. Run it with the 32-bit cscript:
'
'   cscript //nologo host.vbs
'
'   KVHEADERS_SERVER, KVHEADERS_DATABASE   the server and its database, or
'   KVHEADERS_DATA_SOURCE                  the name of a registered ODBC data source
'   KVHEADERS_USER, KVHEADERS_PASSWORD     the log-in at the server
'   KVHEADERS_TIMEOUT                      seconds to wait for the log-in, 15 when missing
'   KVHEADERS_PARTITION                    the partition to open
'   KVHEADERS_USER_ID                      the suite's user, 0 when missing
'   KVHEADERS_INI                          the path of the site's INI file
Option Explicit

Dim environment, editor, result

Set environment = CreateObject("WScript.Shell").Environment("PROCESS")

Function Setting(name, otherwise)
    Setting = environment("KVHEADERS_" & name)
    If Setting = "" Then Setting = otherwise
End Function

Set editor = CreateObject("KVHEADERS.clsConfig")
WScript.Echo "KVHEADERS " & editor.Version

editor.SqlServerName = Setting("SERVER", "")
editor.SqlDbName = Setting("DATABASE", "")
editor.SQLDSN = Setting("DATA_SOURCE", "")
editor.SqlUserName = Setting("USER", "")
editor.Password = Setting("PASSWORD", "")
editor.SqlTimeout = CInt(Setting("TIMEOUT", "15"))
editor.PartitionID = CLng(Setting("PARTITION", "-1"))
editor.User_ID = CInt(Setting("USER_ID", "0"))
editor.Zentra_INIFile = Setting("INI", "")

result = editor.ShowForm()
WScript.Echo "ShowForm returned " & result
WScript.Quit 0
