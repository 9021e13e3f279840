// A list walked by an Enumerator, and errors as a script catches them: of a member, of a file that
// is not well-formed (this one), of a property that is not there.
// expect: F1 F2 F3, second F2
// expect: The position does not name an element of this collection: the element was removed or belongs to another collection.
// expect: 1:1: text outside the document element
// expect: an application has no ReadOnly

var accels = new ActiveXObject("SabXmlParser.VePrsAccelColl");
for (var number = 1; number <= 3; number++) {
  var accel = new ActiveXObject("SabXmlParser.VePrsAccel");
  accel.Key = "F" + number;
  accels.AddTail(accel);
}
var keys = [];
for (var walk = new Enumerator(accels); !walk.atEnd(); walk.moveNext()) keys.push(walk.item().Key);
WScript.Echo(keys.join(" ") + ", second " + accels.Item(1).Key);

function tryTo(act, otherwise) {
  try {
    act();
  } catch (e) {
    WScript.Echo(otherwise || e.message.replace(/^.*errors\.js:/, ""));
  }
}

var stale = accels.FindIndex(0);
accels.RemoveAt(stale);
tryTo(function () { accels.GetAt(stale); });
var app = new ActiveXObject("SabXmlParser.VeAppParser");
app.ConfigurationPath = WScript.ScriptFullName;
tryTo(function () { app.GenerateApp(); });
tryTo(function () { app.ReadOnly = true; }, "an application has no ReadOnly");
