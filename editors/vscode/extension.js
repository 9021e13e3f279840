// Starts "sabxml lsp" for XML files. What it knows comes from the server.
"use strict";

const vscode = require("vscode");
const { LanguageClient } = require("vscode-languageclient/node");

let client;

async function start() {
  const command = vscode.workspace.getConfiguration("sabxml").get("path") || "sabxml";
  client = new LanguageClient(
    "sabxml",
    "sabxml",
    { command, args: ["lsp"] },
    { documentSelector: [{ scheme: "file", language: "xml" }] }
  );
  try {
    await client.start();
  } catch (error) {
    client = undefined;
    vscode.window.showErrorMessage(
      `${command} cannot be started: set "sabxml.path" to the program. ${error.message}`
    );
  }
}

async function stop() {
  const running = client;
  client = undefined;
  if (running) await running.stop();
}

async function restart() {
  await stop();
  await start();
}

async function activate(context) {
  context.subscriptions.push(
    vscode.commands.registerCommand("sabxml.restart", restart),
    vscode.workspace.onDidChangeConfiguration((change) => {
      if (change.affectsConfiguration("sabxml.path")) restart();
    })
  );
  await start();
}

module.exports = { activate, deactivate: stop };
