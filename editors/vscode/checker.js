// Asks "mlds check" what is wrong with a rule file. Knows nothing of the editor.
'use strict';

const { execFile } = require('child_process');
const fs = require('fs');
const path = require('path');

const SECONDS = 30; // a file that takes longer to check is none that people edit
const MOST_OUTPUT = 16 * 1024 * 1024;

// The program counts characters, the editor UTF-16 units: a character beyond U+FFFF is two of
// them. `units` is where so many characters of the line end.
function unitsOf(line, characters) {
    let units = 0;
    for (const character of line) {
        if (characters-- <= 0) break;
        units += character.length;
    }
    return units;
}

// From a message of the program, whose lines and columns begin with 1, to places of the editor,
// which begin with 0. What stands nowhere is shown on the first line.
function placeOf(message, lines) {
    const number = Math.min(Math.max(message.line - 1, 0), lines.length - 1);
    const line = lines[number] || '';
    const first = message.line > 0 ? Math.max(message.column - 1, 0) : 0;
    const end = unitsOf(line, first + Math.max(message.length, 1));
    // At the end of a line there is nothing to underline but what stands before it.
    const begin = Math.min(unitsOf(line, first), Math.max(end - 1, 0));
    return { line: number, begin, end };
}

// As the program reads them: from the disk, and without a byte order mark.
function linesOf(file) {
    try {
        return fs.readFileSync(file, 'utf8').replace(/^\uFEFF/, '').split(/\r?\n/);
    } catch {
        return [''];
    }
}

// Paths in messages are those that the program was given, or was led to by the rules.
function findingsOf(messages, folder) {
    const texts = new Map();
    return messages.map((message) => {
        const file = path.resolve(folder, message.file);
        if (!texts.has(file)) texts.set(file, linesOf(file));
        return {
            file,
            ...placeOf(message, texts.get(file)),
            severity: message.severity,
            message: message.message,
        };
    });
}

// What a person can do about a program that gave no answer.
function complaintOf(program, error, errors) {
    if (error && (error.code === 'ENOENT' || error.code === 'EACCES')) {
        return `The program "${program}" that checks rules cannot be started. ` +
            'The setting mlds.path says where it is.';
    }
    if (error && error.killed) return `"${program} check" did not end within ${SECONDS} seconds.`;
    const said = errors.trim().split('\n')[0];
    return `"${program} check" gave no answer${said ? ': ' + said : '.'}`;
}

/**
 * Checks a rule file. Gives the child process; calls back with a complaint and nothing else, or with
 * null and the findings: { file, line, begin, end, severity, message }.
 */
function check(program, file, done) {
    const folder = path.dirname(file);
    const options = { cwd: folder, timeout: SECONDS * 1000, maxBuffer: MOST_OUTPUT };
    return execFile(program, ['check', '--json', file], options, (error, output, errors) => {
        let messages = null;
        try {
            messages = JSON.parse(output);
        } catch {
            // Who found faults ends with a status of its own: only the answer counts.
        }
        if (!Array.isArray(messages)) return done(complaintOf(program, error, errors), []);
        return done(null, findingsOf(messages, folder));
    });
}

module.exports = { check };
