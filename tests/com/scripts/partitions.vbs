' clsPartition and colPartitions.
On Error Resume Next
Dim p, q, col, v, names, formats
Set p = CreateObject("KVHEADERS.clsPartition")
Works "create"
Equal "formats", TypeName(p.m_objcolFormats), "_colFormats"
Equal "headings", TypeName(p.m_objcolHeadings), "_colHeadings"
Equal "no formats", p.m_objcolFormats.ColFormatInfo.Count, CLng(0)
Equal "no headings", p.m_objcolHeadings.ColHeadingInfo.Count, CLng(0)
Equal "formats' partition", p.m_objcolFormats.m_lngPartitionID, CLng(0)
Yes "one object each time", p.m_objcolFormats Is p.m_objcolFormats

p.m_strPartitionName = "North"
p.m_lngPartitionID = 17
Equal "m_lngPartitionID", p.m_lngPartitionID, CLng(17)
Equal "the field alone changes nothing else", p.m_objcolFormats.m_lngPartitionID, CLng(0)
v = -1
p.SetPartitionID v
Works "SetPartitionID of a variable"
Equal "own", p.m_lngPartitionID, CLng(-1)
Equal "of the formats", p.m_objcolFormats.m_lngPartitionID, CLng(-1)
Equal "of the headings", p.m_objcolHeadings.m_lngPartitionID, CLng(-1)
p.SetPartitionID 5
Equal "of a literal", p.m_objcolFormats.m_lngPartitionID, CLng(5)
p.SetPartitionID 5 * 4
Equal "of an expression", p.m_objcolHeadings.m_lngPartitionID, CLng(20)
p.SetPartitionID 3000000000
Fails "too large", 6, "Overflow"
p.SetPartitionID "north"
Fails "a text", 13, "Type mismatch"
Equal "as before", p.m_lngPartitionID, CLng(20)

' the two collections are assigned by reference
Set formats = CreateObject("KVHEADERS.colFormats")
Set p.m_objcolFormats = formats
Works "assign formats"
Yes "assigned", p.m_objcolFormats Is formats
Set p.m_objcolHeadings = CreateObject("KVHEADERS.colHeadings")
Works "assign headings"
Set p.m_objcolFormats = p.m_objcolHeadings
Fails "assign headings as formats", 13, "Type mismatch"
Set p.m_objcolFormats = Nothing
Fails "assign Nothing", 91, "Object variable or With block variable not set"
Yes "as before", p.m_objcolFormats Is formats

' the partitions
Set col = CreateObject("KVHEADERS.colPartitions")
Works "create the collection"
Equal "none", col.colPartitions.Count, CLng(0)
col.colPartitions.Add p, "20"
For v = 1 To 3
    Set q = CreateObject("KVHEADERS.clsPartition")
    q.m_strPartitionName = "p" & v
    col.colPartitions.Add q, CStr(v)
Next
Works "add"
Yes "by key", col.colPartitions("20") Is p
Yes "Item is positional", col.Item(1) Is p
Equal "the text 3 is the third", col.Item("3").m_strPartitionName, "p2"
Equal "while key 3 is another", col.colPartitions("3").m_strPartitionName, "p3"
Yes "no number", col.Item("north") Is Nothing
Yes "out of range", col(5) Is Nothing
Works "nothing raised"
names = ""
For Each q In col.colPartitions
    names = names & q.m_strPartitionName & " "
Next
Equal "For Each", names, "North p1 p2 p3 "
Set q = CreateObject("KVHEADERS.colPartitions")
Set q.colPartitions = col.colPartitions
Works "assign"
Yes "shared", q(1) Is p
Set q.colPartitions = CreateObject("KVHEADERS.Collection")
Works "assign a new one"
Equal "empty", q.colPartitions.Count, CLng(0)
q.colPartitions = col.colPartitions
Works "assign without Set"
Yes "shared again", q(1) Is p
Set q.colPartitions = formats.ColFormatInfo
Fails "assign formats", 13, "Type mismatch"
Set q.colPartitions = Nothing
Fails "assign Nothing", 91, "Object variable or With block variable not set"
col.colPartitions.Add formats
Fails "add a collection", 13, "Type mismatch"
Finish 58
