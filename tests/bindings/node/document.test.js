// docs/node.md: its code runs and prints what it says.
'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { PACKAGE, ROOT, inFolder, runProgram } = require('./support');

test('the code in docs/node.md does what it says', () => {
    const text = fs.readFileSync(path.join(ROOT, 'docs/node.md'), 'utf8');
    const code = [...text.matchAll(/^```js\n(.*?)^```$/gms)].map(([, block]) => block).join('\n');
    // What each line says in its comment; rounds of a loop are parted by semicolons.
    const said = (part) => [...part.matchAll(/console\.log\(.*\/\/ (.*)/g)].flatMap(([, comment]) => comment.split('; '));
    const inLoop = /^async function log.*?^}$/ms.exec(code)[0]; // which prints after all else
    const expected = [...said(code.replace(inLoop, '')), ...said(inLoop)];
    inFolder((folder) => {
        fs.symlinkSync(PACKAGE, path.join(folder, 'tallowmere'));
        const environment = { NODE_PATH: folder, XDG_RUNTIME_DIR: folder };
        const done = runProgram([process.execPath, '-e', code], environment);
        assert.equal(done.stderr, '');
        assert.deepEqual(done.stdout.trimEnd().split('\n'), expected);
        assert.ok(expected.length > 10);
    });
});
