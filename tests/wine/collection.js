// A collection walked by index and by an Enumerator, and an error with its description.
// expect: 3 false
// expect: F1 F2 F3
// expect: F1 F2 F3, second F2
// expect: The position does not name an element of this collection: the element was removed or belongs to another collection.

var accels = new ActiveXObject("SabXmlParser.VePrsAccelColl");
for (var number = 1; number <= 3; number++) {
  var accel = new ActiveXObject("SabXmlParser.VePrsAccel");
  accel.Key = "F" + number;
  accels.AddTail(accel);
}
WScript.Echo(accels.GetCount() + " " + accels.IsEmpty());
var keys = [];
for (var i = 0; i < accels.GetCount(); i++) keys.push(accels.GetAt(accels.FindIndex(i)).Key);
WScript.Echo(keys.join(" "));
keys = [];
for (var walk = new Enumerator(accels); !walk.atEnd(); walk.moveNext()) keys.push(walk.item().Key);
WScript.Echo(keys.join(" ") + ", second " + accels.Item(1).Key);
var stale = accels.FindIndex(0);
accels.RemoveAt(stale);
try {
  accels.GetAt(stale);
} catch (e) {
  WScript.Echo(e.message);
}
