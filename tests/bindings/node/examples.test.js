// The example in JavaScript.
'use strict';

const assert = require('node:assert/strict');
const { spawn } = require('node:child_process');
const { once } = require('node:events');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { after, before, describe, test } = require('node:test');
const { PACKAGE, ROOT, runProgram } = require('./support');

const ALARM = path.join(ROOT, 'examples/shallow_alarm.js');

describe('shallow alarm', () => {
    let folder;
    let t;
    let environment;
    // A section of its own, for the other files run at the same time; the package as if it had been installed.
    before(() => {
        folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tallowmere-'));
        fs.symlinkSync(PACKAGE, path.join(folder, 'tallowmere'));
        process.env.XDG_RUNTIME_DIR = folder;
        environment = { NODE_PATH: folder, XDG_RUNTIME_DIR: folder };
        t = require(PACKAGE);
        t.set('Depth', null);
    });
    after(() => fs.rmSync(folder, { recursive: true }));

    const alarm = (...parameters) => runProgram([process.execPath, ALARM, '--count', '1', ...parameters], environment);

    test('names a depth that is missing, safe, shallow or no number', () => {
        for (const [depth, text] of [
            [null, 'depth -: no sounder gives one\n'],
            [12.34, 'depth 12.3 m\n'],
            [3, 'depth 3.0 m\n'],
            [2.9, 'SHALLOW: depth 2.9 m, limit 3.0 m\n'],
            [NaN, 'depth -: no sounder gives one\n'],
        ]) {
            t.set('Depth', depth);
            assert.deepEqual(alarm(), { status: 0, stdout: text, stderr: '' });
        }
        t.set('Depth', 4);
        assert.equal(alarm('--limit', '5').stdout, 'SHALLOW: depth 4.0 m, limit 5.0 m\n');
    });

    test('names a stale depth with its age, never as safe', () => {
        t.set('Depth', 12);
        const stamp = 59096 + 8 * t.ChannelId.DEPTH;
        const file = fs.openSync(path.join(folder, 'ZanCore_363_253336'), 'r+');
        const bytes = Buffer.alloc(8);
        fs.readSync(file, bytes, 0, 8, stamp);
        bytes.writeBigInt64LE(bytes.readBigInt64LE(0) - 1000n * 10_000_000n);
        fs.writeSync(file, bytes, 0, 8, stamp);
        fs.closeSync(file);
        assert.match(alarm().stdout, /^STALE: the last depth, 12\.0 m, is 10\d\d s old\n$/);
    });

    test('never takes a depth that is played for a safe one', () => {
        t.set('Depth', 12);
        const file = fs.openSync(path.join(folder, 'ZanCore_363_253336'), 'r+');
        const name = (text) => fs.writeSync(file, Buffer.from(`${text}\0`, 'utf16le'), 0, undefined, 51092 + 6);
        name('[REPLAY]');
        assert.equal(alarm().stdout, 'REPLAY, not the depth here: depth 12.0 m\n');
        name('Falcon');
        fs.closeSync(file);
        assert.equal(alarm().stdout, 'depth 12.0 m\n');
    });

    test('says what is wrong', () => {
        for (const parameters of [['--limit', '0'], ['--limit', 'x'], ['--interval=-1'], ['--interval', 'Infinity'], ['--unknown']]) {
            const done = alarm(...parameters);
            assert.deepEqual([done.status, done.stdout], [1, '']);
            assert.match(done.stderr, /^shallow_alarm: [^\n]+\n$/);
        }
    });

    test('ends cleanly on Ctrl-C', async () => {
        const example = spawn(process.execPath, [ALARM, '--interval', '1000'], {
            env: { ...process.env, ...environment },
            stdio: ['ignore', 'pipe', 'inherit'],
        });
        await once(example.stdout, 'data');
        const ended = once(example, 'exit');
        example.kill('SIGINT');
        assert.deepEqual(await ended, [0, null]);
    });
});
