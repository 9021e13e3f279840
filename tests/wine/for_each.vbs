' A list as scripts expect it.
' expect: 3 F1 F2 F3
' expect: second F2
' expect: the list changes meanwhile: F1 F2 F3, and holds 0
' expect: 9

Set accels = CreateObject("SabXmlParser.VePrsAccelColl")
For number = 1 To 3
  Set accel = CreateObject("SabXmlParser.VePrsAccel")
  accel.Key = "F" & number
  accels.AddTail accel
Next
line = accels.Count
For Each accel In accels
  line = line & " " & accel.Key
Next
WScript.Echo line
WScript.Echo "second " & accels.Item(1).Key
line = ""
For Each accel In accels
  accels.RemoveAll
  line = line & " " & accel.Key
Next
WScript.Echo "the list changes meanwhile:" & line & ", and holds " & accels.Count
On Error Resume Next
Set accel = accels.Item(0)
WScript.Echo Err.Number
