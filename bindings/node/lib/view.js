// Reading: a view of the section, its channels and boats.
'use strict';

const client = require('./client');
const native = require('./native');
const { samples } = require('./samples');

const CHANNELS = 414;
const BOATS = 100;
const SECTIONS = ['none', 'attached', 'gone'];

class UnknownChannelError extends RangeError {
    get name() {
        return 'UnknownChannelError';
    }
}

class UnknownBoatError extends RangeError {
    get name() {
        return 'UnknownBoatError';
    }
}

class Channel {
    #view;
    constructor(view, number) {
        this.#view = view;
        Object.defineProperty(this, 'number', { value: number, enumerable: true });
    }
    #info() {
        return native.toChannelInfo(this.#view._fill('tlm_view_get_channel', native.SIZES.channel, this.number).out);
    }
    get name() {
        return this.#info().name;
    }
    get longName() {
        return this.#info().longName;
    }
    get unit() {
        return this.#info().unit;
    }
    get timeout() {
        return this.#info().timeout;
    }
    get precision() {
        return this.#info().precision;
    }
    get plausibleRange() {
        return this.#info().plausibleRange;
    }
    get isKeptForOtherBoats() {
        return this.#info().isKeptForOtherBoats;
    }
    get(boat = 0) {
        return this.#view.get(this, boat);
    }
    read(boat = 0) {
        return this.#view.read(this, boat);
    }
    set(value, boat = 0) {
        return this.#view.set(this, value, boat);
    }
}

class Boat {
    #view;
    constructor(view, number) {
        this.#view = view;
        Object.defineProperty(this, 'number', { value: number, enumerable: true });
    }
    #info() {
        return native.toBoatInfo(this.#view._fill('tlm_view_get_boat', native.SIZES.boat, this.number).out);
    }
    get name() {
        return this.#info().name;
    }
    get mmsi() {
        return this.#info().mmsi;
    }
    get colour() {
        return this.#info().colour;
    }
    get isInUse() {
        return this.#info().isInUse;
    }
    get(channel) {
        return this.#view.get(channel, this);
    }
    read(channel) {
        return this.#view.read(channel, this);
    }
    readGroup(channels) {
        return this.#view.readGroup(channels, this);
    }
    set(channel, value) {
        return this.#view.set(channel, value, this);
    }
}

class View {
    #library = native.viewLibrary();
    #handle = this.#library.tlm_view_open();
    #sawClient = false;

    constructor() {
        if (this.#handle === null) throw new Error('no memory for a view');
    }

    close() {
        this.#library.tlm_view_close(this.#handle);
        this.#handle = null;
    }

    /** Cheap: asks the system at most every 250 ms, but at once for the section that this process has joined. */
    #refresh() {
        if (native.hasJoined() && !this.#sawClient) {
            this.#sawClient = true;
            this.#library.tlm_view_refresh_now(this.#handle);
        } else {
            this.#library.tlm_view_refresh(this.#handle);
        }
    }

    /** Calls a function of the interface, the view first. */
    #call(name, ...parameters) {
        this.#refresh();
        return this.#library[name](this.#handle, ...parameters);
    }

    /** A structure that a function of the interface has filled, and its answer. Not for users. */
    _fill(name, size, ...parameters) {
        const out = Buffer.alloc(size);
        return { found: this.#call(name, ...parameters, out) !== 0, out };
    }

    /** A text with a NUL finds nothing, as no name has one. */
    #find(name, text) {
        if (typeof text !== 'string') throw new TypeError(`a name is a text, not ${text}`);
        return this.#call(name, text.includes('\0') ? '' : text);
    }

    #channelNumber(channel) {
        if (typeof channel === 'string') {
            const found = this.#find('tlm_view_find_channel', channel);
            if (found === native.NO_CHANNEL)
                throw new UnknownChannelError(`no channel is named "${channel}"${this.#similar(channel)}`);
            return found;
        }
        const number = channel instanceof Channel ? channel.number : channel;
        if (!Number.isInteger(number) || number < 0 || number >= CHANNELS)
            throw new UnknownChannelError(`channels are 0 to ${CHANNELS - 1}, not ${String(number)}`);
        return number;
    }

    /** For the text of an error: the name that differs in the case of its letters only. */
    #similar(unknown) {
        const wanted = unknown.toLowerCase();
        for (const { name, longName } of this.channels())
            for (const each of [name, longName])
                if (each !== '' && each.toLowerCase() === wanted) return `; did you mean "${each}"?`;
        return '';
    }

    #boatNumber(boat) {
        if (typeof boat === 'string') {
            const found = this.#find('tlm_view_find_boat', boat);
            if (found < 0) throw new UnknownBoatError(`no boat is named "${boat}"`);
            return found;
        }
        const number = boat instanceof Boat ? boat.number : boat;
        if (!Number.isInteger(number) || number < 0 || number >= BOATS)
            throw new UnknownBoatError(`boats are 0 to ${BOATS - 1}, not ${String(number)}`);
        return number;
    }

    section() {
        return SECTIONS[this.#library.tlm_view_refresh_now(this.#handle)];
    }

    get isReplay() {
        return this.#call('tlm_view_is_replay') !== 0;
    }

    channel(channel) {
        return new Channel(this, this.#channelNumber(channel));
    }

    findChannel(name) {
        const found = this.#find('tlm_view_find_channel', name);
        return found === native.NO_CHANNEL ? null : new Channel(this, found);
    }

    channels() {
        return Array.from({ length: CHANNELS }, (_, number) => new Channel(this, number));
    }

    boat(boat) {
        return new Boat(this, this.#boatNumber(boat));
    }

    findBoat(name) {
        const found = this.#find('tlm_view_find_boat', name);
        return found < 0 ? null : new Boat(this, found);
    }

    boats() {
        return Array.from({ length: this.#call('tlm_view_boat_count') }, (_, number) => new Boat(this, number));
    }

    get(channel, boat = 0) {
        return this.read(channel, boat).value;
    }

    read(channel, boat = 0) {
        const [channelNumber, boatNumber] = [this.#channelNumber(channel), this.#boatNumber(boat)];
        return native.toReading(this._fill('tlm_view_read', native.SIZES.value, channelNumber, boatNumber).out);
    }

    readGroup(channels, boat = 0) {
        if (!Array.isArray(channels)) throw new TypeError('channels is an array of channels');
        const numbers = Uint16Array.from(channels, (channel) => this.#channelNumber(channel));
        const size = native.SIZES.value;
        const values = Buffer.alloc(numbers.length * size);
        const { found, out } = this._fill(
            'tlm_view_read_group', native.SIZES.group, this.#boatNumber(boat), numbers, numbers.length, values,
        );
        return {
            moment: native.moment(out.readBigInt64LE(0)),
            readings: Array.from(numbers, (_, i) => native.toReading(values.subarray(i * size, (i + 1) * size))),
            isOfOneMoment: found,
        };
    }

    set(channel, value, boat = 0) {
        return client.write(this.#channelNumber(channel), value, this.#boatNumber(boat));
    }

    samples(channels, options = {}) {
        return samples(this, channels, options);
    }

    systemVariable(index) {
        const { found, out } = this._fill('tlm_view_get_variable', 8, checkedIndex(index, 80));
        return found ? out.readDoubleLE(0) : null;
    }

    systemInteger(index) {
        const { found, out } = this._fill('tlm_view_get_integer', 4, checkedIndex(index, 13));
        return found ? out.readInt32LE(0) : null;
    }

    systemFlag(index) {
        const { found, out } = this._fill('tlm_view_get_flag', 1, checkedIndex(index, 60));
        return found ? out.readUInt8(0) !== 0 : null;
    }

    mob() {
        const { found, out } = this._fill('tlm_view_get_mob', native.SIZES.mob);
        return found ? native.toMob(out) : null;
    }
}

function checkedIndex(index, count) {
    if (!Number.isInteger(index) || index < 0 || index >= count)
        throw new RangeError(`index 0 to ${count - 1}, not ${String(index)}`);
    return index;
}

module.exports = { Boat, Channel, UnknownBoatError, UnknownChannelError, View };
