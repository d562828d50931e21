' clsSettings and colSettings.
On Error Resume Next
Dim s, t, col, v, b, ids
Set s = CreateObject("KVHEADERS.clsSettings")
Works "create"
s.HospitalID = -1
Equal "HospitalID", s.HospitalID, CInt(-1)
v = 30
s.ReportType = v
Equal "ReportType", s.ReportType, CInt(30)
s.FormatID = v + 1
Equal "FormatID", s.FormatID, CInt(31)
s.RemoveSetting = True
s.HospitalID = 32768
Fails "HospitalID too large", 6, "Overflow"
s.SettingID = -40000
Fails "SettingID too small", 6, "Overflow"
s.PartitionID = "x"
Fails "PartitionID of a text", 13, "Type mismatch"

b = False
s.FillSettings 1, v, 2, 3, 70000, b, Not b
Works "FillSettings"
Equal "filled", s.SettingID & " " & s.HospitalID & " " & s.ReportType & " " & s.FormatID & " " & s.PartitionID & _
                s.NewSetting & s.HasChanged, "1 30 2 3 70000FalseTrue"
Equal "RemoveSetting as it was", s.RemoveSetting, True
s.FillSettings 1, 2, 3, 4, 3000000000, b, b
Fails "FillSettings with a large partition", 6, "Overflow"

Set col = CreateObject("KVHEADERS.colSettings")
Works "create the collection"
Equal "m_lngPartitionID default", col.m_lngPartitionID, CLng(0)
col.m_lngPartitionID = -1
Equal "m_lngPartitionID", col.m_lngPartitionID, CLng(-1)
Set t = s
col.AddSettingtoCollection t
Works "AddSettingtoCollection of a variable"
Yes "the variable refers to the same object", t Is s
col.AddSettingtoCollection CreateObject("KVHEADERS.clsSettings")
Works "AddSettingtoCollection of an expression"
col.AddSettingtoCollection s
Works "AddSettingtoCollection once more"
Equal "three settings", col.ColSettingInfo.Count, CLng(3)
Yes "the first", col(1) Is s
Yes "the last is the first", col.Item(3) Is col.Item(1)
Yes "out of range", col.Item(4) Is Nothing
ids = ""
For Each t In col.ColSettingInfo
    ids = ids & t.SettingID & " "
Next
Equal "For Each", ids, "1 0 1 "
col.AddSettingtoCollection Nothing
Fails "add Nothing", 91, "Object variable or With block variable not set"
col.AddSettingtoCollection CreateObject("KVHEADERS.clsFormats")
Fails "add a format", 13, "Type mismatch"
col.AddSettingtoCollection CreateObject("Scripting.Dictionary")
Fails "add an object of another component", 13, "Type mismatch"
col.AddSettingtoCollection 5
Fails "add a number", 13, "Type mismatch"
Equal "still three", col.ColSettingInfo.Count, CLng(3)
col.ColSettingInfo.Remove 2
Equal "two", col.ColSettingInfo.Count, CLng(2)
Set col.ColSettingInfo = CreateObject("KVHEADERS.colSettings").ColSettingInfo
Works "assign"
Equal "none", col.ColSettingInfo.Count, CLng(0)
Set col.ColSettingInfo = Nothing
Fails "assign Nothing", 91, "Object variable or With block variable not set"
col.GetSettingInfo
Fails "load without a connection", 91, "Object variable or With block variable not set"
Finish 53
