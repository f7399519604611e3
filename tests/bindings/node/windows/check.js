// The Node package on Windows, with the real DLLs: node check.js PACKAGE. No test runner and no output, for Node has no
// standard output of its kind under Wine: a failed assertion ends it.
'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { Worker } = require('node:worker_threads');

/** The package as it is installed, beside the Windows build of koffi. */
const t = require(process.argv[2]);
const { ChannelId } = t;

function readsWhatItWrites() {
    assert.equal(t.section(), 'none');
    assert.equal(t.get('BSP'), null);
    assert.equal(t.set('BSP', 6.4), true);
    const reading = t.read('BSP');
    assert.equal(reading.value, 6.4);
    assert.equal(reading.freshness, 'fresh');
    assert.ok(reading.age >= 0);
    assert.ok(Math.abs(reading.stamp - Date.now()) < 60000);
    assert.equal(t.section(), 'attached');
    assert.equal(t.isReplay(), false);
    for (const value of [-0, 0.1, Number.MIN_VALUE, -Infinity, NaN]) {
        t.set('BSP', value);
        assert.ok(Object.is(t.get('BSP'), value));
    }
    assert.equal(t.set('SOG', 5.5, 7), true);
    assert.equal(t.get('SOG', 7), 5.5);
    assert.equal(t.set('User 0', 1, 7), false);
    assert.equal(t.boats().length, 8);
    t.set('BSP', 6.4);
    t.set('AWA', null);
    const group = t.readGroup(['BSP', ChannelId.AWA]);
    assert.equal(group.isOfOneMoment, true);
    assert.deepEqual(group.readings.map((one) => one.value), [6.4, null]);
}

function knowsNames() {
    const baro = t.channel('Barometer');
    assert.deepEqual([baro.number, baro.name, baro.unit, baro.timeout, baro.precision], [16, 'Baro', 'mbar', 120, 1]);
    assert.equal(t.channel('AWA').unit, '°');
    assert.throws(() => t.read('bsp'), t.UnknownChannelError);
    assert.throws(() => t.read('BSP', 100), t.UnknownBoatError);
    t.nameUserChannel(3, 'Vane');
    assert.equal(t.channel('Vane').number, ChannelId.USER_3);
    assert.throws(() => t.nameUserChannel(3, 'Möwe'), RangeError);
}

function readsTheSystem() {
    assert.equal(t.systemVariable(0), 15.85);
    assert.equal(t.systemInteger(6), 5);
    assert.equal(t.systemFlag(0), true);
    assert.equal(t.setMob(54.5, 10.25), false);
    assert.equal(t.mob(), null);
}

async function samples() {
    let rows = 0;
    for await (const row of t.samples(['BSP'], { interval: 0.01, count: 3 })) {
        assert.equal(row.BSP, 6.4);
        ++rows;
    }
    assert.equal(rows, 3);
}

/** A worker thread loads the package anew, with an environment of its own. */
function inWorker(code, environment) {
    return new Promise((resolve, reject) => {
        const worker = new Worker(`const t = require(${JSON.stringify(process.argv[2])}); ${code}`, {
            eval: true,
            env: { ...process.env, ...environment },
        });
        worker.once('message', resolve).once('error', reject);
    });
}

async function looksForLibraries() {
    const ask = "let text = 'found'; try { t.get('BSP') } catch (e) { text = e.name + e.message } " +
        "require('node:worker_threads').parentPort.postMessage(text)";
    const libraries = process.env.TALLOWMERE_LIBRARY_PATH;
    assert.equal(await inWorker(ask, { TALLOWMERE_LIBRARY_PATH: '', PATH: `C:\\nowhere;.;${libraries}` }), 'found');
    const told = await inWorker(ask, { TALLOWMERE_LIBRARY_PATH: 'C:\\nowhere;C:\\neither' });
    assert.equal(
        told,
        'LibraryNotFoundErrorthe library tallowmere_view could not be loaded. Tried:\n' +
            '  C:\\nowhere\\tallowmere_view.dll: not there\n  C:\\neither\\tallowmere_view.dll: not there\n' +
            'Install the Tallowmere libraries, or set TALLOWMERE_LIBRARY_PATH to the folder that holds tallowmere_view.dll.',
    );
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tallowmere-'));
    fs.writeFileSync(path.join(folder, 'tallowmere_view.dll'), 'no library');
    assert.match(await inWorker(ask, { TALLOWMERE_LIBRARY_PATH: folder }), /tallowmere_view\.dll: .+\nInstall/);
    fs.rmSync(folder, { recursive: true });
}

async function main() {
    readsWhatItWrites();
    knowsNames();
    readsTheSystem();
    await samples();
    await looksForLibraries();
}

main().then(
    () => process.exit(0),
    (error) => {
        fs.writeSync(2, `${error.stack}\n`);
        process.exit(1);
    },
);
