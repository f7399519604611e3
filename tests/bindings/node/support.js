// What the tests of the package share.
'use strict';

const { spawn, spawnSync } = require('node:child_process');
const { once } = require('node:events');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const ROOT = path.join(__dirname, '../../..');
const PACKAGE = path.join(ROOT, 'bindings/node');
const SECTION = path.join(process.env.XDG_RUNTIME_DIR, 'ZanCore_363_253336');
const STAMPS = 59096; // of the own boat, int64 each
const BOATS = 51092; // 80 bytes each; the name at 6

function inSection(work) {
    const file = fs.openSync(SECTION, 'r+');
    try {
        work(file);
    } finally {
        fs.closeSync(file);
    }
}

function putStamp(channel, stamp) {
    const bytes = Buffer.alloc(8);
    bytes.writeBigInt64LE(stamp);
    inSection((file) => fs.writeSync(file, bytes, 0, 8, STAMPS + 8 * channel));
}

/** Moves the stamp of an own boat's value back, as if it had been written then. */
function makeOlder(channel, seconds) {
    const bytes = Buffer.alloc(8);
    inSection((file) => fs.readSync(file, bytes, 0, 8, STAMPS + 8 * channel));
    putStamp(channel, bytes.readBigInt64LE(0) - BigInt(Math.round(seconds * 1e7)));
}

function putBoatName(boat, name) {
    const bytes = Buffer.from(`${name}\0`, 'utf16le');
    inSection((file) => fs.writeSync(file, bytes, 0, bytes.length, BOATS + 80 * boat + 6));
}

/** The environment of a program; a variable of null is taken away. */
function environmentWith(changes) {
    const all = { ...process.env, ...changes };
    return Object.fromEntries(Object.entries(all).filter(([, value]) => value !== null));
}

/** A Node program of its own; in its code `t` is the package and `assert` is there. */
function run(code, changes = {}, packageFolder = PACKAGE) {
    const program = `const t = require(${JSON.stringify(packageFolder)}); const assert = require('node:assert');\n${code}`;
    return runProgram([process.execPath, '-e', program], changes);
}

function runProgram([program, ...parameters], changes = {}) {
    const done = spawnSync(program, parameters, { env: environmentWith(changes), encoding: 'utf8', timeout: 60000 });
    return { status: done.status, stdout: done.stdout, stderr: done.stderr };
}

/** With an empty folder that is removed in the end. */
function inFolder(work) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tallowmere-'));
    try {
        return work(folder);
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
}

/** In an empty place for the section. */
function runAlone(code, changes = {}, packageFolder = PACKAGE) {
    return inFolder((folder) => run(code, { XDG_RUNTIME_DIR: folder, ...changes }, packageFolder));
}

/** Starts a program that runs the code and then holds the section; gives a function that ends it. */
async function startWriter(code) {
    const program = `const t = require(${JSON.stringify(PACKAGE)}); ${code}; console.log('ready'); process.stdin.resume()`;
    const writer = spawn(process.execPath, ['-e', program], { stdio: ['pipe', 'pipe', 'inherit'] });
    await once(writer.stdout, 'data');
    return async (signal) => {
        const ended = once(writer, 'exit');
        if (signal) writer.kill(signal);
        else writer.stdin.end();
        await ended;
    };
}

module.exports = {
    PACKAGE, ROOT, inFolder, makeOlder, putBoatName, putStamp, run, runAlone, runProgram, startWriter,
};
