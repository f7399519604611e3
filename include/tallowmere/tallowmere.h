/*
 * Tallowmere client library: live channels of the own boat and up to 99 others.
 *
 * Every program on the machine that loads the library sees the same values. The first one to load
 * it creates the shared section and fills it from the user's settings; the section lives as long as
 * any program keeps the library loaded. Compiles as C11 and as C++.
 *
 * For every function here:
 *  - Threads: any thread of any process may call at any time. Nothing is locked. A value and its time
 *    stamp may come from different writes, and of two writers the last one wins.
 *  - Errors: nothing is raised and nothing is reported but the result.
 *  - Booleans are one byte, 0 or not 0. Look at that byte only.
 *  - Without a shared section (it could not be made) reads give no value and writes do nothing.
 *  - Pointers must be valid; only GetZanVarName and SetZanUserVarName accept a null one (for the name).
 *  - A text or record buffer belongs to the caller and is not kept.
 */
#ifndef TALLOWMERE_TALLOWMERE_H
#define TALLOWMERE_TALLOWMERE_H

#include <tallowmere/channels.h>

#include <stdint.h>

#if defined(_WIN32)
#if defined(TALLOWMERE_BUILDING)
#define TALLOWMERE_API __declspec(dllexport)
#elif defined(TALLOWMERE_STATIC) /* host programs that link the static core */
#define TALLOWMERE_API
#else
#define TALLOWMERE_API __declspec(dllimport)
#endif
#else
#define TALLOWMERE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define TALLOWMERE_NOEXCEPT noexcept
extern "C" {
#else
#define TALLOWMERE_NOEXCEPT
#endif

/* The value of a channel or variable without data (bits 0x40DFFFC000000000). */
#define NO_VALUE 32767.0
/* "None" in integer channels and as a channel number. */
#define ZAN_NO_CHANNEL 32767
/* "No time" in records that hold a time. */
#define ZAN_NO_TIME INT64_MAX

#define ZAN_CHANNEL_COUNT 414        /* channels 0 to 413; 0 is the clock, which the library stamps itself */
#define ZAN_BOAT_COUNT 100           /* boats 0 to 99; 0 is the own boat */
#define ZAN_SYSTEM_VARIABLE_COUNT 80 /* indices 0 to 79 */
#define ZAN_SYSTEM_FLAG_COUNT 60     /* indices 0 to 59 */
#define ZAN_NAME_BYTES 16            /* a short name: at most 15 bytes and a terminator */

typedef uint16_t ChannelIndex; /* 0 to 413; constants ZAN_BSP, ZAN_AWA, ... in channels.h */
typedef uint16_t BoatIndex;    /* 0 to 99 */

/* What the payload of a record is. A channel's unit class decides the kind that is written. */
enum ZanKind {
    ZAN_KIND_BYTE = 0,    /* unsigned byte; never written by the library as such */
    ZAN_KIND_DOUBLE = 1,  /* no value: 32767.0 */
    ZAN_KIND_INTEGER = 2, /* no value: 32767 */
    ZAN_KIND_TIME = 3     /* no value: INT64_MAX */
};

/* One value as the section keeps it, 16 bytes. */
typedef struct ChannelValue {
    uint8_t kind; /* enum ZanKind */
    uint8_t reserved[7];
    union {
        double number;   /* ZAN_KIND_DOUBLE, in the channel's base unit */
        int32_t integer; /* ZAN_KIND_INTEGER */
        int64_t ticks;   /* ZAN_KIND_TIME: 100 ns units; a moment counts from 1601-01-01 UTC */
        uint8_t byte;    /* ZAN_KIND_BYTE */
    } payload;
} ChannelValue;

/* Number of boats that have a place. Always 100. */
TALLOWMERE_API int GetBoatNum(void) TALLOWMERE_NOEXCEPT;

/* Number of channels. Always 414. */
TALLOWMERE_API int GetZanVarNum(void) TALLOWMERE_NOEXCEPT;

/*
 * Reads the current value of a channel of a boat.
 *
 * channel  0 to 413. 117 to 126 are alternating: they stand for another channel, chosen by the
 *          sailing situation.
 * value    gets the value in the channel's base unit: degrees (bearings true, 0 to 360; angles -180 to
 *          180, starboard positive), knots, nautical miles, metres, degrees Celsius, millibars,
 *          pascals. A moment is days since 1899-12-30 UTC in whole seconds, a time span is days.
 * boat     0 to 99. Boats 2 to 99 keep 34 of the channels only.
 * source   gets the channel that was really read: the one an alternating channel stands for (32767
 *          when it stands for none), otherwise `channel`.
 *
 * Returns true when there is a value. False otherwise:
 *  - channel or boat out of range: *value = 32767.0, *source = 32767;
 *  - no value there: *value is left as it was, *source is set;
 *  - a record that cannot be turned into a double: *value = 32767.0, *source is set.
 * A NaN is a value. RudderToe (284) and GPS tOffset (256) as derived by the library, and ROT (32),
 * TrimRate (277) and HeelRate (278) as derived by it, carry a record header of another kind: read
 * them with GetZanVar2.
 */
TALLOWMERE_API uint8_t GetZanVar(uint16_t channel, double* value, uint16_t boat, uint16_t* source) TALLOWMERE_NOEXCEPT;

/*
 * Reads the record of a channel of a boat: as GetZanVar, without the conversion to a double.
 *
 * record   gets the 16 bytes as stored; the channel's no-value record when nothing is there; kind 1 with
 *          32767.0 when channel or boat is out of range (then *source = 32767).
 *
 * Returns true when the record holds a value.
 */
TALLOWMERE_API uint8_t GetZanVar2(uint16_t channel, ChannelValue* record, uint16_t boat,
                                  uint16_t* source) TALLOWMERE_NOEXCEPT;

/*
 * Gets a channel's short name: the one set for it (user channels) or the catalogue's. Alternating
 * channels give their own name.
 *
 * name     16 bytes, always terminated, zero-filled behind the name. At most 15 bytes arrive, in the
 *          thread's ANSI code page on Windows and UTF-8 on Linux; a character that has no narrow form
 *          becomes '?', and a UTF-8 character is never cut in two. Untouched when the channel is 414
 *          or more. May be null: nothing happens.
 */
TALLOWMERE_API void GetZanVarName(uint16_t channel, char* name) TALLOWMERE_NOEXCEPT;

/*
 * Reads a system flag.
 *
 * index    0 to 59
 * flag     gets the flag's byte, 0 or 1 unless a program stored another; 0 without a section. Untouched
 *          when the index is out of range.
 *
 * Returns true when the index is in range, with or without a section.
 */
TALLOWMERE_API uint8_t GetSysBool(uint16_t index, uint8_t* flag) TALLOWMERE_NOEXCEPT;

/*
 * Reads a system variable.
 *
 * index    0 to 79
 * value    gets the variable in its own unit; 32767.0 when it has no value, the index is out of range
 *          or there is no section.
 *
 * Returns true when *value is not 32767.0; a NaN counts as a value.
 */
TALLOWMERE_API uint8_t GetSysVar(uint16_t index, double* value) TALLOWMERE_NOEXCEPT;

/*
 * Names a user channel, for all programs: both its long and its short name.
 *
 * index    0 to 31 or, as a channel number, 172 to 203. Any other index does nothing.
 * name     text in the thread's ANSI code page on Windows, UTF-8 on Linux; its first 15 bytes are
 *          used, so it may go unterminated when it has 16 bytes. An empty text brings the catalogue's
 *          name back. Null does nothing.
 */
TALLOWMERE_API void SetZanUserVarName(uint16_t index, const char* name) TALLOWMERE_NOEXCEPT;

/*
 * Writes a value, stamped with the time of the call.
 *
 * channel  1 to 413
 * value    in the base unit (see GetZanVar). 32767.0 clears the channel. Angles are brought into range
 *          by at most one turn (Heel -400 becomes -40, HDG 720 becomes 360); a value outside the channel's
 *          plausible range clears the channel. Once a host calibrates the channel, a speed below 0 becomes 0
 *          and a bearing that is 360 after that turn becomes 0, whoever writes it: BSP -0.5 and HDG 720
 *          are stored as 0.
 *          Integer channels round half away from zero. A value that a time or integer channel cannot
 *          hold (NaN, infinite, too large) clears it.
 * boat     0 to 99
 *
 * Returns
 *  - 1 when stored, 0 when refused: the channel is blocked or write-locked, the boat is 2 to 99 and
 *    does not keep that channel, or there is no section;
 *  - 1 WITHOUT storing for the own boat's satellite-fix channels (Lat, Lon, COG, SOG, ...) unless a
 *    host accepts them (system integer 6 is 3), without a section too;
 *  - the low byte of (channel - 1) WITHOUT storing when channel or boat is out of range: 0xFF for
 *    channel 0, 0x9D for channel 414, 0 for channel 1 of boat 100. So true does not prove a write;
 *    read the value back where that matters.
 */
TALLOWMERE_API uint8_t SetZanVar(uint16_t channel, double value, uint16_t boat) TALLOWMERE_NOEXCEPT;

/*
 * Writes a ready record: as SetZanVar, without the conversion from a double. The 16 bytes are copied
 * before anything is checked, and are stored as they are, the kind byte included. Whether they hold a
 * value is judged by the channel's kind. Angles and ranges of double channels are treated as SetZanVar
 * does; then the payload is replaced and the header kept.
 *
 * Returns the codes of SetZanVar.
 */
TALLOWMERE_API uint8_t SetZanVar2(uint16_t channel, const ChannelValue* record, uint16_t boat) TALLOWMERE_NOEXCEPT;

/*
 * Raises the man-overboard alarm: stores the mark "MOB" and posts a message to the host application.
 *
 * latitude   degrees, north positive; stored as given
 * longitude  degrees, east positive; stored as given
 *
 * Returns non-zero when the message was posted. 0 when no host application has left its window (then
 * nothing is stored) or the message could not be posted (then the mark is stored).
 */
TALLOWMERE_API int SetMOB(double latitude, double longitude) TALLOWMERE_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif
