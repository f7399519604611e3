// The C interfaces: view.h (reading) and tallowmere.h (writing). Structures are buffers, read at the offsets that
// view.h states.
'use strict';

const { load, isLoaded } = require('./library');

const VIEW_FUNCTIONS = [
    'void *tlm_view_open()',
    'void tlm_view_close(void *view)',
    'int32_t tlm_view_refresh(void *view)',
    'int32_t tlm_view_refresh_now(void *view)',
    'int32_t tlm_view_is_replay(void *view)',
    'int32_t tlm_view_get_channel(void *view, uint16_t channel, void *info)',
    'uint16_t tlm_view_find_channel(void *view, const char *name)',
    'uint16_t tlm_view_boat_count(void *view)',
    'int32_t tlm_view_get_boat(void *view, uint16_t boat, void *info)',
    'int32_t tlm_view_find_boat(void *view, const char *name)',
    'int32_t tlm_view_read(void *view, uint16_t channel, uint16_t boat, void *value)',
    'int32_t tlm_view_read_group(void *view, uint16_t boat, const void *channels, uint32_t count, void *values, void *group)',
    'int32_t tlm_view_get_variable(void *view, uint16_t index, void *value)',
    'int32_t tlm_view_get_integer(void *view, uint16_t index, void *value)',
    'int32_t tlm_view_get_flag(void *view, uint16_t index, void *value)',
    'int32_t tlm_view_get_mob(void *view, void *mob)',
];
const CLIENT_FUNCTIONS = [
    'uint8_t SetZanVar(uint16_t channel, double value, uint16_t boat)',
    'void SetZanUserVarName(uint16_t index, const char *name)',
    'int SetMOB(double latitude, double longitude)',
];

const NO_CHANNEL = 32767;
const NO_PRECISION = 255;
const NO_TIME = 2n ** 63n - 1n;
const TICKS_PER_MS = 10000n;
const MS_FROM_1601_TO_1970 = 11644473600000;
const FRESHNESS = ['none', 'fresh', 'stale', 'timeless'];
const SIZES = { value: 48, group: 40, channel: 184, boat: 112, mob: 56 };

/** A terminated UTF-8 text in `size` bytes at `offset`. */
function text(buffer, offset, size) {
    const bytes = buffer.subarray(offset, offset + size);
    const end = bytes.indexOf(0);
    return bytes.toString('utf8', 0, end < 0 ? size : end);
}

/** Of 100 ns units since 1601; null for what is no moment. Any number may stand in the section. */
function moment(ticks) {
    if (ticks <= 0n || ticks === NO_TIME) return null;
    return new Date(Number(ticks / TICKS_PER_MS) - MS_FROM_1601_TO_1970);
}

function toReading(buffer) {
    const freshness = FRESHNESS[buffer.readUInt8(44)];
    const isThere = freshness !== 'none';
    const value = isThere ? buffer.readDoubleLE(0) : null;
    const age = buffer.readDoubleLE(8);
    const source = buffer.readUInt16LE(42);
    return {
        value,
        current: freshness === 'stale' ? null : value,
        age: age >= 0 ? age : null,
        freshness,
        isStale: freshness === 'stale',
        channel: buffer.readUInt16LE(40),
        source: source === NO_CHANNEL ? null : source,
        stamp: isThere ? moment(buffer.readBigInt64LE(16)) : null,
    };
}

function toChannelInfo(buffer) {
    const precision = buffer.readUInt16LE(6);
    const [min, max] = [buffer.readInt16LE(8), buffer.readInt16LE(10)];
    return {
        timeout: buffer.readUInt16LE(4) || null,
        precision: precision === NO_PRECISION ? null : precision,
        plausibleRange: min === max ? null : [min, max],
        isKeptForOtherBoats: buffer.readUInt8(13) !== 0,
        name: text(buffer, 24, 48),
        longName: text(buffer, 72, 96),
        unit: text(buffer, 168, 16),
    };
}

function toBoatInfo(buffer) {
    const colour = buffer.readUInt32LE(8);
    return {
        isInUse: buffer.readUInt8(2) !== 0,
        mmsi: buffer.readUInt32LE(4) || null,
        colour: [colour & 255, (colour >> 8) & 255, (colour >> 16) & 255],
        name: text(buffer, 16, 96),
    };
}

function toMob(buffer) {
    return { latitude: buffer.readDoubleLE(0), longitude: buffer.readDoubleLE(8), name: text(buffer, 24, 32) };
}

module.exports = {
    NO_CHANNEL,
    SIZES,
    moment,
    toReading,
    toChannelInfo,
    toBoatInfo,
    toMob,
    /** Reading: makes no section and takes no part in its life. */
    viewLibrary: () => load('tallowmere_view', VIEW_FUNCTIONS),
    /** Writing: loading it joins the section, or makes it, until the process ends. */
    clientLibrary: () => load('tallowmere', CLIENT_FUNCTIONS),
    hasJoined: () => isLoaded('tallowmere'),
};
