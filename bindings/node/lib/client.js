// Writing: the process becomes a client of the section with its first write.
'use strict';

const { clientLibrary } = require('./native');

const NO_VALUE = 32767;
const NAME_BYTES = 15;
const USER_CHANNELS = 32;

function write(channel, value, boat) {
    if (channel === 0) throw new RangeError('channel 0 is the clock, which the library stamps itself');
    if (value !== null && typeof value !== 'number') throw new TypeError(`a value is a number or null, not ${String(value)}`);
    return clientLibrary().SetZanVar(channel, value ?? NO_VALUE, boat) !== 0;
}

function nameUserChannel(index, name) {
    if (!Number.isInteger(index) || index < 0 || index >= USER_CHANNELS)
        throw new RangeError(`user channels are 0 to ${USER_CHANNELS - 1}, not ${index}`);
    if (typeof name !== 'string') throw new TypeError(`a name is a text, not ${String(name)}`);
    if (Buffer.byteLength(name) > NAME_BYTES || name.includes('\0'))
        throw new RangeError(`a name has at most ${NAME_BYTES} bytes and no NUL: ${name}`);
    // There the library expects the ANSI code page, which Node cannot write.
    if (process.platform === 'win32' && /[^ -~]/.test(name))
        throw new RangeError(`a name is plain ASCII on Windows: ${name}`);
    clientLibrary().SetZanUserVarName(index, name);
}

function setMob(latitude, longitude) {
    if (typeof latitude !== 'number' || typeof longitude !== 'number')
        throw new TypeError('latitude and longitude are numbers');
    return clientLibrary().SetMOB(latitude, longitude) !== 0;
}

module.exports = { write, nameUserChannel, setMob };
