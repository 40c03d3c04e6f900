// Shows in the editor what is wrong with rule files, when they are opened and saved.
'use strict';

const vscode = require('vscode');
const { check } = require('./checker');

let collection;
let lastComplaint = null; // nobody wants the same one at every key
const running = new Map(); // rule file -> the process that checks it
const shown = new Map(); // rule file -> file -> diagnostics: it may include others

function isRuleFile(document) {
    return document.languageId === 'mlr' && document.uri.scheme === 'file';
}

function diagnosticOf(finding) {
    const range = new vscode.Range(finding.line, finding.begin, finding.line, finding.end);
    const severity = finding.severity === 'error'
        ? vscode.DiagnosticSeverity.Error
        : vscode.DiagnosticSeverity.Warning;
    const diagnostic = new vscode.Diagnostic(range, finding.message, severity);
    diagnostic.source = 'mlds';
    return diagnostic;
}

// Two rule files may include the same third one, and find the same in it.
function publish(file) {
    const found = new Map();
    for (const files of shown.values()) {
        for (const diagnostic of files.get(file) || []) {
            const { range, message } = diagnostic;
            found.set(JSON.stringify([range.start.line, range.start.character, message]), diagnostic);
        }
    }
    collection.set(vscode.Uri.file(file), [...found.values()]);
}

function replaceFindings(ruleFile, findings) {
    const before = shown.get(ruleFile) || new Map();
    const files = new Map();
    for (const finding of findings) {
        if (!files.has(finding.file)) files.set(finding.file, []);
        files.get(finding.file).push(diagnosticOf(finding));
    }
    shown.set(ruleFile, files);
    for (const file of new Set([...before.keys(), ...files.keys()])) publish(file);
}

function stop(ruleFile) {
    const child = running.get(ruleFile);
    running.delete(ruleFile);
    if (child) child.kill();
}

function look(document) {
    if (!isRuleFile(document)) return;
    const settings = vscode.workspace.getConfiguration('mlds', document.uri);
    const ruleFile = document.uri.fsPath;
    stop(ruleFile);
    if (!settings.get('check', true)) return replaceFindings(ruleFile, []);
    const child = check(settings.get('path', 'mlds'), ruleFile, (complaint, findings) => {
        // Saved again, or closed: another answer is on its way, or nobody waits for one.
        if (running.get(ruleFile) !== child) return;
        running.delete(ruleFile);
        replaceFindings(ruleFile, findings);
        if (complaint && complaint !== lastComplaint) vscode.window.showErrorMessage(complaint);
        lastComplaint = complaint;
    });
    running.set(ruleFile, child);
}

function forget(document) {
    if (!isRuleFile(document)) return;
    stop(document.uri.fsPath);
    replaceFindings(document.uri.fsPath, []);
    shown.delete(document.uri.fsPath);
}

function activate(context) {
    collection = vscode.languages.createDiagnosticCollection('mlds');
    context.subscriptions.push(
        collection,
        vscode.workspace.onDidOpenTextDocument(look),
        vscode.workspace.onDidSaveTextDocument(look),
        vscode.workspace.onDidCloseTextDocument(forget),
        vscode.workspace.onDidChangeConfiguration((event) => {
            if (!event.affectsConfiguration('mlds')) return;
            lastComplaint = null;
            vscode.workspace.textDocuments.forEach(look);
        }));
    vscode.workspace.textDocuments.forEach(look);
}

function deactivate() {
    for (const ruleFile of [...running.keys()]) stop(ruleFile);
}

module.exports = { activate, deactivate };
