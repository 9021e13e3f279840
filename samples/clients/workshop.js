// Reads the workshop's application descriptor, changes a setting in a copy of its settings file, and
// shows what an error looks like. Register the server first: regsvr32 SabXmlParser.dll
//
//   cscript //nologo workshop.js [FOLDER]      FOLDER holds this script; by default the current one
//
// expect: Workshop Draft, Journeyman
// expect: page {6E0D3B52-4C1F-4B7A-9C0E-52D4A8F1730B} config\general.xml
// expect: page {A41C7D90-2E58-4F63-B1B7-96E0C35D28AA} without a file
// expect: cursor size 5, then 9
// expect: error 80004001
// expect: The administration of the automatic update is read-only.

var folder = WScript.Arguments.length > 0 ? WScript.Arguments(0) : ".";

var app = new ActiveXObject("SabXmlParser.VeAppParser");
app.ConfigurationPath = folder + "/../workshop/application.xml";
app.GenerateApp();
WScript.Echo(app.GetProductName() + ", " + app.GetProductEdition());

// JScript passes no places to write to, so it finds elements by their index.
var pages = app.GetConfigurations();
for (var i = 0; i < pages.GetCount(); i++) {
  var page = pages.GetAt(pages.FindIndex(i));
  WScript.Echo("page " + page.CLSID + " " + (page.Path || "without a file"));
}

var files = new ActiveXObject("Scripting.FileSystemObject");
var copy = files.GetSpecialFolder(2) + "\\workshop_js_settings.xml";
files.CopyFile(folder + "/../workshop/settings.xml", copy, true);
var display = new ActiveXObject("SabXmlParser.VeDisplayCfgParser");
display.Load(copy, "/Settings/Display");
var before = display.CursorSize;
display.CursorSize = 9;
// Save leaves what a block has already, so the change goes into another one.
display.Save(copy, "/Settings/Apprentice");
var again = new ActiveXObject("SabXmlParser.VeDisplayCfgParser");
again.Load(copy, "/Settings/Apprentice");
WScript.Echo("cursor size " + before + ", then " + again.CursorSize);

var update = new ActiveXObject("SabXmlParser.VeAutoUpdateAdminCfgParser");
try {
  update.Save(copy, "/Settings/Update");
} catch (e) {
  WScript.Echo("error " + (e.number + 0x100000000).toString(16));
  WScript.Echo(e.message);
}
files.DeleteFile(copy);
