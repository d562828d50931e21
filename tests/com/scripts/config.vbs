' clsConfig: every property in both directions, with its type and its default.
On Error Resume Next
Dim c, other, v
Set c = CreateObject("KVHEADERS.clsConfig")
Works "create"

Equal "User_ID default", c.User_ID, CInt(0)
Equal "PartitionID default", c.PartitionID, CLng(-1)
Equal "DebugMode default", c.DebugMode, CInt(0)
Equal "LogFile default", c.LogFile, ""
Equal "SqlServerName default", c.SqlServerName, ""
Equal "Password default", c.Password, ""
Equal "SqlUserName default", c.SqlUserName, ""
Equal "SqlDbName default", c.SqlDbName, ""
Equal "SQLDSN default", c.SQLDSN, ""
Equal "SqlTimeout default", c.SqlTimeout, CInt(0)
Equal "Zentra_INIFile default", c.Zentra_INIFile, ""
Equal "Version", c.Version, "1.0.0"
Works "defaults"

c.User_ID = 32767
c.PartitionID = 2147483647
c.DebugMode = -32768
c.LogFile = "C:\log file.txt"
c.SqlServerName = "server"
c.Password = "  p'w;d  "
c.SqlUserName = "user"
c.SqlDbName = "db"
c.SQLDSN = "dsn"
c.SqlTimeout = 15
c.Zentra_INIFile = "C:\zentra.ini"
Works "set all"
Equal "User_ID", c.User_ID, CInt(32767)
Equal "PartitionID", c.PartitionID, CLng(2147483647)
Equal "DebugMode", c.DebugMode, CInt(-32768)
Equal "LogFile", c.LogFile, "C:\log file.txt"
Equal "SqlServerName", c.SqlServerName, "server"
Equal "Password", c.Password, "  p'w;d  "
Equal "SqlUserName", c.SqlUserName, "user"
Equal "SqlDbName", c.SqlDbName, "db"
Equal "SQLDSN", c.SQLDSN, "dsn"
Equal "SqlTimeout", c.SqlTimeout, CInt(15)
Equal "Zentra_INIFile", c.Zentra_INIFile, "C:\zentra.ini"

' variables, expressions and other types
v = 7
c.User_ID = v
Equal "a variable", c.User_ID, CInt(7)
Equal "the variable itself", v, CInt(7)
c.User_ID = v * 2 + 1
Equal "an expression", c.User_ID, CInt(15)
c.User_ID = " 12 "
Equal "a numeric text", c.User_ID, CInt(12)
c.User_ID = 2.5
Equal "a half, to even", c.User_ID, CInt(2)
c.User_ID = True
Equal "a Boolean", c.User_ID, CInt(-1)
c.User_ID = Empty
Equal "Empty", c.User_ID, CInt(0)
c.LogFile = 12
Equal "a number as text", c.LogFile, "12"
c.LogFile = "M" & Chr(233) & "ni" & Chr(232) & "re"
Equal "letters beyond ASCII", c.LogFile, "M" & Chr(233) & "ni" & Chr(232) & "re"
Works "other types"

' errors; what was there stays
c.User_ID = 5
c.User_ID = 32768
Fails "User_ID too large", 6, "Overflow"
c.User_ID = -32769
Fails "User_ID too small", 6, "Overflow"
c.DebugMode = 40000
Fails "DebugMode too large", 6, "Overflow"
c.SqlTimeout = 99999
Fails "SqlTimeout too large", 6, "Overflow"
c.PartitionID = 2147483648
Fails "PartitionID too large", 6, "Overflow"
c.User_ID = "five"
Fails "a text for a number", 13, "Type mismatch"
c.User_ID = c
Fails "an object for a number", 13, "Type mismatch"
c.LogFile = Null
Fails "Null for a text", 94, "Invalid use of Null"
c.User_ID = Null
Fails "Null for a number", 94, "Invalid use of Null"
Equal "User_ID after the errors", c.User_ID, CInt(5)
c.Version = "2"
Yes "Version cannot be set", Err.Number <> 0
Err.Clear
c.NoSuchMember = 1
Yes "an unknown member", Err.Number <> 0
Err.Clear

' one set of values for all instances; a new one sets the partition back
c.PartitionID = 9
Set other = CreateObject("KVHEADERS.clsConfig")
Equal "shared", other.User_ID, CInt(5)
Equal "reset", c.PartitionID, CLng(-1)
Yes "two instances are two objects", Not (other Is c)
Yes "one is itself", c Is c
Equal "type name", TypeName(c), "_clsConfig"
Works "instances"
Finish 72
