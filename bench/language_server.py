#!/usr/bin/env python3
"""How long "sabxml lsp" takes for a key press in a file of 1 MB, and to open an application of 1,000 files.

usage: language_server.py SABXML

Times are those of a client, from sending to receiving, with the pipe between them.
"""

import json
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path


class Client:
    def __init__(self, program):
        self.server = subprocess.Popen([program, "lsp"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.count = 0
        self.request("initialize", capabilities={"general": {"positionEncodings": ["utf-8"]}})

    def send(self, **message):
        body = json.dumps({"jsonrpc": "2.0", **message}).encode()
        self.server.stdin.write(b"Content-Length: %d\r\n\r\n" % len(body) + body)
        self.server.stdin.flush()

    def receive(self):
        size = int(self.server.stdout.readline().split(b":")[1])
        self.server.stdout.readline()
        return json.loads(self.server.stdout.read(size))

    def request(self, method, **params):
        self.count += 1
        self.send(id=self.count, method=method, params=params)
        while (message := self.receive()).get("id") != self.count:
            pass
        return message["result"]

    def open(self, path):
        self.uri = {"uri": path.as_uri()}
        self.text = path.read_text()
        self.version = 1
        self.send(method="textDocument/didOpen",
                  params={"textDocument": {**self.uri, "version": 1, "text": self.text}})

    def position(self, offset):
        return {"line": self.text.count("\n", 0, offset),
                "character": offset - self.text.rfind("\n", 0, offset) - 1}

    def replace(self, offset, length, text):
        self.version += 1
        place = {"start": self.position(offset), "end": self.position(offset + length)}
        self.text = self.text[:offset] + text + self.text[offset + length:]
        self.send(method="textDocument/didChange",
                  params={"textDocument": {**self.uri, "version": self.version},
                          "contentChanges": [{"range": place, "text": text}]})

    def complete(self, offset):
        return self.request("textDocument/completion", textDocument=self.uri,
                            position=self.position(offset))

    def wait_for_diagnostics(self):
        while True:
            params = self.receive().get("params", {})
            if params.get("uri") == self.uri["uri"] and params.get("version") == self.version:
                return


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)


def user_interface(panels, command):
    return "<UI>\n  <RibbonBar>\n    <RibbonTab>\n      <Identify>TAB</Identify>\n" + "".join(
        f"      <RibbonPanel>\n        <Identify>PANEL_{p}</Identify>\n" + "".join(
            f"        <RibbonButton>\n          <Identify>BUTTON_{p}_{b}</Identify>\n"
            f"          <Command>{command}_{b}</Command>\n          <Text>Button</Text>\n"
            "        </RibbonButton>\n" for b in range(10)) + "      </RibbonPanel>\n"
        for p in range(panels)) + "    </RibbonTab>\n  </RibbonBar>\n</UI>\n"


def application(root, environments=332):
    write(root / "application.xml",
          "<Application><Identify>A</Identify><AppTemplateID>T</AppTemplateID><ProductName>P</ProductName>"
          "<CompanyName>C</CompanyName><Templates><Template><Path>template.xml</Path></Template></Templates>"
          "</Application>")
    write(root / "template.xml",
          "<Template><Identify>T</Identify><DefEnvironment><Identify>E_0</Identify></DefEnvironment>"
          "<DefModule><Identify>M</Identify></DefModule><Modules><Module>module.xml</Module></Modules></Template>")
    write(root / "module.xml", "<Module><Identify>M</Identify><Environments>" + "".join(
        f"<Environment><Path>environments\\{e}.xml</Path></Environment>" for e in range(environments)) +
          "</Environments></Module>")
    for e in range(environments):
        write(root / f"environments/{e}.xml",
              f"<Environment><Identify>E_{e}</Identify><UIPath>..\\ui\\{e}.xml</UIPath>"
              f"<DefaultCmd>C{e}_0</DefaultCmd><Commands><Command><Path>..\\commands\\{e}.xml</Path></Command>"
              "</Commands></Environment>")
        write(root / f"commands/{e}.xml", f"<Cmd>\n  <Identify>F_{e}</Identify>\n  <Commands>\n" + "".join(
            f"    <Command>\n      <Identify>C{e}_{c}</Identify>\n      <LocalName>Command {c}</LocalName>\n"
            "    </Command>\n" for c in range(190)) + "  </Commands>\n</Cmd>\n")
        write(root / f"ui/{e}.xml", user_interface(13, f"C{e}"))


def milliseconds(seconds):
    return f"{seconds * 1000:.0f} ms"


def measure(program, path):
    client = Client(program)
    start = time.perf_counter()
    client.open(path)
    client.complete(0)
    print("  open, first answer:", milliseconds(time.perf_counter() - start))
    client.wait_for_diagnostics()
    print("  open, diagnostics:", milliseconds(time.perf_counter() - start))
    place = client.text.index("</RibbonPanel>", len(client.text) // 2)
    times = []
    for letter in "<RibbonButton><Command>C0_1":
        start = time.perf_counter()
        client.replace(place, 0, letter)
        place += 1
        client.complete(place)
        times.append(time.perf_counter() - start)
    print("  key press and completion, half-written text: median",
          milliseconds(statistics.median(times)), "most", milliseconds(max(times)))
    client.replace(place, 0, "</Command></RibbonButton>")
    place = client.text.index("Button</Text>", len(client.text) // 3)
    times = []
    for letter in "abcdefghijklmnopqrst":
        start = time.perf_counter()
        client.replace(place, 0, letter)
        client.complete(place)
        times.append(time.perf_counter() - start)
    print("  key press and completion, whole text: median", milliseconds(statistics.median(times)),
          "most", milliseconds(max(times)))
    start = time.perf_counter()
    client.replace(client.text.index("<Text>") + 1, 4, "Txt")
    client.wait_for_diagnostics()
    print("  key press to diagnostics, a rest of 50 ms included:",
          milliseconds(time.perf_counter() - start))
    client.request("shutdown")
    client.send(method="exit")
    client.server.wait()


def main():
    with tempfile.TemporaryDirectory() as folder:
        root = Path(folder)
        write(root / "one/ui.xml", user_interface(700, "C"))
        print(f"A file of {(root / 'one/ui.xml').stat().st_size} bytes")
        measure(sys.argv[1], root / "one/ui.xml")
        application(root / "many")
        files = list((root / "many").rglob("*.xml"))
        print(f"An application of {len(files)} files, {sum(f.stat().st_size for f in files) >> 20} MB")
        measure(sys.argv[1], root / "many/ui/100.xml")


if __name__ == "__main__":
    main()
