// What a script sees of a file that is not well-formed: the place and the reason.
// expect: line 4: </Interval> does not close <ReadOnly> of line 4
// expect: an application has no ReadOnly

var folder = WScript.Arguments(0);
var app = new ActiveXObject("SabXmlParser.VeAppParser");
app.ConfigurationPath = folder + "/broken.xml";
try {
  app.GenerateApp();
} catch (e) {
  var found = /broken\.xml:(\d+):\d+: (.*)$/.exec(e.message);
  WScript.Echo(found ? "line " + found[1] + ": " + found[2] : "not understood: " + e.message);
}
try {
  app.ReadOnly = true;
} catch (e) {
  WScript.Echo("an application has no ReadOnly");
}
