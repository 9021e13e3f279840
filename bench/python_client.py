#!/usr/bin/env python3
"""Processor time of the Python client, of one or of several folders that hold it, in turn.

    SABXML_SERVER=build/release/libSabXmlParser.so bench/python_client.py clients/python [OTHER...]

Prints the best of all rounds in microseconds. Modules are compiled first, as an installation does.
"""

import compileall
import os
import subprocess
import sys

ROUNDS = 7
START = ("import time; before = time.process_time(); import sabxml; %s; "
         "print((time.process_time() - before) * 1e6, %r)")
CALLS = """
import time
import sabxml
app, display = sabxml.create("VeAppParser"), sabxml.create("VeDisplayCfgParser")
product, accels = sabxml.create("VeProductCfgParser"), sabxml.create("VePrsAccelColl")
app.ConfigurationPath, product.Value["Paper"] = "x/application.xml", "A3"
for _ in range(100):
    accels.AddTail(sabxml.create("VePrsAccel"))
for times, row, call in [
    (1000, "read a number", lambda: display.CursorSize),
    (1000, "read a text", lambda: app.ConfigurationPath),
    (1000, "write a number", lambda: setattr(display, "CursorSize", 5)),
    (1000, "write a text", lambda: setattr(app, "ConfigurationPath", "x/application.xml")),
    (1000, "read a named value", lambda: product.Value["Paper"]),
    (1000, "call a method", lambda: accels.GetCount()),
    (1000, "create an object", lambda: sabxml.create("VePrsAccel")),
    (10, "walk 100 elements and read a text of each", lambda: [accel.Key for accel in accels]),
]:
    before = time.process_time()
    for _ in range(times):
        call()
    print((time.process_time() - before) / times * 1e6, row)
"""
SCRIPTS = [START % ("pass", "import"),
           START % ("sabxml.create('VeDisplayCfgParser').CursorSize", "import, create, read a number"),
           CALLS]


def main(folders):
    best = {}
    for folder in folders:
        compileall.compile_dir(folder, quiet=1)
    for script in SCRIPTS * ROUNDS:
        for place, folder in enumerate(folders):
            output = subprocess.run([sys.executable, "-c", script], check=True, text=True,
                                    stdout=subprocess.PIPE, env={**os.environ, "PYTHONPATH": folder})
            for line in output.stdout.splitlines():
                time, _, row = line.partition(" ")
                row = best.setdefault(row, [float("inf")] * len(folders))
                row[place] = min(row[place], float(time))
    for row, times in best.items():
        print(f"{row:42}", *(f"{time:10.1f}" for time in times))


if __name__ == "__main__":
    main(sys.argv[1:] or sys.exit(__doc__))
