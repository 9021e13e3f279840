' A collection of accelerators as scripts walk lists.
' expect: 3 elements, second F2
' expect: the list changes meanwhile: F1 F2 F3, and holds 0
' expect: 9 There is no element of this index: the collection has 0 elements, counted from 0.

Set accels = CreateObject("SabXmlParser.VePrsAccelColl")
For number = 1 To 3
  Set accel = CreateObject("SabXmlParser.VePrsAccel")
  accel.Key = "F" & number
  accels.AddTail accel
Next
WScript.Echo accels.Count & " elements, second " & accels.Item(1).Key
line = ""
For Each accel In accels
  accels.RemoveAll
  line = line & " " & accel.Key
Next
WScript.Echo "the list changes meanwhile:" & line & ", and holds " & accels.Count
On Error Resume Next
Set accel = accels.Item(0)
WScript.Echo Err.Number & " " & Err.Description
