// check.js MLDS [NPM]: the grammar over a sample, the extension with the program mlds and a stand-in
// for the editor, and what a package holds. Needs no network. Ends with 77 if `npm ci` was not run.
'use strict';

const assert = require('assert');
const { execFileSync } = require('child_process');
const fs = require('fs');
const Module = require('module');
const os = require('os');
const path = require('path');

const [mlds, npm = 'npm'] = process.argv.slice(2);
const FOLDER = path.dirname(__dirname);
const SECONDS = 20; // that anything here may take

function read(...names) {
    return fs.readFileSync(path.join(FOLDER, ...names), 'utf8');
}

// ---- the grammar ----

async function loadGrammar() {
    const textmate = require('vscode-textmate');
    const oniguruma = require('vscode-oniguruma');
    await oniguruma.loadWASM(fs.readFileSync(require.resolve('vscode-oniguruma/release/onig.wasm')));
    const registry = new textmate.Registry({
        onigLib: Promise.resolve({
            createOnigScanner: (patterns) => new oniguruma.OnigScanner(patterns),
            createOnigString: (text) => new oniguruma.OnigString(text),
        }),
        loadGrammar: async () => textmate.parseRawGrammar(
            read('syntaxes', 'mlr.tmLanguage.json'), 'mlr.tmLanguage.json'),
    });
    return { grammar: await registry.loadGrammar('source.mlr'), initial: textmate.INITIAL };
}

// Of every line: [text, innermost scope without ".mlr"], without what has no scope of its own.
function tokenize({ grammar, initial }, text) {
    let stack = initial;
    return text.split('\n').map((line) => {
        const result = grammar.tokenizeLine(line, stack);
        stack = result.ruleStack;
        return result.tokens
            .map((token) => [line.slice(token.startIndex, token.endIndex).trim(),
                token.scopes[token.scopes.length - 1].replace(/\.mlr$/, '')])
            .filter(([word, scope]) => word !== '' && scope !== 'source');
    });
}

// Line of the sample, word, and the scope that it has there.
const SCOPES = [
    [1, '; A comment with "quotes" and # signs.', 'comment.line.semicolon'],
    [2, 'language', 'keyword.other.statement'],
    [3, 'tier', 'keyword.other.statement'],
    [3, 'letters', 'entity.name.type.tier'],
    [3, 'from', 'keyword.other.from'],
    [3, 'ch', 'constant.other.token'],
    [3, '; and behind it', 'comment.line.semicolon'],
    [4, 'feature', 'keyword.other.statement'],
    [4, 'vowel', 'variable.other.property.feature'],
    [5, 'fric', 'constant.other.value'],
    [6, '[0-9](?=:\\s";")+', 'string.regexp'],
    [6, 'spellout', 'support.function.spellout'],
    [6, '; such as 1', 'comment.line.semicolon'],
    [7, 'spans', 'keyword.other.spans'],
    [8, 'letter', 'variable.other.property.feature'],
    [8, '+', 'keyword.operator.quantifier'],
    [9, 'weak', 'entity.name.type.token'],
    [10, '\\"', 'constant.character.escape'],
    [11, 'stress', 'variable.other.property.field'],
    [12, 'before', 'keyword.other.show'],
    [12, '1', 'constant.numeric'],
    [13, 'A', 'entity.name.type.class'],
    [13, '|', 'keyword.operator.alternative'],
    [14, 'sounds', 'entity.name.section.block'],
    [14, 'phone', 'entity.name.type.tier'],
    [14, 'within', 'keyword.other.within'],
    [14, 'first', 'keyword.other.mode'],
    [15, '"soft c"', 'entity.name.function.rule'],
    [15, 'tS', 'constant.other.token'],
    [15, '->', 'keyword.operator.arrow'],
    [15, '#', 'constant.language.boundary'],
    [15, '##', 'constant.language.boundary.utterance'],
    [15, '_', 'variable.language.focus'],
    [15, '/', 'keyword.control.environment'],
    [15, '\\', 'keyword.control.environment'],
    [15, '-', 'keyword.operator.sign'],
    [15, '>=', 'keyword.operator.comparison'],
    [16, 'x', 'variable.parameter.capture'],
    [16, 'A', 'constant.other.token'],
    [16, '3', 'constant.numeric'],
    [16, '&', 'keyword.operator.look'],
    [16, 'here', 'variable.other.mark'],
    [17, '0', 'constant.language.nothing'],
    [17, ':=', 'keyword.operator.assignment'],
    [17, '@', 'keyword.operator.mark'],
    [17, 'word', 'entity.name.type.tier'],
    [17, '.', 'constant.language.any'],
    [18, 'in', 'support.function.in'],
    [18, '130', 'constant.numeric'],
    [19, '=>', 'keyword.operator.result'],
    [19, "'a", 'constant.other.token'],
];

async function checkGrammar() {
    const grammar = await loadGrammar();
    const lines = tokenize(grammar, read('test', 'sample.mlr'));
    for (const [line, word, scope] of SCOPES) {
        const found = lines[line - 1].filter((token) => token[0] === word).map((token) => token[1]);
        assert(found.includes(scope), `line ${line}, ${word}: expected ${scope}, found ` +
            (found.join(' ') || JSON.stringify(lines[line - 1])));
    }
    // Nobody has added a statement that the grammar does not know.
    const files = ['tools/mlds', 'languages'].map((name) => path.join(FOLDER, '..', '..', name))
        .filter((name) => fs.existsSync(name))
        .flatMap((name) => fs.readdirSync(name).map((entry) => path.join(name, entry)))
        .filter((name) => name.endsWith('.mlr'));
    assert(files.length > 0);
    for (const file of [...files, path.join(__dirname, 'sample.mlr')]) {
        const text = fs.readFileSync(file, 'utf8');
        tokenize(grammar, text).forEach((tokens, i) => {
            if (/^(\s|;|$)/.test(text.split('\n')[i])) return;
            assert.strictEqual(tokens[0][1], 'keyword.other.statement', `${file}:${i + 1}`);
        });
    }
    // What is left open ends with its line.
    const [, next] = tokenize(grammar, 'assert "open [\ntier a : b');
    assert.deepStrictEqual(next[0], ['tier', 'keyword.other.statement']);
}

// ---- the editor ----

// As much of the editor as the extension uses, and what a person sees of it.
function makeEditor(settings) {
    const handlers = {};
    const seen = new Map();
    const complaints = [];
    const on = (name) => (handler) => {
        handlers[name] = handler;
        return { dispose() {} };
    };
    const vscode = {
        DiagnosticSeverity: { Error: 0, Warning: 1 },
        Range: class {
            constructor(line, character, endLine, endCharacter) {
                this.start = { line, character };
                this.end = { line: endLine, character: endCharacter };
            }
        },
        Diagnostic: class {
            constructor(range, message, severity) {
                Object.assign(this, { range, message, severity });
            }
        },
        Uri: { file: (fsPath) => ({ fsPath, scheme: 'file' }) },
        languages: {
            createDiagnosticCollection: () => ({
                set: (uri, diagnostics) => seen.set(uri.fsPath, diagnostics),
                dispose() {},
            }),
        },
        window: { showErrorMessage: (text) => complaints.push(text) },
        workspace: {
            textDocuments: [],
            getConfiguration: () => ({ get: (name, otherwise) => settings[name] ?? otherwise }),
            onDidOpenTextDocument: on('open'),
            onDidSaveTextDocument: on('save'),
            onDidCloseTextDocument: on('close'),
            onDidChangeConfiguration: on('settings'),
        },
    };
    return { vscode, handlers, seen, complaints };
}

async function until(condition, what) {
    const end = Date.now() + SECONDS * 1000;
    while (!condition()) {
        assert(Date.now() < end, `waited ${SECONDS} seconds for ${what}`);
        await new Promise((resolve) => setTimeout(resolve, 10));
    }
}

async function checkExtension(folder) {
    const settings = { path: mlds };
    const editor = makeEditor(settings);
    const load = Module._load;
    Module._load = (name, ...others) =>
        name === 'vscode' ? editor.vscode : load(name, ...others);
    const extension = require('../extension.js');
    Module._load = load;

    const file = path.join(folder, 'wrong.mlr');
    const other = path.join(folder, 'more.mlr');
    const document = { languageId: 'mlr', uri: editor.vscode.Uri.file(file) };
    const write = (name, text) => fs.writeFileSync(name, text);
    // The underlined text, with the line: what a person sees.
    const underlined = (name) => (editor.seen.get(name) || []).map(({ range, severity }) => {
        const line = fs.readFileSync(name, 'utf8').replace(/^\uFEFF/, '').split('\n')[range.start.line];
        return [range.start.line, line.slice(range.start.character, range.end.character), severity];
    });
    // Two letters beyond U+FFFF stand before the fault.
    const RULES = 'tier letters from text : a 𐐩 𐐨\ntier phone : a b\n' +
        'block x : letters -> phone first\n  𐐩 -> a , 𐐨 -> wrong , a -> b\n';

    write(file, RULES);
    editor.vscode.workspace.textDocuments.push(document);
    const context = { subscriptions: [] };
    extension.activate(context);
    assert(context.subscriptions.length >= 4);
    await until(() => editor.seen.has(file), 'what is wrong');
    assert.deepStrictEqual(underlined(file), [[3, 'wrong', 0]]);
    const [first] = editor.seen.get(file);
    assert.strictEqual(first.source, 'mlds');
    assert.match(first.message, /tier phone has no token 'wrong'/);

    // The mark of byte order is no column. Then a warning, then nothing.
    write(file, '\uFEFF' + RULES.replace('𐐨\n', '𐐨[\n').replace('wrong', 'b'));
    editor.handlers.save(document);
    await until(() => underlined(file)[0]?.[0] === 0, 'the fault of the first line');
    assert.deepStrictEqual(underlined(file)[0], [0, '[', 0]);
    write(file, RULES.replace(', 𐐨 -> wrong', ''));
    editor.handlers.save(document);
    await until(() => underlined(file)[0]?.[2] === 1, 'a warning');
    // Who saves twice in a row waits for the second answer, and hears nothing of the first.
    editor.handlers.save(document);
    write(file, RULES.replace('wrong', 'b'));
    editor.handlers.save(document);
    await until(() => underlined(file).length === 0, 'nothing');
    assert.deepStrictEqual(editor.complaints, []);
    // At the end of a line something is underlined, too.
    write(file, RULES.replace('wrong', 'b').replace(' -> b\n', ' ->\n'));
    editor.handlers.save(document);
    await until(() => underlined(file).length > 0, 'a missing result');
    assert.deepStrictEqual(underlined(file)[1], [3, '>', 0]);

    // Faults of other files are shown there, and go with them.
    write(file, RULES.replace('wrong', 'b') + 'include "more.mlr"\n');
    write(other, 'clas A = a\n');
    editor.handlers.save(document);
    await until(() => underlined(other).length > 0, 'the fault of an included file');
    assert.deepStrictEqual(underlined(other)[0], [0, 'clas', 0]);
    editor.handlers.close(document);
    assert.deepStrictEqual(underlined(other), []);

    // Nobody is told twice in a row that there is no program.
    settings.path = path.join(folder, 'none');
    editor.handlers.settings({ affectsConfiguration: () => true });
    await until(() => editor.complaints.length === 1, 'a complaint');
    assert.match(editor.complaints[0], /cannot be started.*mlds\.path/s);
    editor.handlers.save(document);
    await new Promise((resolve) => setTimeout(resolve, 300));
    settings.path = process.execPath; // it answers otherwise
    editor.handlers.save(document);
    await until(() => editor.complaints.length === 2, 'a complaint');
    assert.match(editor.complaints[1], /gave no answer/);
    editor.handlers.save({ languageId: 'mlr', uri: { scheme: 'untitled', fsPath: 'Untitled-1' } });
    settings.check = false;
    editor.handlers.save(document);
    extension.deactivate();
    assert.strictEqual(editor.complaints.length, 2);
}

// ---- the rest of the package ----

// An installed editor has no modules beside the extension, and these files alone.
function checkPackage() {
    const listed = JSON.parse(execFileSync(npm,
        ['pack', '--dry-run', '--json', '--offline', '--ignore-scripts'],
        { cwd: FOLDER, encoding: 'utf8', timeout: SECONDS * 1000, stdio: ['ignore', 'pipe', 'pipe'] }));
    assert.deepStrictEqual(listed[0].files.map((file) => file.path).sort(), [
        'README.md', 'checker.js', 'extension.js', 'language-configuration.json', 'package.json',
        'snippets/mlr.json', 'syntaxes/mlr.tmLanguage.json']);
    const manifest = JSON.parse(read('package.json'));
    assert.strictEqual(manifest.dependencies, undefined);
    const { languages, grammars, snippets } = manifest.contributes;
    for (const name of [manifest.main, languages[0].configuration, grammars[0].path, snippets[0].path]) {
        assert(fs.existsSync(path.join(FOLDER, name)), name);
    }
    assert(!read('package-lock.json').includes('://'), 'package-lock.json names a host');
}

// Snippets as they are inserted are rules: the first choices taken, the program finds no fault.
function checkSnippets(folder) {
    const snippets = JSON.parse(read('snippets', 'mlr.json'));
    const text = (name) => snippets[name].body.join('\n')
        .replace(/\$\{\d+\|([^,|]*)[^}]*\}/g, '$1')
        .replace(/\$\{\d+:([^}]*)\}/g, '$1')
        .replace(/\$\d+/g, '').trimEnd();
    const lines = [
        text('Tier of letters').replace('a b c', 'a c e i o u p t k m n'),
        '  ' + text('Feature'),
        '  ' + text('Feature with values'),
        text('Tier that spans'),
        text('Tier') + ' p t k m n',
        '  ' + text('Field'),
        '  feature voc = a e i o u',
        text('Show'),
        'class left = a\nclass right = a',
        text('Class'),
        text('Block'),
        '  ' + text('Rule'),
        text('Block in one tier'),
        '  ' + text('Rule that sets fields'),
        text('Assert').replace('"text"', '"c"').replace('tokens', 'k'),
    ];
    const file = path.join(folder, 'snippets.mlr');
    fs.writeFileSync(file, lines.join('\n') + '\n');
    assert.strictEqual(lines.length, Object.keys(snippets).length + 2, 'a snippet is not tried');
    let found;
    try {
        found = execFileSync(mlds, ['check', '--json', file], { timeout: SECONDS * 1000 });
    } catch (error) {
        found = error.stdout;
    }
    const faults = JSON.parse(found).filter((message) => message.severity === 'error');
    assert.deepStrictEqual(faults, [], fs.readFileSync(file, 'utf8'));
}

async function main() {
    if (!fs.existsSync(path.join(FOLDER, 'node_modules', 'vscode-textmate'))) {
        console.log('run "npm ci --ignore-scripts" in editors/vscode first');
        process.exit(77);
    }
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'mlds_editor_'));
    try {
        await checkGrammar();
        await checkExtension(folder);
        checkSnippets(folder);
        checkPackage();
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
}

main().catch((error) => {
    console.error(error);
    process.exit(1);
});
