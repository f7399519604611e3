// Programs in folders of their own: no section, sections that go, libraries that are not there. And the package.
'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const { PACKAGE, inFolder, run, runAlone, runProgram } = require('./support');

const LIBRARIES = process.env.TALLOWMERE_LIBRARY_PATH;
const SILENT_SUCCESS = { status: 0, stdout: '', stderr: '' };

describe('without a section', () => {
    test('the catalogue answers and reading makes none', () => {
        const done = runAlone(`
            assert.equal(t.section(), 'none');
            assert.equal(t.get('BSP'), null);
            assert.equal(t.channel('BSP').unit, 'kt');
            assert.equal(t.boats().length, 0);
            assert.equal(t.mob() ?? t.systemVariable(0) ?? t.systemInteger(6) ?? t.systemFlag(0), null);
            assert.equal(t.readGroup(['BSP']).isOfOneMoment, false);
            assert.deepEqual(require('node:fs').readdirSync(process.env.XDG_RUNTIME_DIR), []);`);
        assert.deepEqual(done, SILENT_SUCCESS);
    });

    test('the first write makes one and is read at once', () => {
        const done = runAlone(`
            assert.equal(t.get('BSP'), null);
            assert.equal(t.set('BSP', 6.4), true);
            assert.equal(t.get('BSP'), 6.4);
            assert.equal(t.section(), 'attached');`);
        assert.deepEqual(done, SILENT_SUCCESS);
    });

    test('a closed view is the catalogue', () => {
        const done = runAlone(`
            t.set('BSP', 6.4);
            const view = new t.View();
            assert.equal(view.get('BSP'), 6.4);
            view.close();
            view.close();
            assert.equal(view.get('BSP'), null);
            assert.equal(view.channel('BSP').name, 'BSP');
            assert.equal(t.get('BSP'), 6.4);`);
        assert.deepEqual(done, SILENT_SUCCESS);
    });

    test('a section that goes is noticed', () => {
        const done = runAlone(`
            const { startWriter } = require(${JSON.stringify(path.join(__dirname, 'support.js'))});
            (async () => {
                let end = await startWriter("t.set('BSP', 6.4)");
                assert.equal(t.section(), 'attached');
                assert.equal(t.get('BSP'), 6.4);
                await end();
                assert.equal(t.section(), 'gone');
                assert.equal(t.get('BSP'), null);
                end = await startWriter("t.set('BSP', 7.4)");
                assert.equal(t.section(), 'attached');
                assert.equal(t.get('BSP'), 7.4);
                await end('SIGKILL');
                assert.equal(t.section(), 'gone');
                assert.equal(t.set('BSP', 8.4), true);
                assert.equal(t.get('BSP'), 8.4);
            })();`);
        assert.deepEqual(done, SILENT_SUCCESS);
    });
});

describe('a hostile section', () => {
    test('no bytes make anything fail', () => {
        const done = runAlone(`
            const fs = require('node:fs');
            const crypto = require('node:crypto');
            t.set('BSP', 6.4);
            const path = process.env.XDG_RUNTIME_DIR + '/ZanCore_363_253336';
            const size = fs.statSync(path).size;
            // Pseudo-random, the same each time: the bytes that a cipher makes of zeros.
            const junk = (seed) => crypto.createCipheriv('aes-128-ctr', Buffer.alloc(16, seed), Buffer.alloc(16)).update(Buffer.alloc(size));
            for (const bytes of [junk(1), junk(2), junk(3), Buffer.alloc(size, 255), Buffer.alloc(size)]) {
                const file = fs.openSync(path, 'r+');
                fs.writeSync(file, bytes);
                fs.closeSync(file);
                for (const channel of t.channels()) {
                    const { name, longName, unit, timeout, precision, plausibleRange } = channel;
                    assert(t.findChannel(name) !== null || name === '');
                    for (const boat of [0, 1, 2, 50, 99]) {
                        const value = channel.get(boat);
                        assert(value === null || typeof value === 'number');
                        channel.read(boat);
                        if (channel.number > 0) channel.set(1.5, boat);
                    }
                }
                for (let number = 0; number < 100; ++number) {
                    const boat = t.boat(number);
                    const { name, mmsi, colour, isInUse } = boat;
                    t.findBoat(name);
                    boat.readGroup([...Array(414).keys()]);
                }
                for (let i = 0; i < 80; ++i) t.systemVariable(i);
                for (let i = 0; i < 13; ++i) t.systemInteger(i);
                for (let i = 0; i < 60; ++i) t.systemFlag(i);
                t.mob(), t.boats();
            }`);
        assert.deepEqual(done, SILENT_SUCCESS);
    });
});

describe('libraries', () => {
    const TELL = "try { t.get('BSP') } catch (error) { assert(error instanceof t.LibraryNotFoundError); console.log(error.message) }";
    const WORK = "assert.equal(t.set('BSP', 1), true); assert.equal(t.get('BSP'), 1)";

    test('missing ones are told with what was tried', () => {
        const done = run(TELL, { TALLOWMERE_LIBRARY_PATH: '/nowhere:/neither' });
        const tried = ['/nowhere', '/neither'].flatMap((folder) =>
            ['.1', ''].map((end) => `  ${folder}/libtallowmere_view.so${end}: not there\n`));
        assert.equal(
            done.stdout,
            `the library tallowmere_view could not be loaded. Tried:\n${tried.join('')}Install the Tallowmere ` +
                'libraries, or set TALLOWMERE_LIBRARY_PATH to the folder that holds libtallowmere_view.so.1.\n',
        );
    });

    test('one that is no library is told', () => {
        const done = inFolder((folder) => {
            fs.writeFileSync(path.join(folder, 'libtallowmere_view.so.1'), 'no library');
            return run(TELL, { TALLOWMERE_LIBRARY_PATH: folder });
        });
        assert.match(done.stdout, /libtallowmere_view\.so\.1: .*file too short/);
    });

    test('are found in a folder that is named from the current one', () => {
        const viewFolder = JSON.stringify(LIBRARIES.split(':')[1]);
        const code = `process.chdir(${viewFolder}); assert.equal(t.get('BSP'), null)`;
        assert.deepEqual(runAlone(code, { TALLOWMERE_LIBRARY_PATH: '.' }), SILENT_SUCCESS);
    });

    test('are found beside the package and by the system', () => {
        inFolder((folder) => {
            const copy = path.join(folder, 'tallowmere');
            fs.cpSync(path.join(PACKAGE, 'lib'), path.join(copy, 'lib'), { recursive: true });
            fs.copyFileSync(path.join(PACKAGE, 'package.json'), path.join(copy, 'package.json'));
            fs.symlinkSync(path.join(PACKAGE, 'node_modules'), path.join(copy, 'node_modules'));
            for (const part of LIBRARIES.split(':'))
                for (const file of fs.readdirSync(part))
                    if (/^libtallowmere.*\.so\.1$/.test(file)) fs.copyFileSync(path.join(part, file), path.join(copy, 'lib', file));
            assert.deepEqual(runAlone(WORK, { TALLOWMERE_LIBRARY_PATH: null }, copy), SILENT_SUCCESS);
        });
        const installed = { TALLOWMERE_LIBRARY_PATH: null, LD_LIBRARY_PATH: LIBRARIES };
        assert.deepEqual(runAlone(WORK, installed), SILENT_SUCCESS);
    });
});

describe('the package', () => {
    const read = (file) => fs.readFileSync(path.join(PACKAGE, file), 'utf8');

    test('has the version of the libraries', () => {
        assert.equal(JSON.parse(read('package.json')).version, process.env.TALLOWMERE_VERSION);
        assert.equal(JSON.parse(read('package-lock.json')).version, process.env.TALLOWMERE_VERSION);
    });

    test('locks what it depends on, from any registry', () => {
        const { packages } = JSON.parse(read('package-lock.json'));
        for (const [name, entry] of Object.entries(packages)) {
            if (name === '') continue;
            assert.match(entry.integrity, /^sha512-/, name);
            assert.equal(entry.resolved, undefined, name);
        }
    });

    test('declares what it exports, and is imported by name', () => {
        const declared = [...read('lib/index.d.ts').matchAll(/^export (?:function|class) (\w+)|^export \{ (\w+) \};$/gm)];
        const names = declared.map(([, one, other]) => one ?? other).sort();
        assert.deepEqual(names, Object.keys(require(PACKAGE)).sort());
        const program = `import { ${names.join(', ')} } from ${JSON.stringify(path.join(PACKAGE, 'lib/index.js'))};
                         if (typeof get !== 'function') throw new Error();`;
        assert.deepEqual(runProgram([process.execPath, '--input-type=module', '-e', program]), SILENT_SUCCESS);
    });

    test('its types hold', (context) => {
        const compiler = path.join(PACKAGE, 'node_modules/typescript/bin/tsc');
        if (!fs.existsSync(compiler)) return context.skip('typescript is not installed');
        const done = runProgram([process.execPath, compiler, '--project', path.join(__dirname, 'tsconfig.json')]);
        assert.deepEqual(done, SILENT_SUCCESS);
    });
});

test('on Windows only whole folders of PATH are searched', () => {
    const { wholeFolders } = require(path.join(PACKAGE, 'lib', 'library.js'));
    const whole = ['C:\\Sailing', 'd:/tools', '\\\\server\\share\\bin'];
    assert.deepEqual(wholeFolders([...whole, '', '.', 'bin', '\\bin', '/bin', 'C:', 'C:bin']), whole);
});
