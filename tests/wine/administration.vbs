' The administration of the automatic update, by both of its names.
' expect: defaults False False -1 []
' expect: loaded True False 2147483647 [updates.workshop.example]
' expect: defaults False False -1 []
' expect: loaded True False 2147483647 [updates.workshop.example]
' expect: Save: 80004001 The administration of the automatic update is read-only.
' expect: from SabXmlParser.VeAutoUpdateAdminCfgParser

Function Describe(admin)
  Describe = CStr(CBool(admin.DisableHttp)) & " " & CStr(CBool(admin.ReadOnly)) & " " & _
             admin.Interval & " [" & admin.Server & "]"
End Function

folder = WScript.Arguments(0)
For Each name In Array("SabXmlParser.VeAutoUpdateAdminCfgParser", "SabXmlParser.VeAutoUpdateAdminCfgPars.1")
  Set admin = CreateObject(name)
  WScript.Echo "defaults " & Describe(admin)
  admin.Load folder & "/update_settings.xml", "/Settings/Update"
  WScript.Echo "loaded " & Describe(admin)
Next

On Error Resume Next
admin.Save folder & "/update_settings.xml", "/Settings/Update"
WScript.Echo "Save: " & Hex(Err.Number) & " " & Err.Description
WScript.Echo "from " & Err.Source
