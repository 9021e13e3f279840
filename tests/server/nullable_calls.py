#!/usr/bin/env python3
"""Writes calls of all members through the table of operations that can hand null to every place of
a result.

usage: nullable_calls.py TOOLS_FOLDER SOURCE.idl OUTPUT.cpp
"""

import sys
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv[1])

from idlgen import dispatch, reader  # noqa: E402


def nullable(library, parameter, index):
    value = dispatch.argument(library, parameter, index)
    return f"a[{index}].is_missing ? nullptr : {value}" if parameter.is_out else value


library = reader.read(Path(sys.argv[2]))
out = ['#include "server/nullable_calls.h"\n', "#include <SabXmlParser.h>\n",
       "namespace sab::testing {", "namespace {\n"]
for interface in library.interfaces.values():
    out += dispatch.write_call(library, interface, nullable)
out += ["}  // namespace\n", "HRESULT CallNullable(const InterfaceInfo& info, void* self, "
        "std::size_t member, Slot* arguments) {"]
for name in library.interfaces:
    out.append(f"  if (*info.iid == IID_{name}) return Call{name}(self, member, arguments);")
out += ["  return DISP_E_MEMBERNOTFOUND;", "}\n", "}  // namespace sab::testing"]
Path(sys.argv[3]).write_text("\n".join(out) + "\n", encoding="utf-8")
