#!/usr/bin/env python3
"""sabxml lsp as a program: messages over pipes, good and bad, and how it ends.

usage: session_test.py SAMPLES_FOLDER COMMAND...
"""

import json
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SAMPLES, *COMMAND = sys.argv[1:]
del sys.argv[1:]
ON_WINDOWS = "with_wine" in COMMAND[0]


def framed(message):
    body = message if isinstance(message, bytes) else json.dumps(message).encode()
    return b"Content-Length: %d\r\n\r\n" % len(body) + body


def request(number, method, **params):
    return framed({"jsonrpc": "2.0", "id": number, "method": method, "params": params})


def notification(method, **params):
    return framed({"jsonrpc": "2.0", "method": method, "params": params})


START = request(0, "initialize", capabilities={})
END = request("last", "shutdown") + notification("exit")


def talk(*messages):
    """The exit code and what was answered, with ids as keys; without one, a list."""
    done = subprocess.run([*COMMAND, "lsp"], input=b"".join(messages), stdout=subprocess.PIPE,
                          timeout=120)
    answers, others, rest = {}, [], done.stdout
    while rest:
        head, rest = rest.split(b"\r\n\r\n", 1)
        size = int(re.fullmatch(rb"Content-Length: (\d+)", head).group(1))
        message = json.loads(rest[:size])
        rest = rest[size:]
        if message.get("id") is not None and "method" not in message:
            answers[message["id"]] = message
        else:
            others.append(message)
    return done.returncode, answers, others


class Session(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "a 字%"
        shutil.copytree(SAMPLES, self.root)

    def uri(self, name):
        uri = (self.root / name).as_uri()
        return uri.replace("file:///", "file:///z%3A/") if ON_WINDOWS else uri

    def opened(self, name, text=None):
        text = (self.root / name).read_bytes().decode() if text is None else text
        return notification("textDocument/didOpen", textDocument={
            "uri": self.uri(name), "languageId": "xml", "version": 1, "text": text})

    def test_exit_codes(self):
        for messages, code in [((START, END), 0), ((START, notification("exit")), 1),
                               ((START,), 1), ((), 1), ((notification("exit"),), 1)]:
            with self.subTest(messages=messages):
                self.assertEqual(code, talk(*messages)[0])

    def test_errors_are_answered_and_end_nothing(self):
        """Bytes; the code of the error; the id that it names."""
        for data, code, number in [
                (framed(b"{"), -32700, None), (framed(b"\xff\xfe"), -32700, None),
                (framed(b'"\\ud800"'), -32700, None), (framed(b""), -32700, None),
                (b"Content-Length: -1\r\n\r\n", -32700, None),
                (b"Content-Length: 99999999999999999999\r\n\r\n{}", -32700, None),
                (b"Content-Length: 9999999999\r\n\r\n{}", -32700, None),
                (b"Content-Length: x\r\n\r\n", -32700, None), (b"X: 1\r\n\r\n{}", -32700, None),
                (framed(b"[]"), -32600, None), (framed(b"7"), -32600, None),
                (framed(b'{"id":{},"method":"x"}'), -32600, None),
                (framed(b'{"id":5,"method":7}'), -32600, 5),
                (request(5, "no/such"), -32601, 5), (request(5, "initialize"), -32600, 5),
                (request(5, "textDocument/hover"), -32602, 5),
                (request(5, "textDocument/hover", textDocument={"uri": "file:///x.xml"}), -32602, 5),
                (framed({"id": "a", "method": "textDocument/hover", "params": [1]}), -32602, "a")]:
            with self.subTest(data=data):
                exit_code, answers, others = talk(START, data, request(9, "workspace/symbol", query=""),
                                                  END)
                self.assertEqual((0, []), (exit_code, answers[9]["result"]))
                error = answers[number] if number is not None else others[0]
                self.assertEqual(code, error["error"]["code"], error)
        self.assertEqual(-32002, talk(request(1, "shutdown"))[1][1]["error"]["code"])
        self.assertEqual(-32600, talk(START, END[:END.rindex(b"Content")], request(1, "x"))[1][1]
                         ["error"]["code"])

    def test_cancelled_requests(self):
        answers = talk(START, *(notification("$/cancelRequest", id=n) for n in (7, "b")),
                       request(7, "workspace/symbol", query=""), request(8, "workspace/symbol", query=""),
                       END)[1]
        self.assertEqual(-32800, answers[7]["error"]["code"])
        self.assertIn("result", answers[8])

    def test_places_outside_of_the_text(self):
        self.maxDiff = None
        for line, character in [(0, 10**12), (10**12, 0), (-1, -1), (3, 1.5), (None, "x")]:
            place = {"line": line, "character": character}
            change = {"range": {"start": place, "end": place}, "text": " "}
            uri = {"uri": self.uri("ui/drawing.xml")}
            code, answers, _ = talk(
                START, self.opened("ui/drawing.xml"),
                notification("textDocument/didChange", textDocument=uri, contentChanges=[change]),
                *(request(n, "textDocument/" + m, textDocument=uri, position=place, positions=[place],
                          range=change["range"], newName="X", context={})
                  for n, m in enumerate(["hover", "completion", "rename", "selectionRange", "codeAction",
                                         "rangeFormatting", "inlayHint"], 1)), END)
            self.assertEqual((0, 9), (code, len(answers)))

    def test_diagnostics_across_files(self):
        """A command that is renamed in one open text breaks the uses in files that are not open."""
        text = (self.root / "commands/file.xml").read_bytes().decode()
        _, answers, others = talk(
            START, self.opened("commands/file.xml", text.replace(">WK_SAVE<", ">WK_STORE<")),
            request(1, "workspace/symbol", query="WK_STORE"), END)
        self.assertEqual("WK_STORE", answers[1]["result"][0]["name"])
        # The input ends before the keys rest; what is wrong is told in a session that goes on.
        self.assertEqual([], [m for m in others if m.get("method") != "textDocument/publishDiagnostics"])

        server = subprocess.Popen([*COMMAND, "lsp"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        server.stdin.write(START + self.opened("commands/file.xml",
                                               text.replace(">WK_SAVE<", ">WK_STORE<")))
        server.stdin.flush()
        found = {}
        while not any("ui/drawing.xml" in uri for uri in found):
            size = int(server.stdout.readline().split(b":")[1])
            server.stdout.readline()
            message = json.loads(server.stdout.read(size))
            if message.get("method") == "textDocument/publishDiagnostics":
                found[message["params"]["uri"]] = message["params"]["diagnostics"]
        server.communicate(END, timeout=60)
        self.assertEqual(0, server.returncode)
        uri = next(uri for uri in found if uri.endswith("ui/drawing.xml"))
        self.assertIn("a%20%E5%AD%97%25", uri)
        undefined = [d for d in found[uri] if d["code"] == "undefined-command"]
        self.assertIn("WK_SAVE", undefined[0]["message"])
        self.assertEqual(self.before, self.files())

    @property
    def before(self):
        return {p.relative_to(SAMPLES): p.read_bytes() for p in Path(SAMPLES).rglob("*") if p.is_file()}

    def files(self):
        return {p.relative_to(self.root): p.read_bytes() for p in self.root.rglob("*") if p.is_file()}

    def test_files_alone_and_of_other_kinds(self):
        texts = {"x.xml": "<Cmd><Identify>A</Identify><Comands/></Cmd>", "pom.xml": "<project><a/></project>",
                 "gbk.xml": '<?xml version="1.0" encoding="GBK"?><Cmd><Identify>字</Identify><x/></Cmd>'}
        with tempfile.TemporaryDirectory() as folder:
            self.root = Path(folder)
            server = subprocess.Popen([*COMMAND, "lsp"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
            server.stdin.write(START + b"".join(self.opened(*text) for text in texts.items()))
            server.stdin.flush()
            found = {}
            while len(found) < len(texts):
                size = int(server.stdout.readline().split(b":")[1])
                server.stdout.readline()
                message = json.loads(server.stdout.read(size))
                if "params" in message:
                    params = message["params"]
                    found[params["uri"].rsplit("/")[-1]] = [
                        (d["code"], d["range"]["start"]["character"]) for d in params["diagnostics"]]
            server.communicate(END, timeout=60)
        self.assertEqual({"x.xml": [("unknown-element", 27)], "pom.xml": [],
                          "gbk.xml": [("unknown-element", 63)]}, found)


if __name__ == "__main__":
    unittest.main()
