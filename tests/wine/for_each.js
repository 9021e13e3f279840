// A list walked by an Enumerator, and its elements by index.
// expect: F1 F2
// expect: F2

var accels = new ActiveXObject("SabXmlParser.VePrsAccelColl");
for (var number = 1; number <= 2; number++) {
  var accel = new ActiveXObject("SabXmlParser.VePrsAccel");
  accel.Key = "F" + number;
  accels.AddTail(accel);
}
var keys = [];
for (var walk = new Enumerator(accels); !walk.atEnd(); walk.moveNext()) keys.push(walk.item().Key);
WScript.Echo(keys.join(" "));
WScript.Echo(accels.Item(1).Key);
