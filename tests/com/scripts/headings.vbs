' clsHeadings and colHeadings.
On Error Resume Next
Dim h, col, n, b, v, texts
Set h = CreateObject("KVHEADERS.clsHeadings")
Works "create"
n = "FINDINGS"
h.HeadingName = n
Equal "HeadingName", h.HeadingName, "FINDINGS"
h.HeadingName = n & ":"
Equal "HeadingName of an expression", h.HeadingName, "FINDINGS:"
h.RemoveHeader = True
h.HeadID = 100000
Fails "HeadID too large", 6, "Overflow"
h.HeadID = ""
Fails "HeadID of an empty text", 13, "Type mismatch"

v = 0
b = True
h.FillHeadings v, "PLAN", Not b, b, False
Works "FillHeadings"
Equal "filled", h.HeadID & h.HeadingName & h.NewHeading & h.SystemHeading & h.HasChanged, "0PLANFalseTrueFalse"
Equal "RemoveHeader as it was", h.RemoveHeader, True
h.FillHeadings v, Null, b, b, b
Fails "FillHeadings with Null", 94, "Invalid use of Null"

Set col = CreateObject("KVHEADERS.colHeadings")
Works "create the collection"
Equal "m_lngPartitionID default", col.m_lngPartitionID, CLng(0)
col.m_lngPartitionID = 12345678
Equal "m_lngPartitionID", col.m_lngPartitionID, CLng(12345678)
col.ColHeadingInfo.Add h, "0"
Works "add"
Yes "Item", col.Item(1) Is h
Yes "default member", col("1") Is h
Yes "by key", col.ColHeadingInfo("0") Is h
Yes "no position", col("0") Is Nothing
texts = ""
For Each v In col.ColHeadingInfo
    texts = texts & v.HeadingName
Next
Equal "For Each", texts, "PLAN"
Set col.ColHeadingInfo = CreateObject("KVHEADERS.colHeadings").ColHeadingInfo
Works "assign"
Equal "an empty one", col.ColHeadingInfo.Count, CLng(0)
Set col.ColHeadingInfo = CreateObject("KVHEADERS.colFormats").ColFormatInfo
Fails "assign a collection of formats", 13, "Type mismatch"
col.ColHeadingInfo.Add CreateObject("KVHEADERS.clsFormats"), "1"
Fails "add a format", 13, "Type mismatch"
col.GetHeadingInfo
Fails "load without a connection", 91, "Object variable or With block variable not set"
Finish 35
