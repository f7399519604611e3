// Runs the tests of the Node package: node run.js. CTest gives them folders of their own and the built libraries.
'use strict';

const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');

try {
    require.resolve('koffi', { paths: [path.join(__dirname, '../../../bindings/node')] });
} catch {
    console.log('skipped: the npm package koffi is not installed (scripts/setup test)');
    process.exit(0);
}
const tests = fs.readdirSync(__dirname).filter((file) => file.endsWith('.test.js'));
const run = spawnSync(process.execPath, ['--test', ...tests.map((file) => path.join(__dirname, file))], {
    stdio: 'inherit',
});
process.exit(run.status ?? 1);
