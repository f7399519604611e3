/**
 * Live sailing channels of the own boat and up to 99 others.
 *
 * Values are numbers in the channel's base unit, null where there is no value. Reading makes no section and takes no
 * part in its life; the first write joins or makes it until the process ends. Nothing is locked among processes: of
 * two writers the last one wins. Nothing here writes to standard output.
 *
 * Without the libraries every function throws LibraryNotFoundError, which says where they were looked for. Numbers
 * and names that stand for nothing throw UnknownChannelError or UnknownBoatError.
 */
import { ChannelId } from './channel_ids';
export { ChannelId };

/** A number (of ChannelId, for example), a short or long name, or a Channel. */
export type ChannelLike = number | string | Channel;
/** A number, a name, or a Boat. */
export type BoatLike = number | string | Boat;

/** 'gone': there was a section; the last program that held it has ended. */
export type Section = 'none' | 'attached' | 'gone';
/** 'stale': older than the channel's time-out, or of unknown age. 'timeless': the channel has no time-out. */
export type Freshness = 'none' | 'fresh' | 'stale' | 'timeless';

/** One value as it was read. */
export interface Reading {
    /** In the channel's base unit; null when there is none. A stale value is a value, and so is a NaN. */
    readonly value: number | null;
    /** The value unless it is stale. */
    readonly current: number | null;
    /** Seconds since it was written; null when there is no value or its age cannot be told. */
    readonly age: number | null;
    readonly freshness: Freshness;
    readonly isStale: boolean;
    /** The channel that was asked for. */
    readonly channel: number;
    /** The channel that was read: another for alternating channels; null when one stands for none. */
    readonly source: number | null;
    /** When it was written; null when that is no moment. */
    readonly stamp: Date | null;
}

/** Values of one boat that were read together. */
export interface Group {
    /** Of the clock, when they were read; ages count from it. */
    readonly moment: Date;
    /** In the order that they were asked for. */
    readonly readings: Reading[];
    /** True: all of them stood in the section together at one moment. */
    readonly isOfOneMoment: boolean;
}

/** The man-overboard mark; degrees, north and east positive. */
export interface Mob {
    readonly latitude: number;
    readonly longitude: number;
    readonly name: string;
}

export interface SamplesOptions<Ages extends boolean = boolean> {
    /** Seconds from row to row, 0 to 86400; default 1. Rows that the reader was too slow for are left out. */
    interval?: number;
    /** How many rows, a whole number; without it there is no end. */
    count?: number;
    boat?: BoatLike;
    /** True: stale values are given too; otherwise they are null. */
    stale?: boolean;
    /** True: adds "NAME age" in seconds for each channel. */
    ages?: Ages;
    /** Ends the rows. */
    signal?: AbortSignal;
}

/** The text that a channel was asked for by; the short name of a number or object may be any text. */
export type Column<C extends ChannelLike> = C extends string ? C : string;
/**
 * The moment under "time", then a value (or null) for each channel under the name it was asked for by, with `Ages` also
 * its age under "NAME age". `Sample<'BSP' | 'AWA'>` is a row of these two; plain `Sample` one of numbers, objects or
 * names that are not known before the program runs.
 */
export type Sample<C extends ChannelLike = ChannelLike, Ages extends boolean = false> = { time: Date } & {
    [column in Column<C> | ([Ages] extends [true] ? `${Column<C>} age` : never)]: number | null;
} & ([Ages] extends [false] ? unknown : { [column in `${Column<C>} age`]?: number | null });

/** A channel. Its names and its unit are the catalogue's or what the section has set instead. */
export class Channel {
    private constructor();
    readonly number: number;
    /** The short name; empty for channel 0. */
    get name(): string;
    get longName(): string;
    /**
     * The base unit: "kt", "nm", "m"; empty when it has none. For times it is how they are shown ("UTC", "h:mm:ss"):
     * their values are days.
     */
    get unit(): string;
    /** The age in seconds from which a value is stale; null: never. */
    get timeout(): number | null;
    /** Decimals to show; null: not shown as a number. */
    get precision(): number | null;
    /** A value outside clears the channel; null: any value is plausible. */
    get plausibleRange(): [number, number] | null;
    /** False: kept for boats 0 and 1 only. */
    get isKeptForOtherBoats(): boolean;
    get(boat?: BoatLike): number | null;
    read(boat?: BoatLike): Reading;
    set(value: number | null, boat?: BoatLike): boolean;
}

/** A boat. 0 is the own boat. */
export class Boat {
    private constructor();
    readonly number: number;
    /** Empty when it has none. */
    get name(): string;
    get mmsi(): number | null;
    /** Red, green and blue, 0 to 255. */
    get colour(): [number, number, number];
    get isInUse(): boolean;
    get(channel: ChannelLike): number | null;
    read(channel: ChannelLike): Reading;
    readGroup(channels: readonly ChannelLike[]): Group;
    set(channel: ChannelLike, value: number | null): boolean;
}

/** A read-only look at the section. After close() the catalogue answers and there are no values. */
export class View {
    constructor();
    close(): void;
    section(): Section;
    /** True while a recording is being played into the section: its values are not live. False without one. */
    get isReplay(): boolean;
    channel(channel: ChannelLike): Channel;
    findChannel(name: string): Channel | null;
    channels(): Channel[];
    boat(boat: BoatLike): Boat;
    findBoat(name: string): Boat | null;
    boats(): Boat[];
    get(channel: ChannelLike, boat?: BoatLike): number | null;
    read(channel: ChannelLike, boat?: BoatLike): Reading;
    readGroup(channels: readonly ChannelLike[], boat?: BoatLike): Group;
    set(channel: ChannelLike, value: number | null, boat?: BoatLike): boolean;
    samples<C extends ChannelLike, Ages extends boolean = false>(
        channels: readonly C[],
        options?: SamplesOptions<Ages>,
    ): AsyncGenerator<Sample<C, Ages>, void, void>;
    systemVariable(index: number): number | null;
    systemInteger(index: number): number | null;
    systemFlag(index: number): boolean | null;
    mob(): Mob | null;
}

/** A shared library is not there or cannot be used. The message says what was tried and what to do. */
export class LibraryNotFoundError extends Error {}
/** No channel has this number or name. */
export class UnknownChannelError extends RangeError {}
/** No boat has this number or name. */
export class UnknownBoatError extends RangeError {}

/** Whether there is a section; asks the system. */
export function section(): Section;
/** True while a recording is being played into the section: its values are not live. */
export function isReplay(): boolean;
/** The channel with this number or name. */
export function channel(channel: ChannelLike): Channel;
/** By short name, else by long name; letters count as written. Null when there is none. */
export function findChannel(name: string): Channel | null;
/** All 414, in the order of their numbers. */
export function channels(): Channel[];
/** The boat with this number or name. */
export function boat(boat: BoatLike): Boat;
/** Null when no boat has this name. */
export function findBoat(name: string): Boat | null;
/** Boats 0 up to the highest that has received a value. */
export function boats(): Boat[];
/** The value, stale or not; null when there is none. Use read() where its age matters. */
export function get(channel: ChannelLike, boat?: BoatLike): number | null;
/** The value with its age and freshness. */
export function read(channel: ChannelLike, boat?: BoatLike): Reading;
/** Many channels of one boat that belong to one moment. */
export function readGroup(channels: readonly ChannelLike[], boat?: BoatLike): Group;
/**
 * Writes a value in the channel's base unit; null clears it.
 *
 * False when it was refused: the channel is blocked or write-locked, the boat does not keep it, or there is no
 * section. True is no proof: the own boat's satellite-fix channels (Lat, Lon, COG, SOG, ...) drop a value in silence
 * unless a host accepts them, and a value outside the plausible range clears the channel. Read back where it
 * matters. The clock, channel 0, throws RangeError.
 *
 * The first write of a process joins the section, or makes it, and holds it until the process ends.
 */
export function set(channel: ChannelLike, value: number | null, boat?: BoatLike): boolean;
/** Rows of one moment each. */
export function samples<C extends ChannelLike, Ages extends boolean = false>(
    channels: readonly C[],
    options?: SamplesOptions<Ages>,
): AsyncGenerator<Sample<C, Ages>, void, void>;
/** System variable 0 to 79 in its own unit; null when it has no value. */
export function systemVariable(index: number): number | null;
/** System integer 0 to 12; null without a section. */
export function systemInteger(index: number): number | null;
/** System flag 0 to 59; null without a section. */
export function systemFlag(index: number): boolean | null;
/** The man-overboard mark; null when nobody has raised an alarm. */
export function mob(): Mob | null;
/** Raises the man-overboard alarm at a position in degrees, north and east positive. False: no host was told. */
export function setMob(latitude: number, longitude: number): boolean;
/**
 * Names user channel 0 to 31 for all programs, in at most 15 bytes of UTF-8 (plain ASCII on Windows); an empty name
 * brings the catalogue's back. Throws RangeError otherwise.
 */
export function nameUserChannel(index: number, name: string): void;
