' clsConfig: values of other types, and what its instances share.
On Error Resume Next
Dim c, other, v
Set c = CreateObject("KVHEADERS.clsConfig")
Works "create"

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
Finish 22
