' A session on a site: the editor opens on its database and is closed, and then a host looks at the records itself.
On Error Resume Next
Dim environment, c, p, col, s, texts, f, h
Set environment = CreateObject("WScript.Shell").Environment("PROCESS")
Set c = CreateObject("KVHEADERS.clsConfig")
c.SqlServerName = environment("KVHEADERS_SERVER")
c.SqlDbName = environment("KVHEADERS_DATABASE")
c.SqlUserName = ""
c.SQLDSN = ""
c.SqlTimeout = 15
c.PartitionID = 3
c.Zentra_INIFile = environment("KVHEADERS_INI")
Works "set up"
Equal "ShowForm", c.ShowForm(), CByte(0)
Equal "ShowForm on the same connection", c.ShowForm(), CByte(0)

' the site's defaults are there now, and so is the connection
Set p = CreateObject("KVHEADERS.clsPartition")
Equal "m_blnTagKnownHeadings of the site", p.m_blnTagKnownHeadings, True
Equal "m_blnAllowMixedCaseHeadings of the site", p.m_blnAllowMixedCaseHeadings, False
p.SetPartitionID 3
p.m_objcolFormats.GetFormatInfo
Works "GetFormatInfo"
texts = ""
For Each f In p.m_objcolFormats.ColFormatInfo
    texts = texts & f.FormatID & " " & f.FormatName & " " & f.InsertBefore & f.InsertAfter & f.InsertColon & f.Bold & _
            f.Underline & f.Indent & " " & f.SystemFormat & f.NewFormat & f.HasChanged & f.RemoveFormat & "; "
Next
Equal "formats", texts, "2 System TrueFalseTrueFalseTrueFalse TrueFalseFalseFalse; " & _
                        "1 O'Neill FalseFalseFalseTrueFalseFalse FalseFalseFalseFalse; "
Equal "by key", p.m_objcolFormats.ColFormatInfo("2").FormatName, "System"
Equal "by position", p.m_objcolFormats("2").FormatName, "O'Neill"

p.m_objcolHeadings.GetHeadingInfo
Works "GetHeadingInfo"
texts = ""
For Each h In p.m_objcolHeadings.ColHeadingInfo
    texts = texts & h.HeadID & " " & h.HeadingName & " " & h.SystemHeading & h.NewHeading & h.HasChanged & "; "
Next
Equal "headings", texts, "0 Any TrueFalseFalse; 7 PLAN FalseFalseFalse; "

Set col = CreateObject("KVHEADERS.colSettings")
col.GetSettingInfo
Works "GetSettingInfo"
texts = ""
For Each s In col.ColSettingInfo
    texts = texts & s.SettingID & " " & s.HospitalID & " " & s.ReportType & " " & s.FormatID & " " & s.PartitionID & "; "
Next
Equal "settings in scope", texts, "7 -1 0 1 3; 7 101 2 2 0; "
Finish 13
