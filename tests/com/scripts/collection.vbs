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

col.Add Named("x"), "KEY"
Fails "a key twice", 457, "This key is already associated with an element of this collection"
col.Add Named("x"), 5
Fails "a key that is no text", 13, "Type mismatch"
col.Add Named("x"), "x", 1, 1
Fails "before and after", 5, "Invalid procedure call or argument"
col.Add Named("x"), "x", 6
Fails "before a position out of range", 9, "Subscript out of range"
col.Add Named("x"), "x", , "nope"
Fails "after an unknown key", 5, "Invalid procedure call or argument"
col.Add Nothing
Fails "Nothing", 91, "Object variable or With block variable not set"
col.Add "text"
Fails "a text", 13, "Type mismatch"
col.Add Empty
Fails "Empty", 13, "Type mismatch"
col.Add CreateObject("KVHEADERS.clsHeadings")
Fails "an object of another class", 13, "Type mismatch"
col.Add CreateObject("Scripting.Dictionary")
Fails "an object of another component", 13, "Type mismatch"
Evaluate col("nope")
Fails "an unknown key", 5, "Invalid procedure call or argument"
Evaluate col(0)
Fails "position 0", 9, "Subscript out of range"
Evaluate col(6)
Fails "position 6", 9, "Subscript out of range"
Evaluate col(Null)
Fails "Null", 94, "Invalid use of Null"
Evaluate col(1E10)
Fails "a number beyond 32 bits", 6, "Overflow"
col.Remove "nope"
Fails "remove an unknown key", 5, "Invalid procedure call or argument"
col.Remove 6
Fails "remove out of range", 9, "Subscript out of range"
Equal "unchanged", Names(), "abcde"

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
Finish 74
