' Settings as a macro of the drafting program would change them: load, change, save, load again.
' expect: 256 0 10000 1.2
' expect: again 128 -1 10000 0.35
' expect: first copy 256
' expect: values 2: Scale=2 Paper=A3
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

Function Display()
  Set Display = CreateObject("SabXmlParser.VeDisplayCfgParser")
End Function

Write "<Settings><Old><PtSize>1</PtSize></Old><Display><ModelBkColor>256</ModelBkColor></Display><Other/></Settings>"
Set first = Display()
first.Load path, "/Settings/Display"
WScript.Echo first.ModelBkColor & " " & CInt(first.BigCursor) & " " & first.HatchLineDensity & " " & first.DefLineWidthDisplayScale
first.ModelBkColor = 128
first.BigCursor = True
first.DefLineWidthDisplayScale = 0.35
first.Save path, "/Settings/Other"
Set other = Display()
other.Load path, "/Settings/Other"
WScript.Echo "again " & other.ModelBkColor & " " & CInt(other.BigCursor) & " " & other.HatchLineDensity & " " & other.DefLineWidthDisplayScale
other.Save path, "/Settings/Display"
other.Load path, "/Settings/Display"
WScript.Echo "first copy " & other.ModelBkColor

Function Describe(group)
  Describe = group.ValueCount & ":"
  For i = 0 To group.ValueCount - 1
    Describe = Describe & " " & group.ValueName(i) & "=" & group.Value(group.ValueName(i))
  Next
End Function

Write "<Settings><Product><Scale>2</Scale><Paper>A3</Paper></Product><Saved/></Settings>"
Set product = CreateObject("SabXmlParser.VeProductCfgParser")
product.Load path, "/Settings/Product"
WScript.Echo "values " & Describe(product)
product.RemoveValue "Scale"
product.Value("Paper") = "A2"
product.Value("Colour") = "Grey"
product.Save path, "/Settings/Saved"
Set again = CreateObject("SabXmlParser.VeProductCfgParser")
again.Load path, "/Settings/Saved"
WScript.Echo "changed values " & Describe(again)

Set paths = CreateObject("SabXmlParser.VeFilePathCfgParser")
paths.put_DCBrowseHistory "C:\drawings"
paths.put_DCBrowseHistory "D:\parts"
paths.Save path, "/Settings/Saved"
Set paths = CreateObject("SabXmlParser.VeFilePathCfgParser")
paths.Load path, "/Settings/Saved"
count = 0
entry = ""
paths.get_DCHistoryCount count
paths.get_DCHistoryAt 1, entry
WScript.Echo "history " & count & ": " & entry

On Error Resume Next
ignored = again.Value("Scale")
WScript.Echo Hex(Err.Number) & " " & Err.Description
Err.Clear
Write "<Settings><Display></Settings>"
other.Save path, "/Settings/Display"
WScript.Echo "damaged file: " & Hex(Err.Number)
files.DeleteFile path
files.DeleteFile files.GetSpecialFolder(2) & "\BrowseHistory.xml"
