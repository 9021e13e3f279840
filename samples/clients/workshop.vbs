' Reads the workshop's application descriptor, changes a setting in a copy of its settings file, and
' shows what an error looks like. Register the server first: regsvr32 SabXmlParser.dll
'
'   cscript //nologo workshop.vbs [FOLDER]      FOLDER holds this script; by default the current one
'
' expect: Workshop Draft, Journeyman
' expect: page {6E0D3B52-4C1F-4B7A-9C0E-52D4A8F1730B} config\general.xml
' expect: page {A41C7D90-2E58-4F63-B1B7-96E0C35D28AA}
' expect: cursor size 5, then 9
' expect: error 80004001 from SabXmlParser.VeAutoUpdateAdminCfgParser
' expect: The administration of the automatic update is read-only.

folder = "."
If WScript.Arguments.Count > 0 Then folder = WScript.Arguments(0)

Set app = CreateObject("SabXmlParser.VeAppParser")
app.ConfigurationPath = folder & "/../workshop/application.xml"
app.GenerateApp
WScript.Echo app.GetProductName & ", " & app.GetProductEdition

Set pages = app.GetConfigurations
position = pages.GetHeadPosition
Do While position <> 0
  Set page = pages.GetNext(position)
  WScript.Echo Trim("page " & page.CLSID & " " & page.Path)
Loop

Set files = CreateObject("Scripting.FileSystemObject")
copy = files.GetSpecialFolder(2) & "\workshop_vbs_settings.xml"
files.CopyFile folder & "/../workshop/settings.xml", copy, True
Set display = CreateObject("SabXmlParser.VeDisplayCfgParser")
display.Load copy, "/Settings/Display"
before = display.CursorSize
display.CursorSize = 9
' Save leaves what a block has already, so the change goes into another one.
display.Save copy, "/Settings/Apprentice"
Set again = CreateObject("SabXmlParser.VeDisplayCfgParser")
again.Load copy, "/Settings/Apprentice"
WScript.Echo "cursor size " & before & ", then " & again.CursorSize

Set update = CreateObject("SabXmlParser.VeAutoUpdateAdminCfgParser")
On Error Resume Next
update.Save copy, "/Settings/Update"
WScript.Echo "error " & Hex(Err.Number) & " from " & Err.Source
WScript.Echo Err.Description
files.DeleteFile copy
