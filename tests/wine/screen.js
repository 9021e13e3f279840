// Walks the screen that a user-interface file describes, as a macro of the drafting program would:
// ribbon, menus, keys.
// expect: TAB_HOME
// expect:   PANEL_DRAW
// expect:     BTN_LINE WK_LINE large
// expect:       BTN_POLYLINE WK_POLYLINE
// expect:       -
// expect:       BTN_RAY WK_RAY
// expect:     -
// expect:     GROUP_CURVES
// expect:       BTN_ARC WK_ARC
// expect:       BOX_LAYER 120 wide
// expect: TAB_ANNOTATE
// expect:   PANEL_DIMENSION
// expect:     BTN_DIM_LINEAR WK_DIM_LINEAR large
// expect: MENU_FILE
// expect:   MENU_NEW WK_NEW
// expect:   -
// expect:   MENU_RECENT
// expect: MENU_HELP WK_HELP
// expect: WK_LINE Ctrl+L
// expect: WK_ARC A
// expect: KEYS_SKETCH: WK_LINE F2, WK_SNAP Ctrl+F9

function each(list, visit) {
  for (var walk = new Enumerator(list); !walk.atEnd(); walk.moveNext()) visit(walk.item());
}

function say(depth, line) {
  while (depth-- > 0) line = "  " + line;
  WScript.Echo(line);
}

function showButton(button, depth) {
  var words = [button.Identify || "-"];
  if (button.Command) words.push(button.Command);
  if (button.IsLargeImage) words.push("large");
  if (button.Width) words.push(button.Width + " wide");
  say(depth, words.join(" "));
  each(button.GroupButtons, function (inner) { showButton(inner, depth + 1); });
}

function showItem(item, depth) {
  say(depth, (item.Identify || "-") + (item.Command ? " " + item.Command : ""));
  each(item.MenuItems, function (inner) { showItem(inner, depth + 1); });
}

function keys(accel) {
  return accel.Command + " " + (accel.Ctrl ? "Ctrl+" : "") + accel.Key;
}

var parser = new ActiveXObject("SabXmlParser.VeUiParser");
parser.ConfigurationPath = WScript.Arguments(0) + "\\..\\..\\samples\\workshop\\ui\\drawing.xml";
parser.GenerateUI();
var screen = parser.UI;

each(screen.RibbonBar.RibbonTabs, function (tab) {
  say(0, tab.Identify);
  each(tab.RibbonPanels, function (panel) {
    say(1, panel.Identify);
    each(panel.RibbonButtons, function (button) { showButton(button, 2); });
  });
});
each(screen.MainMenu.MenuItems, function (item) { showItem(item, 0); });
each(screen.Accels, function (accel) { say(0, keys(accel)); });
each(screen.ToolAccels, function (group) {
  var lines = [];
  each(group.Accels, function (accel) { lines.push(keys(accel)); });
  say(0, group.Identify + ": " + lines.join(", "));
});
