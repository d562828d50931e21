// The classes from JScript.
var checked = 0, failed = 0;
function equal(what, actual, expected) {
    checked++;
    if (actual !== expected) {
        failed++;
        WScript.Echo("FAILED " + what + ": " + actual + " (" + typeof actual + ") instead of " + expected);
    }
}
function fails(what, error, action) {
    try {
        action();
        equal(what, "no error", error);
    } catch (e) {
        equal(what, (e.number & 0xFFFF) + ": " + (e.description || e.message), error);
    }
}

var config = new ActiveXObject("KVHEADERS.clsConfig");
equal("PartitionID", config.PartitionID, -1);
config.User_ID = 12;
equal("User_ID", config.User_ID, 12);
config.LogFile = "M\u00e9ni\u00e8re \u03a9";
equal("LogFile", config.LogFile, "M\u00e9ni\u00e8re \u03a9");
fails("User_ID too large", "6: Overflow", function () { config.User_ID = 70000; });
fails("User_ID of a text", "13: Type mismatch", function () { config.User_ID = "twelve"; });

var format = new ActiveXObject("KVHEADERS.clsFormats");
var id = 5, name = "Plain", yes = true;
format.FillFields(id, name, yes, false, yes, !yes, yes, false, false, yes, false);
equal("FormatID", format.FormatID, 5);
equal("FormatName", format.FormatName, "Plain");
equal("InsertBefore", format.InsertBefore, true);
equal("InsertAfter", format.InsertAfter, false);
format.FormatID = id + 1.5;
equal("a half, to even", format.FormatID, 6);

var formats = new ActiveXObject("KVHEADERS.colFormats");
formats.ColFormatInfo.Add(format, "6");
equal("Count", formats.ColFormatInfo.Count, 1);
equal("Item", formats.Item(1).FormatName, "Plain");
equal("default member", formats(1).FormatName, "Plain");
equal("no object", formats.Item(2), null);
fails("duplicate key", "457: This key is already associated with an element of this collection",
      function () { formats.ColFormatInfo.Add(format, "6"); });
var expected = 15;
if (checked !== expected) {
    failed++;
    WScript.Echo("FAILED " + checked + " checks instead of " + expected);
}
WScript.Echo("end of the script, " + failed + " failed");
WScript.Quit(failed);
