#!/usr/bin/env python3
"""Neovim as a client of sabxml lsp: it starts the server, edits, gets diagnostics and renames.

usage: neovim_test.py SAMPLES_FOLDER SABXML
"""

import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SAMPLES, SABXML = sys.argv[1:]
del sys.argv[1:]

SCRIPT = """
local root, sabxml = %s, %s
local function wait(what, holds)
  if not vim.wait(20000, holds, 20) then error("no " .. what) end
end
local function codes()
  local found = {}
  for _, one in ipairs(vim.diagnostic.get(0)) do found[one.code] = one.lnum end
  return found
end
local result = {}
vim.o.hidden = true
vim.cmd("edit " .. vim.fn.fnameescape(root .. "/ui/drawing.xml"))
vim.lsp.start_client({
  name = "sabxml", cmd = { sabxml, "lsp" }, root_dir = root,
  on_attach = function(client) result.name = client.name end,
  on_init = function(client) vim.lsp.buf_attach_client(0, client.id) end,
})
wait("diagnostics", function() return codes()["command-not-in-environment"] end)
result.clean = codes()["undefined-command"] == nil

local row = vim.fn.search("<Command>WK_NEW<", "w")
vim.api.nvim_buf_set_text(0, row - 1, 17, row - 1, 23, { "WK_NWE" })
wait("mistake", function() return codes()["undefined-command"] == row - 1 end)
vim.api.nvim_buf_set_text(0, row - 1, 17, row - 1, 23, { "WK_NEW" })
wait("correction", function() return codes()["undefined-command"] == nil end)

local function ask(method, params)
  local answers = vim.lsp.buf_request_sync(0, method, params, 20000)
  for _, answer in pairs(answers or {}) do return answer.result end
end
vim.api.nvim_win_set_cursor(0, { row, 18 })
local params = vim.lsp.util.make_position_params(0, "utf-16")
result.hover = ask("textDocument/hover", params).contents.value
result.completions = #ask("textDocument/completion", params).items
result.definition = ask("textDocument/definition", params)[1].uri
vim.lsp.buf.rename("WK_FRESH")
wait("renaming", function() return vim.fn.getline(row):find("WK_FRESH", 1, true) end)
vim.cmd("edit " .. vim.fn.fnameescape(root .. "/commands/file.xml"))
result.other = vim.fn.search("WK_FRESH", "w")
for _, client in pairs(vim.lsp.get_active_clients()) do client.stop() end
wait("end", function() return #vim.lsp.get_active_clients() == 0 end)
print(vim.fn.json_encode(result))
"""


class Neovim(unittest.TestCase):
    def test_a_session(self):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder) / "an application"
            shutil.copytree(SAMPLES, root)
            script = Path(folder) / "session.lua"
            script.write_text(SCRIPT % (json.dumps(str(root)), json.dumps(SABXML)), encoding="utf-8")
            done = subprocess.run(["nvim", "--clean", "--headless", "-n", "-c", f"luafile {script}", "-c", "qa!"],
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True, timeout=120,
                                  env={"PATH": "/usr/bin:/bin", "HOME": folder, "LANG": "C.UTF-8"})
        start = done.stdout.find("{")
        self.assertGreaterEqual(start, 0, done.stdout)
        result = json.loads(done.stdout[start:done.stdout.rindex("}") + 1])
        self.assertEqual(("sabxml", True), (result["name"], result["clean"]))
        self.assertIn("name: 新建", result["hover"])
        self.assertGreater(result["completions"], 5)
        self.assertTrue(result["definition"].endswith("/commands/file.xml"))
        self.assertEqual(7, result["other"])


if __name__ == "__main__":
    unittest.main()
