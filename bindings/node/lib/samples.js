// Values at regular times.
'use strict';

const { performance } = require('node:perf_hooks');
const { setTimeout: sleep } = require('node:timers/promises');

const LONGEST_INTERVAL = 86400; // well within what a timer of Node's can wait

/** Checks and resolves everything, so that mistakes are told at the call and not at the first row. */
function samples(view, channels, options) {
    if (!Array.isArray(channels)) throw new TypeError('channels is an array of channels');
    if (typeof options !== 'object' || options === null)
        throw new TypeError(`the options are an object, not ${String(options)}`);
    const { interval = 1, count = Infinity, boat = 0, stale = false, ages = false, signal } = options;
    if (typeof interval !== 'number') throw new TypeError(`the interval is a number, not ${String(interval)}`);
    if (!(interval >= 0 && interval <= LONGEST_INTERVAL))
        throw new RangeError(`the interval is 0 to ${LONGEST_INTERVAL} seconds, not ${interval}`);
    if (typeof count !== 'number') throw new TypeError(`the count is a number, not ${String(count)}`);
    if (!(count >= 0 && (Number.isInteger(count) || count === Infinity)))
        throw new RangeError(`the count is a whole number, 0 or more, or Infinity, not ${count}`);
    if (signal !== undefined && !(typeof signal === 'object' && signal !== null && 'aborted' in signal))
        throw new TypeError(`the signal is an AbortSignal, not ${String(signal)}`);
    const resolved = channels.map((channel) => view.channel(channel));
    // As the caller calls it, else by its short name.
    const names = resolved.map((channel, i) =>
        typeof channels[i] === 'string' ? channels[i] : channel.name || channel.longName,
    );
    const columns = ['time', ...names, ...(ages ? names.map((name) => `${name} age`) : [])];
    if (new Set(columns).size !== columns.length)
        throw new RangeError(`two columns would have the same name: ${columns.join(', ')}`);
    return rows(view, resolved, names, { interval, count, boat: view.boat(boat), stale, ages, signal });
}

async function* rows(view, channels, names, { interval, count, boat, stale, ages, signal }) {
    const start = performance.now();
    const period = interval * 1000;
    let tick = 0;
    for (let done = 0; done < count; ++done) {
        if (!(await waitUntil(start + tick * period, signal))) return;
        const group = view.readGroup(channels, boat);
        const row = { time: group.moment };
        group.readings.forEach((reading, i) => (row[names[i]] = stale ? reading.value : reading.current));
        if (ages) group.readings.forEach((reading, i) => (row[`${names[i]} age`] = reading.age));
        yield row;
        // Ticks that passed while the caller was busy are left out, not caught up.
        const passed = period > 0 ? Math.floor((performance.now() - start) / period) : 0;
        tick = Math.max(tick, passed) + 1;
    }
}

/** False when the signal came first. */
async function waitUntil(time, signal) {
    try {
        await sleep(Math.max(0, time - performance.now()), undefined, { signal });
        return true;
    } catch (error) {
        if (error.name === 'AbortError') return false;
        throw error;
    }
}

module.exports = { samples };
