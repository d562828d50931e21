' Checks for the scripts of this folder; the test program puts this text before each of them. A script ends with
' Finish and the number of its checks, so that a check that was never reached is missed.
Dim checked, failed
checked = 0
failed = 0

' The value and its type.
Sub Equal(what, actual, expected)
    checked = checked + 1
    If TypeName(actual) <> TypeName(expected) Then
        failed = failed + 1
        WScript.Echo "FAILED " & what & ": a " & TypeName(actual) & " instead of a " & TypeName(expected)
    ElseIf actual <> expected Then
        failed = failed + 1
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Sub Yes(what, condition)
    Equal what, condition, True
End Sub

' The error of the statement before, with its number and text; none when the number is 0.
Sub Fails(what, number, text)
    Dim n, t, s
    n = Err.Number
    t = Err.Description
    s = Err.Source
    Err.Clear
    Equal what & " (number)", CLng(n), CLng(number)
    If number <> 0 Then
        Equal what & " (text)", t, text
        Equal what & " (source)", s, "KVHEADERS"
    End If
End Sub

Sub Works(what)
    Dim n, t
    n = Err.Number
    t = Err.Description
    Err.Clear
    Equal what & " " & t, CLng(n), CLng(0)
End Sub

' For an expression that is to fail. (Behind Set, Wine's engine tells of the assignment instead.)
Sub Evaluate(value)
End Sub

Sub Finish(expected)
    If checked <> expected Then
        failed = failed + 1
        WScript.Echo "FAILED " & checked & " checks instead of " & expected
    End If
    WScript.Echo "end of the script, " & failed & " failed"
    WScript.Quit failed
End Sub
