' The general collection.
On Error Resume Next
Dim col, i, f, g, order
Set col = CreateObject("KVHEADERS.colFormats").ColFormatInfo
Works "taken from an object"

Function Named(name)
    Set Named = CreateObject("KVHEADERS.clsFormats")
    Named.FormatName = name
End Function

Function Names()
    Dim element
    Names = ""
    For Each element In col
        Names = Names & element.FormatName
    Next
End Function

col.Add Named("b"), "Key"
col.Add Named("d")
col.Add Named("a"), , 1
col.Add Named("c"), "c", , "KEY"
col.Add Named("e"), "e", , 4
Works "add"
Equal "order", Names(), "abcde"
Equal "count", col.Count, CLng(5)
Equal "by key in another case", col("kEy").FormatName, "b"
Equal "by position", col.Item(5).FormatName, "e"
i = 2
Equal "by a variable", col(i).FormatName, "b"
i = "E"
Equal "by a key in a variable", col(i).FormatName, "e"
Equal "by a number of another type", col(CDbl(3)).FormatName, "c"
Works "found"

Evaluate col("nope")
Fails "an unknown key", 5, "Invalid procedure call or argument"
col.Remove 6
Fails "remove out of range", 9, "Subscript out of range"
Set f = col("key")
col.Remove "KEY"
col.Remove 1
Works "remove"
Equal "removed", Names(), "cde"
Equal "a removed element lives on", f.FormatName, "b"
col.Add f, "key"
Works "and can be added again"
Yes "as the same object", col("key") Is f
col.Add f, "twice"
Works "also twice"
Yes "as the same object", col("key") Is col("twice")
Do While col.Count > 0
    col.Remove col.Count
Loop
Equal "empty", Names(), ""
Works "emptied"

' many
For i = 1 To 2000
    Set g = CreateObject("KVHEADERS.clsFormats")
    g.FormatID = i
    col.Add g, CStr(i)
Next
Works "add 2000"
order = 0
For Each g In col
    order = order + g.FormatID
Next
Equal "sum", CLng(order), CLng(2001000)
Equal "the last", col("2000").FormatID, CInt(2000)
Finish 28
