' Settings as a macro of the drafting program would change them: numbers and truth values, values by
' their names, results in variables.
' expect: 128 -1 10000 0.35
' expect: changed values 2: Paper=A2 Colour=Grey
' expect: history 2: D:\parts
' expect: 80070057 There is no value named "Scale".
' expect: damaged file: 84000C06

Set files = CreateObject("Scripting.FileSystemObject")
path = files.GetSpecialFolder(2) & "\sab_settings_client.xml"

Sub Write(text)
  Set file = files.CreateTextFile(path, True)
  file.Write text
  file.Close
End Sub

Function Loaded(name, block)
  Set Loaded = CreateObject("SabXmlParser." & name)
  Loaded.Load path, "/Settings/" & block
End Function

Write "<Settings><Product><Scale>2</Scale><Paper>A3</Paper></Product><Other/></Settings>"
Set group = Loaded("VeDisplayCfgParser", "Other")
group.ModelBkColor = 128
group.BigCursor = True
group.DefLineWidthDisplayScale = 0.35
group.Save path, "/Settings/Other"
Set group = Loaded("VeDisplayCfgParser", "Other")
WScript.Echo group.ModelBkColor & " " & CInt(group.BigCursor) & " " & group.HatchLineDensity & " " & group.DefLineWidthDisplayScale

Set product = Loaded("VeProductCfgParser", "Product")
product.RemoveValue "Scale"
product.Value("Paper") = "A2"
product.Value("Colour") = "Grey"
line = product.ValueCount & ":"
For i = 0 To product.ValueCount - 1
  line = line & " " & product.ValueName(i) & "=" & product.Value(product.ValueName(i))
Next
WScript.Echo "changed values " & line

Set paths = Loaded("VeFilePathCfgParser", "Other")
paths.put_DCBrowseHistory "C:\drawings"
paths.put_DCBrowseHistory "D:\parts"
count = 0
entry = ""
paths.get_DCHistoryCount count
paths.get_DCHistoryAt 1, entry
WScript.Echo "history " & count & ": " & entry

On Error Resume Next
ignored = product.Value("Scale")
WScript.Echo Hex(Err.Number) & " " & Err.Description
Err.Clear
Write "<Settings><Display></Settings>"
group.Save path, "/Settings/Display"
WScript.Echo "damaged file: " & Hex(Err.Number)
files.DeleteFile path
