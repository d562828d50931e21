' clsFormats and colFormats.
On Error Resume Next
Dim f, g, col, names, i, v, b, n
Set f = CreateObject("KVHEADERS.clsFormats")
Works "create"
f.FormatID = 12
Equal "FormatID", f.FormatID, CInt(12)
v = 13
f.FormatID = v
Equal "FormatID of a variable", f.FormatID, CInt(13)
f.FormatID = v + 1
Equal "FormatID of an expression", f.FormatID, CInt(14)
Equal "the variable", v, CInt(13)
n = "O'Neill"
f.FormatName = n
Equal "FormatName", f.FormatName, "O'Neill"
f.FormatName = n & "s"
Equal "FormatName of an expression", f.FormatName, "O'Neills"
f.InsertAfter = 1
Equal "InsertAfter", f.InsertAfter, True
f.InsertColon = "True"
Equal "InsertColon", f.InsertColon, True
b = True
f.Bold = b
Equal "Bold", f.Bold, True
f.RemoveFormat = True
Works "properties"
f.FormatID = 32768
Fails "FormatID too large", 6, "Overflow"
f.FormatID = "twelve"
Fails "FormatID of a text", 13, "Type mismatch"
f.Bold = "maybe"
Fails "Bold of a text", 13, "Type mismatch"
f.FormatName = Null
Fails "FormatName of Null", 94, "Invalid use of Null"
Equal "FormatID after the errors", f.FormatID, CInt(14)

' FillFields, by literals, variables and expressions; RemoveFormat stays
i = 20
n = "Plain"
b = False
f.FillFields i, n, b, True, b, Not b, False, True, b, True, b
Works "FillFields"
Equal "filled", f.FormatID & f.FormatName & f.InsertBefore & f.InsertAfter & f.InsertColon & f.Bold & f.Underline & _
                f.Indent & f.SystemFormat & f.NewFormat & f.HasChanged, "20PlainFalseTrueFalseTrueFalseTrueFalseTrueFalse"
Equal "RemoveFormat as it was", f.RemoveFormat, True
f.FillFields i, n, b, True, b, True, False, Null, b, True, b
Fails "FillFields with Null", 94, "Invalid use of Null"
f.FillFields 99999, n, b, True, b, True, False, b, b, True, b
Fails "FillFields with a large id", 6, "Overflow"
f.FillFields i, n
Yes "FillFields with two arguments", Err.Number <> 0
Err.Clear

' the collection
Set col = CreateObject("KVHEADERS.colFormats")
Works "create the collection"
Equal "m_lngPartitionID default", col.m_lngPartitionID, CLng(0)
col.m_lngPartitionID = -1
Equal "m_lngPartitionID", col.m_lngPartitionID, CLng(-1)
col.m_lngPartitionID = 3000000000
Fails "m_lngPartitionID too large", 6, "Overflow"
Equal "no formats", col.ColFormatInfo.Count, CLng(0)
Equal "type of the collection", TypeName(col.ColFormatInfo), "_Collection"
For i = 1 To 12
    Set g = CreateObject("KVHEADERS.clsFormats")
    g.FormatID = 100 - i
    g.FormatName = "format " & i
    col.ColFormatInfo.Add g, CStr(g.FormatID)
Next
Works "add twelve"
Equal "twelve formats", col.ColFormatInfo.Count, CLng(12)

' Item is positional, whatever the position is given as
Equal "Item(1)", col.Item(1).FormatName, "format 1"
Equal "(1)", col(1).FormatName, "format 1"
Equal "the text 12 is the twelfth", col.Item("12").FormatID, CInt(88)
v = 2
Equal "of a variable", col.Item(v).FormatName, "format 2"
Equal "of an expression", col(v + 1).FormatName, "format 3"
v = "4"
Equal "of a text in a variable", col(v).FormatName, "format 4"
Equal "of a fraction", col(2.5).FormatName, "format 2"
Works "positions"
Yes "a key is no position", col.Item("99") Is Nothing
Yes "a text", col.Item("abc") Is Nothing
Yes "beyond 16 bits", col.Item(70000) Is Nothing
Yes "Null", col.Item(Null) Is Nothing
Yes "an object", col.Item(f) Is Nothing
Works "nothing raised"

' the collection inside is keyed too
Equal "by key", col.ColFormatInfo("99").FormatName, "format 1"
Equal "by key through Item", col.ColFormatInfo.Item("88").FormatName, "format 12"
Equal "by position", col.ColFormatInfo(12).FormatID, CInt(88)
Yes "one record is one object", col(12) Is col.ColFormatInfo("88")
Yes "two records are two", Not (col(11) Is col(12))
col(12).Bold = True
Equal "and one set of values", col.ColFormatInfo("88").Bold, True
names = ""
For Each g In col.ColFormatInfo
    names = names & g.FormatID & " "
Next
Equal "For Each", names, "99 98 97 96 95 94 93 92 91 90 89 88 "

' assignment by reference
Set v = CreateObject("KVHEADERS.colFormats")
Yes "two collections", Not (v.ColFormatInfo Is col.ColFormatInfo)
Set v.ColFormatInfo = col.ColFormatInfo
Works "assign"
Yes "now one", v.ColFormatInfo Is col.ColFormatInfo
Equal "with all its formats", v.ColFormatInfo.Count, CLng(12)
Set v.ColFormatInfo = Nothing
Fails "assign Nothing", 91, "Object variable or With block variable not set"
Set v.ColFormatInfo = f
Fails "assign a format", 13, "Type mismatch"
Set v.ColFormatInfo = CreateObject("KVHEADERS.colHeadings").ColHeadingInfo
Fails "assign a collection of headings", 13, "Type mismatch"
v.ColFormatInfo = 5
Yes "assign a number", Err.Number <> 0
Err.Clear
col.GetFormatInfo
Fails "load without a connection", 91, "Object variable or With block variable not set"
Finish 82
