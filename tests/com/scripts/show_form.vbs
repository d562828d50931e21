' ShowForm without a database: two messages, 0 as its result, and a host that lives on.
On Error Resume Next
Dim c, result
Set c = CreateObject("KVHEADERS.clsConfig")
c.SqlServerName = "no such server"
c.SqlDbName = "nowhere"
c.SqlTimeout = 1
c.SqlUserName = ""
c.Password = "  blanks  "
c.Zentra_INIFile = "C:\no such file.ini"
result = c.ShowForm()
Works "ShowForm"
Equal "result", result, CByte(0)
Equal "the trimmed password", c.Password, "blanks"
Equal "the default user", c.SqlUserName, "sa"
result = 7
result = c.ShowForm
Equal "again, without parentheses", result, CByte(0)
Works "ShowForm again"
c.ShowForm 1
Yes "it takes no argument", Err.Number <> 0
Err.Clear
Finish 7
