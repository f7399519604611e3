#!/usr/bin/env node
// Warns of shallow water, in JavaScript, and of a sounder that has fallen silent.
//
//     shallow_alarm.js [--limit METRES] [--interval SECONDS] [--count ROUNDS]
//
// Old depths are no depths: a value beyond its channel's time-out is named as stale, never as safe, and so is one that
// is played from a recording. "-" is a depth that is not there. Where standard output is a terminal, everything but a safe depth rings its bell.
'use strict';

const { setTimeout: sleep } = require('node:timers/promises');
const { parseArgs } = require('node:util');
const tallowmere = require('tallowmere');

function parse() {
    const { values } = parseArgs({
        options: {
            limit: { type: 'string', default: '3' },
            interval: { type: 'string', default: '1' },
            count: { type: 'string', default: 'Infinity' },
        },
    });
    const numbers = Object.fromEntries(Object.entries(values).map(([name, text]) => [name, Number(text)]));
    if (!(numbers.limit > 0 && numbers.count > 0)) throw new RangeError('limit and count are numbers above 0');
    if (!(numbers.interval > 0 && numbers.interval <= 3600)) throw new RangeError('the interval is 0 to 3600 seconds');
    return numbers;
}

function judge(reading, limit) {
    const { value, age } = reading;
    // A number may be anything at all, a NaN too: a foreign program can have written it.
    if (value === null || !Number.isFinite(value)) return { isSafe: false, text: 'depth -: no sounder gives one' };
    const depth = `${value.toFixed(1)} m`;
    if (reading.isStale) {
        const since = age === null ? 'of unknown age' : `${age.toFixed(0)} s old`;
        return { isSafe: false, text: `STALE: the last depth, ${depth}, is ${since}` };
    }
    if (value < limit) return { isSafe: false, text: `SHALLOW: depth ${depth}, limit ${limit.toFixed(1)} m` };
    return { isSafe: true, text: `depth ${depth}` };
}

async function watch({ limit, interval, count }) {
    const stop = new AbortController();
    process.once('SIGINT', () => stop.abort());
    const depth = tallowmere.channel(tallowmere.ChannelId.DEPTH);
    for (let round = 1; !stop.signal.aborted; ++round) {
        const judged = judge(depth.read(), limit);
        const isReplay = tallowmere.isReplay();
        const isSafe = judged.isSafe && !isReplay;
        const text = isReplay ? `REPLAY, not the depth here: ${judged.text}` : judged.text;
        const bell = !isSafe && process.stdout.isTTY ? '\x07' : '';
        process.stdout.write(`${bell}${text}\n`);
        if (round >= count) break;
        await sleep(interval * 1000, undefined, { signal: stop.signal }).catch(() => {}); // ended early by the signal
    }
}

async function main() {
    // A reader who has gone (head) is nobody's fault.
    process.stdout.on('error', (error) => process.exit(error.code === 'EPIPE' ? 0 : 1));
    await watch(parse());
}

main().catch((error) => {
    process.stderr.write(`shallow_alarm: ${error.message}\n`);
    process.exitCode = 1;
});
