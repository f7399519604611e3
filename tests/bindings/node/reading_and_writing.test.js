// What is written is read, by this program and by others.
'use strict';

const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const t = require('../../../bindings/node');
const { makeOlder, putBoatName, putStamp, run, startWriter } = require('./support');

const { ChannelId } = t;

describe('values', () => {
    test('a written value is read with its age', () => {
        assert.equal(t.set('BSP', 6.4), true);
        const reading = t.read('BSP');
        assert.equal(reading.value, 6.4);
        assert.equal(reading.current, 6.4);
        assert.equal(reading.freshness, 'fresh');
        assert.equal(reading.channel, 1);
        assert.equal(reading.source, 1);
        assert.ok(reading.age >= 0);
        assert.ok(reading.stamp instanceof Date);
        assert.equal(t.get('BSP'), 6.4);
    });

    test('no value is null', () => {
        t.set('BSP', null);
        assert.deepEqual(t.read('BSP'), {
            value: null, current: null, age: null, freshness: 'none', isStale: false, channel: 1, source: 1, stamp: null,
        });
        assert.equal(t.get('BSP'), null);
        t.set('BSP', 6.4);
        assert.equal(t.set('BSP', 32767), true);
        assert.equal(t.get('BSP'), null);
    });

    test('doubles come back bit for bit', () => {
        for (const value of [0, -0, 0.1, Math.PI, Number.MIN_VALUE, Number.MAX_VALUE, -Infinity, NaN]) {
            t.set('BSP', value);
            assert.ok(Object.is(t.get('BSP'), value), String(value));
        }
    });

    test('a value older than its time-out is stale', () => {
        t.set('BSP', 6.4);
        makeOlder(ChannelId.BSP, 12);
        const reading = t.read('BSP');
        assert.equal(reading.value, 6.4);
        assert.equal(reading.current, null);
        assert.equal(reading.isStale, true);
        assert.ok(reading.age >= 12);
    });

    test('a channel without a time-out never goes stale', () => {
        t.set('Twist', 4);
        makeOlder(ChannelId.TWIST, 1e6);
        assert.equal(t.read('Twist').freshness, 'timeless');
        assert.equal(t.read('Twist').current, 4);
    });

    test('no stamp breaks a reading', () => {
        t.set('BSP', 6.4);
        for (const stamp of [-(2n ** 63n), -1n, 0n, 1n, 2n ** 62n, 2n ** 63n - 2n, 2n ** 63n - 1n]) {
            putStamp(ChannelId.BSP, stamp);
            assert.ok([null, 6.4].includes(t.read('BSP').value));
        }
    });

    test('angles are brought into range and implausible values clear', () => {
        t.set('AWA', 190);
        assert.equal(t.get('AWA'), -170);
        assert.equal(t.set('AWS', 200), true);
        assert.equal(t.get('AWS'), null);
    });

    test('other boats keep some channels only', () => {
        assert.equal(t.set('BSP', 5.5, 7), true);
        assert.equal(t.get('BSP', 7), 5.5);
        assert.equal(t.set('User 0', 1, 7), false);
        assert.equal(t.get('User 0', 7), null);
    });

    test("the own boat's fix is dropped although the answer is true", () => {
        assert.equal(t.set('Lat', 54.5), true);
        assert.equal(t.get('Lat'), null);
    });

    test('a group is of one moment', () => {
        t.set('BSP', 6.4);
        t.set('AWA', null);
        const group = t.readGroup(['BSP', ChannelId.AWA]);
        assert.equal(group.isOfOneMoment, true);
        assert.ok(group.moment instanceof Date);
        assert.deepEqual(group.readings.map((reading) => reading.value), [6.4, null]);
        assert.deepEqual(t.readGroup([]).readings, []);
    });

    test('the clock and what is no number are not written', () => {
        assert.throws(() => t.set(0, 1), RangeError);
        for (const nothing of [undefined, '1', 1n, {}, Symbol('x')])
            assert.throws(() => t.set('BSP', nothing), {
                name: 'TypeError',
                message: `a value is a number or null, not ${String(nothing)}`,
            });
    });
});

describe('names', () => {
    test('the constants are the channels', () => {
        assert.deepEqual(Object.values(ChannelId), Array.from({ length: 414 }, (_, i) => i));
        for (const [constant, number] of Object.entries(ChannelId)) {
            const name = t.channel(number).name.toUpperCase();
            if (/^[A-Z0-9]+$/.test(name)) assert.equal(constant, name);
        }
    });

    test('a channel is found by number, constant, short and long name', () => {
        const baro = t.channel('Baro');
        assert.equal(baro.number, 16);
        assert.equal(baro.name, 'Baro');
        assert.equal(baro.longName, 'Barometer');
        assert.equal(baro.unit, 'mbar');
        assert.equal(baro.timeout, 120);
        assert.equal(baro.precision, 1);
        assert.equal(baro.plausibleRange, null);
        assert.equal(baro.isKeptForOtherBoats, true);
        for (const other of [16, ChannelId.BARO, 'Barometer', baro]) assert.equal(t.channel(other).number, 16);
        assert.deepEqual(t.channel('AWS').plausibleRange, [0, 150]);
        assert.equal(t.channel('Twist').timeout, null);
        assert.equal(t.channel('Alt 0').precision, null);
        assert.equal(t.channels().length, 414);
    });

    test('what stands for nothing is refused', () => {
        for (const nothing of [-1, 414, 65537, 1.5, NaN, 'bsp', '', 'BSP\0', '\ud800', null, undefined, {}])
            assert.throws(() => t.read(nothing), t.UnknownChannelError, String(nothing));
        for (const nothing of [-1, 100, 65536, 'nobody', '', null, {}])
            assert.throws(() => t.read('BSP', nothing), t.UnknownBoatError, String(nothing));
        assert.equal(t.findChannel('bsp'), null);
        assert.equal(t.findBoat('nobody'), null);
    });

    test('a name in another case is told the right one', () => {
        for (const [wrong, right] of [['bsp', '; did you mean "BSP"?'], ['barometer', '; did you mean "Barometer"?'], ['x', '']])
            assert.throws(() => t.get(wrong), { name: 'UnknownChannelError', message: `no channel is named "${wrong}"${right}` });
    });

    test('one text is no array of channels', () => {
        for (const read of [t.readGroup, (channels) => t.boat(0).readGroup(channels), t.samples])
            for (const nothing of ['BSP', 1, null, undefined])
                assert.throws(() => read(nothing), { name: 'TypeError', message: 'channels is an array of channels' });
    });

    test('user channels are named for all', () => {
        t.nameUserChannel(3, 'Möwe');
        assert.equal(t.channel('Möwe').number, ChannelId.USER_3);
        t.nameUserChannel(3, '');
        assert.equal(t.channel(ChannelId.USER_3).name, 'User 3');
        for (const [index, name] of [[32, 'x'], [-1, 'x'], [3, 'x'.repeat(16)], [3, 'ö'.repeat(8)], [3, 'a\0b']])
            assert.throws(() => t.nameUserChannel(index, name), RangeError);
        for (const name of [5, null, undefined, Buffer.from('x'), Symbol('x')])
            assert.throws(() => t.nameUserChannel(3, name), { name: 'TypeError', message: `a name is a text, not ${String(name)}` });
    });

    test('objects do what the functions do', () => {
        const bsp = t.channel('BSP');
        assert.equal(bsp.set(7.25), true);
        assert.equal(bsp.get(), 7.25);
        assert.equal(bsp.read().value, 7.25);
        const other = t.boat(9);
        assert.equal(other.set(bsp, 4.5), true);
        assert.equal(other.get('BSP'), 4.5);
        assert.equal(bsp.get(other), 4.5);
        assert.equal(other.read('BSP').value, 4.5);
        assert.equal(other.readGroup([bsp]).readings[0].value, 4.5);
        putBoatName(9, 'Möwe');
        assert.equal(t.boat('Möwe').number, 9);
        assert.equal(t.get('BSP', 'Möwe'), 4.5);
        assert.equal(other.name, 'Möwe');
        assert.equal(other.mmsi, null);
        assert.deepEqual(other.colour, [144, 238, 144]);
        assert.equal(other.isInUse, true);
        assert.equal(t.boat(99).isInUse, false);
        assert.equal(t.boats().length, 10);
    });
});

test('a replay is told by the name of the own boat', () => {
    t.set('BSP', 1);
    assert.equal(t.isReplay(), false);
    const view = new t.View();
    putBoatName(0, '[REPLAY] Falcon');
    assert.equal(t.isReplay(), true);
    assert.equal(view.isReplay, true);
    putBoatName(0, '');
    assert.equal(view.isReplay, false);
    view.close();
    assert.equal(view.isReplay, false);
});

describe('system values', () => {
    test('are those of the section', () => {
        assert.equal(t.set('BSP', 1), true);
        assert.equal(t.systemVariable(0), 15.85);
        assert.equal(t.systemVariable(12), null);
        assert.equal(t.systemInteger(6), 5);
        assert.equal(t.systemFlag(0), true);
        assert.equal(t.systemFlag(2), false);
        for (const [read, count] of [[t.systemVariable, 80], [t.systemInteger, 13], [t.systemFlag, 60]]) {
            read(count - 1);
            for (const index of [-1, count, 65536, 0.5]) assert.throws(() => read(index), RangeError);
        }
    });

    test('an alarm without a host reaches nobody', () => {
        assert.equal(t.setMob(54.5, 10.25), false);
        assert.equal(t.mob(), null);
        assert.throws(() => t.setMob(54.5), TypeError);
    });
});

describe('samples', () => {
    const all = async (rows) => {
        const list = [];
        for await (const row of rows) list.push(row);
        return list;
    };

    test('are rows of one moment each', async () => {
        t.set('BSP', 6.4);
        t.set('AWA', null);
        const rows = await all(t.samples(['BSP', ChannelId.AWA], { interval: 0.01, count: 3 }));
        assert.equal(rows.length, 3);
        for (const row of rows) {
            assert.deepEqual(Object.keys(row), ['time', 'BSP', 'AWA']);
            assert.deepEqual([row.BSP, row.AWA], [6.4, null]);
        }
        assert.ok(rows[0].time < rows[2].time);
    });

    test('stale values are left out unless wanted', async () => {
        t.set('BSP', 6.4);
        makeOlder(ChannelId.BSP, 12);
        const [row] = await all(t.samples(['BSP'], { count: 1, ages: true }));
        assert.equal(row.BSP, null);
        assert.ok(row['BSP age'] >= 12);
        assert.equal((await all(t.samples(['BSP'], { count: 1, stale: true })))[0].BSP, 6.4);
    });

    test('end with their signal', async () => {
        const stop = new AbortController();
        let rows = 0;
        for await (const _ of t.samples(['BSP'], { interval: 1000, signal: stop.signal })) {
            ++rows;
            stop.abort();
        }
        assert.equal(rows, 1);
        assert.deepEqual(await all(t.samples(['BSP'], { signal: stop.signal })), []);
    });

    test('mistakes are told at the call', async () => {
        for (const [channels, options] of [[['bsp']], [['BSP'], { boat: 100 }], [['BSP', 'BSP']]])
            assert.throws(() => t.samples(channels, options), RangeError);
        for (const [options, name, message] of [
            [{ interval: -1 }, 'RangeError', 'the interval is 0 to 86400 seconds, not -1'],
            [{ interval: NaN }, 'RangeError', 'the interval is 0 to 86400 seconds, not NaN'],
            [{ interval: 86401 }, 'RangeError', 'the interval is 0 to 86400 seconds, not 86401'],
            [{ interval: '1' }, 'TypeError', 'the interval is a number, not 1'],
            [{ interval: null }, 'TypeError', 'the interval is a number, not null'],
            [{ count: -1 }, 'RangeError', 'the count is a whole number, 0 or more, or Infinity, not -1'],
            [{ count: 1.5 }, 'RangeError', 'the count is a whole number, 0 or more, or Infinity, not 1.5'],
            [{ count: NaN }, 'RangeError', 'the count is a whole number, 0 or more, or Infinity, not NaN'],
            [{ count: '3' }, 'TypeError', 'the count is a number, not 3'],
            [{ count: null }, 'TypeError', 'the count is a number, not null'],
            [{ signal: 'stop' }, 'TypeError', 'the signal is an AbortSignal, not stop'],
            [{ signal: null }, 'TypeError', 'the signal is an AbortSignal, not null'],
            [null, 'TypeError', 'the options are an object, not null'],
            [5, 'TypeError', 'the options are an object, not 5'],
        ])
            assert.throws(() => t.samples(['BSP'], options), { name, message });
        assert.deepEqual(await all(t.samples(['BSP'], { count: 0 })), []);
    });
});

describe('among programs', () => {
    test('what another program writes is read', async () => {
        const end = await startWriter("t.set('HDG', 123)");
        assert.equal(t.get('HDG'), 123);
        await end();
        t.set('HDG', 7);
        assert.equal(run("assert.equal(t.get('HDG'), 7)").status, 0);
    });
});
