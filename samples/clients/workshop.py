#!/usr/bin/env python3
"""Reads the workshop's application descriptor, changes a setting in a copy of its settings file, and
shows what an error looks like.

    SABXML_SERVER=build/release/libSabXmlParser.so PYTHONPATH=clients/python \
        python3 samples/clients/workshop.py

expect: Workshop Draft, Journeyman
expect: page 常规 {6E0D3B52-4C1F-4B7A-9C0E-52D4A8F1730B}
expect: page Printing {A41C7D90-2E58-4F63-B1B7-96E0C35D28AA}
expect: cursor size 5, then 9
expect: error 80004001 from SabXmlParser.VeAutoUpdateAdminCfgParser
expect: The administration of the automatic update is read-only.
"""

import shutil
import tempfile
from pathlib import Path

import sabxml

workshop = Path(__file__).resolve().parent.parent / "workshop"

app = sabxml.create("VeAppParser")
app.ConfigurationPath = workshop / "application.xml"
app.GenerateApp()
print(f"{app.GetProductName()}, {app.GetProductEdition()}")
for page in app.GetConfigurations():
    print("page", page.LocalName, page.CLSID)

with tempfile.TemporaryDirectory() as folder:
    copy = shutil.copy(workshop / "settings.xml", folder)
    name, node = "VeDisplayCfgParser", "/Settings/Display"
    with sabxml.settings(name, copy, node) as display:  # changes what the block changes, and no more
        before = display.CursorSize
        display.CursorSize = 9
    display = sabxml.create(name)
    display.Load(copy, node)
    print(f"cursor size {before}, then {display.CursorSize}")

    update = sabxml.create("VeAutoUpdateAdminCfgParser")
    try:
        update.Save(copy, "/Settings/Update")
    except sabxml.Error as error:
        print(f"error {error.code:X} from {error.source}")
        print(error.description)
