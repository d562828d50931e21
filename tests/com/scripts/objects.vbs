' The classes as scripts use them: made by name, set from literals, variables and expressions, enumerated, assigned with
' and without Set. The members one by one are tested in C++.
On Error Resume Next
Dim name, c, other, f, g, s, p, q, col, names, n, b
For Each name In Array("clsConfig", "clsFormats", "colFormats", "clsHeadings", "colHeadings", "clsSettings", _
                       "colSettings", "clsPartition", "colPartitions")
    Equal name, TypeName(CreateObject("KVHEADERS." & name)), "_" & name
Next
Works "create"

' one set of values for all configurations; a new one sets the partition back
Set c = CreateObject("KVHEADERS.clsConfig")
c.User_ID = 5
c.PartitionID = 9
Set other = CreateObject("KVHEADERS.clsConfig")
Equal "shared", other.User_ID, CInt(5)
Equal "reset", c.PartitionID, CLng(-1)
Yes "two instances are two objects", Not (other Is c)
Yes "one is itself", c Is c
Works "instances"

' errors; what was there stays
c.User_ID = 32768
Fails "too large", 6, "Overflow"
c.LogFile = Null
Fails "Null", 94, "Invalid use of Null"
c.NoSuchMember = 1
Yes "an unknown member", Err.Number <> 0
Err.Clear
Equal "as before", c.User_ID, CInt(5)

' arguments by reference: literals, variables and expressions
Set f = CreateObject("KVHEADERS.clsFormats")
n = 20
name = "O'Neill"
b = False
f.FormatID = n
f.FormatID = n + 1
f.FormatName = name & "s"
f.Bold = Not b
Equal "set", f.FormatID & f.FormatName & f.Bold, "21O'NeillsTrue"
f.FillFields n, name, b, True, b, Not b, False, True, b, True, b
Equal "filled", f.FormatID & f.FormatName & f.InsertBefore & f.InsertAfter & f.InsertColon & f.Bold & f.Underline & _
                f.Indent & f.SystemFormat & f.NewFormat & f.HasChanged, "20O'NeillFalseTrueFalseTrueFalseTrueFalseTrueFalse"
Equal "the variable", n, CInt(20)
Works "arguments"

' collections
Set col = CreateObject("KVHEADERS.colFormats")
Equal "type of the collection", TypeName(col.ColFormatInfo), "_Collection"
For n = 1 To 3
    Set g = CreateObject("KVHEADERS.clsFormats")
    g.FormatID = 10 - n
    col.ColFormatInfo.Add g, CStr(g.FormatID)
Next
col.ColFormatInfo.Add f, , 1
col.ColFormatInfo.Add f, "last", , "7"
Works "add"
names = ""
For Each g In col.ColFormatInfo
    names = names & g.FormatID & " "
Next
Equal "For Each", names, "20 9 8 7 20 "
Equal "count", col.ColFormatInfo.Count, CLng(5)
n = 2
Equal "by a variable", col(n).FormatID, CInt(9)
Equal "by an expression", col.Item(n + 1).FormatID, CInt(8)
Equal "by key", col.ColFormatInfo("7").FormatID, CInt(7)
Yes "one record is one object", col(1) Is f And col.ColFormatInfo("LAST") Is f
Yes "two records are two", Not (col(2) Is col(3))
Yes "a key is no position", col("last") Is Nothing
col.ColFormatInfo.Remove "9"
Equal "removed", col.ColFormatInfo.Count, CLng(4)
Works "collections"
Evaluate col.ColFormatInfo("nope")
Fails "an unknown key", 5, "Invalid procedure call or argument"

' assignment by reference, and of the partitions without Set too
Set p = CreateObject("KVHEADERS.clsPartition")
Yes "one object each time", p.m_objcolFormats Is p.m_objcolFormats
Set p.m_objcolFormats = col
Yes "assigned", p.m_objcolFormats Is col
p.SetPartitionID n * 10
Equal "partition of the formats", col.m_lngPartitionID, CLng(20)
Equal "partition of the headings", p.m_objcolHeadings.m_lngPartitionID, CLng(20)
Set p.m_objcolHeadings = CreateObject("KVHEADERS.colHeadings")
Works "assign"
Set p.m_objcolFormats = p.m_objcolHeadings
Fails "assign headings as formats", 13, "Type mismatch"
Set p.m_objcolFormats = Nothing
Fails "assign Nothing", 91, "Object variable or With block variable not set"
Yes "as before", p.m_objcolFormats Is col
Set q = CreateObject("KVHEADERS.colPartitions")
Set other = CreateObject("KVHEADERS.colPartitions")
q.colPartitions.Add p, "20"
other.colPartitions = q.colPartitions
Works "assign without Set"
Yes "shared", other(1) Is p
Set s = CreateObject("KVHEADERS.colSettings")
Set g = CreateObject("KVHEADERS.clsSettings")
s.AddSettingtoCollection g
s.AddSettingtoCollection CreateObject("KVHEADERS.clsSettings")
Works "AddSettingtoCollection of a variable and of an expression"
Yes "the first", s(1) Is g
Finish 58
