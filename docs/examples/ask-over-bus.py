#!/usr/bin/python3
# A host of Quarry in Python, through the session bus (python3-gi): asks
# quarry-service for the condition of a log query and prints it.
#   ask-over-bus.py [LOGTYPE [LIST-A]]     (default YYRZ "1=自动验印,2=人工验印")
# Exit status as quarry-ask's: 0 a condition, 1 none, 3 the call failed.
# Only Response 0 carries a condition to run; a cancelled dialog's
# "stored_condition" (Response 1) is none.
import os
import sys

from gi.repository import Gio, GLib

NAME, PATH = "org.quarry.Quarry1", "/org/quarry/Quarry1"
log_type = sys.argv[1] if len(sys.argv) > 1 else "YYRZ"
entries = [e.split("=", 1) for e in (sys.argv[2] if len(sys.argv) > 2 else "1=自动验印,2=人工验印").split(",")]
parent_window = ""  # "x11:%x" % the XID of the host's window: the dialog opens over it

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
# The request's path is chosen before the call, so that its Response cannot
# come before we listen for it.
token = "ask%d" % os.getpid()
request = "%s/request/%s/%s" % (PATH, bus.get_unique_name()[1:].replace(".", "_"), token)
loop, outcome = GLib.MainLoop(), []


def on_response(connection, sender, path, interface, signal, parameters):
    outcome.extend(parameters.unpack())
    loop.quit()


def on_owner_changed(connection, sender, path, interface, signal, parameters):
    # The service ended (killed, or its bus went away) before it answered:
    # no Response will come.
    name, old_owner, new_owner = parameters.unpack()
    if not new_owner and not outcome:
        outcome.extend((2, {"error_source": NAME, "error_number": 2000,
                            "error_description": "查询条件服务已退出，没有给出结果"}))
        loop.quit()


bus.signal_subscribe(None, NAME + ".Request", "Response", request, None,
                     Gio.DBusSignalFlags.NONE, on_response)
bus.signal_subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                     "/org/freedesktop/DBus", NAME, Gio.DBusSignalFlags.NONE, on_owner_changed)
bus.call_sync(NAME, PATH, NAME, "showComplex", GLib.Variant("(ssanasanasiiiiibbba{sv})", (
    parent_window, log_type, [int(code) for code, _ in entries], [text for _, text in entries],
    [0, 1], ["通过", "不通过"], len(entries), 2, 4, 17, 8, True, True, False,
    {"handle_token": GLib.Variant("s", token)})), None, Gio.DBusCallFlags.NONE, -1, None)
loop.run()

response, results = outcome
if response == 0:
    print(results["condition"])
elif response == 2:
    print("%s: %s (%d)" % (results["error_source"], results["error_description"],
                           results["error_number"]), file=sys.stderr)
sys.exit((0, 1, 3)[response])
