/*
 * Tallowmere view: a small read-only look at the shared section, for programs that need more than the eleven
 * functions give: the age of a value, many values of one moment, names and entries of boats, and word of when
 * the section comes and goes.
 *
 * The library is tallowmere_view (libtallowmere_view.so, tallowmere_view.dll), beside tallowmere and independent
 * of it. It opens a section that is there and never makes one; it maps it for reading only and cannot write; and
 * it takes no part in the section's life: when the last program that holds the section ends, the section is gone
 * although a view looks at it.
 *
 * For every function here:
 *  - A view may be null. Then, and while there is no section, the catalogue answers (channels, names, units,
 *    time-outs) and there are no values.
 *  - Threads: one view belongs to one thread at a time. Two views never disturb each other.
 *  - Errors: nothing is raised. A truth is 1 or 0.
 *  - Nothing is locked. Any program may write anything at any time: no content of the section makes a function
 *    crash or hang, and no function can tell a wrong value from a right one.
 *  - Text is UTF-8, terminated, filled up with zeros. What is no character and what must not be printed (control
 *    characters, direction marks) is '?'.
 *  - Moments are 100 ns units since 1601-01-01 UTC, INT64_MAX for none, as in the section.
 *  - Structures have the same layout on every platform; the offset of each field stands in front of it.
 *  - An output pointer must be valid. It is written whole, also when the answer is 0.
 */
#ifndef TALLOWMERE_VIEW_H
#define TALLOWMERE_VIEW_H

#include <tallowmere/channels.h>

#include <stdint.h>

#ifdef __cplusplus
#define TLM_VIEW_NOEXCEPT noexcept
extern "C" {
#else
#define TLM_VIEW_NOEXCEPT
#endif

/* The version of this interface. It grows when functions are added; what is here stays as it is. */
#define TLM_VIEW_INTERFACE 2 /* 2: tlm_view_is_replay */

#define TLM_VIEW_NO_VALUE 32767.0  /* the number of a value or variable that is not there */
#define TLM_VIEW_NO_CHANNEL 32767  /* "none" as a channel number */
#define TLM_VIEW_NO_TIME INT64_MAX /* "none" as a moment */
#define TLM_VIEW_NO_AGE (-1.0)     /* an age that cannot be told */
#define TLM_VIEW_NO_PRECISION 255  /* of a channel that is not shown as a number */

#define TLM_VIEW_CHANNELS 414 /* 0 to 413 */
#define TLM_VIEW_BOATS 100    /* 0 to 99; 0 is the own boat */
#define TLM_VIEW_VARIABLES 80 /* system variables 0 to 79 */
#define TLM_VIEW_INTEGERS 13  /* system integers 0 to 12 */
#define TLM_VIEW_FLAGS 60     /* system flags 0 to 59 */

/* A view. Made by tlm_view_open, ended by tlm_view_close. */
typedef struct tlm_view tlm_view;

/* Whether there is a section to look at, as of the last tlm_view_refresh. */
enum tlm_view_attachment {
    TLM_VIEW_NO_SECTION = 0,  /* none yet since the view was opened, or none that fits */
    TLM_VIEW_ATTACHED = 1,    /* there is one and somebody holds it */
    TLM_VIEW_WRITERS_GONE = 2 /* there was one; the last program that held it has ended */
};

/* What is known of a value. */
enum tlm_view_value_state {
    TLM_VIEW_NONE = 0,    /* no value: never written, cleared, not kept for that boat, out of range, no section */
    TLM_VIEW_FRESH = 1,   /* its age is known and within the channel's time-out */
    TLM_VIEW_STALE = 2,   /* older than the time-out, or of unknown age */
    TLM_VIEW_TIMELESS = 3 /* there is one, and the channel has no time-out: it never goes stale */
};

/* One value of a channel of a boat, 48 bytes. */
typedef struct tlm_view_value {
    /*  0 */ double value;            /* in the channel's base unit, as GetZanVar gives it; 32767.0 for none */
    /*  8 */ double age_seconds;      /* 0 or more; -1.0 when there is no value or its age cannot be told */
    /* 16 */ int64_t stamp;           /* when it was written, as the section has it, unchecked; INT64_MAX for none */
    /* 24 */ uint64_t record_header;  /* the 16-byte record as it stands: its kind is the low byte */
    /* 32 */ uint64_t record_payload; /* bits of a double, an int32, an int64 or a byte, by the kind */
    /* 40 */ uint16_t channel;        /* that was asked for */
    /* 42 */ uint16_t source;         /* that was read: another for alternating channels; 32767 for none */
    /* 44 */ uint8_t state;           /* enum tlm_view_value_state */
    /* 45 */ uint8_t changed;         /* 1: it was written while its group was read (tlm_view_read_group) */
    /* 46 */ uint8_t reserved[2];     /* 0 */
} tlm_view_value;

/* How the reading of a group went, 40 bytes. */
typedef struct tlm_view_group {
    /*  0 */ int64_t moment;              /* of the clock, when the group was read; ages count from it */
    /*  8 */ int64_t oldest_stamp;        /* of the values that are there and have an age; INT64_MAX for none */
    /* 16 */ int64_t newest_stamp;        /* likewise; the difference is how far apart they were written */
    /* 24 */ uint32_t tries;              /* how often the group was read, 1 to TLM_VIEW_GROUP_TRIES */
    /* 28 */ uint32_t values;             /* how many of the channels have a value */
    /* 32 */ uint32_t section_generation; /* of the section that they came from (tlm_view_generation) */
    /* 36 */ uint32_t quiet;              /* 1: the values stood in the section together; the function's result */
} tlm_view_group;

/* Most tries of tlm_view_read_group. */
#define TLM_VIEW_GROUP_TRIES 64

/* What a channel is, 184 bytes: the catalogue's row with what the section has set instead. */
typedef struct tlm_view_channel {
    /*   0 */ uint16_t channel;
    /*   2 */ int16_t unit_class;         /* docs/channels.md has a table; the section's for user channels */
    /*   4 */ uint16_t timeout_seconds;   /* age from which a value is stale; 0: never */
    /*   6 */ uint16_t precision;         /* decimals to show; 255: not a number */
    /*   8 */ int16_t min_value;          /* plausible range in the base unit; */
    /*  10 */ int16_t max_value;          /* equal to min_value: any */
    /*  12 */ uint8_t storage_kind;       /* 1 double, 2 int32, 3 time */
    /*  13 */ uint8_t other_boats;        /* 1: kept for boats 2 to 99 too */
    /*  14 */ uint8_t own_boat_protected; /* 1: clients may not write it for boat 0 unless a host accepts it */
    /*  15 */ uint8_t sensor;             /* 1: raw sensor, load, rudder, foil or user channel */
    /*  16 */ uint8_t log;                /* 1: programs that log keep it */
    /*  17 */ uint8_t written;            /* 1: a value has been stored since the section was made */
    /*  18 */ uint8_t blocked;            /* 1: writes are refused */
    /*  19 */ uint8_t reserved[5];        /* 0 */
    /*  24 */ char short_name[48];        /* the one set in the section, else the catalogue's; empty for channel 0 */
    /*  72 */ char long_name[96];         /* likewise */
    /* 168 */ char unit[16];              /* the base unit: "kt", "nm", "m"; empty when it has none. For times
                                         how they are shown ("UTC", "h:mm:ss"): their values are days */
} tlm_view_channel;

/* A boat's entry, 112 bytes. */
typedef struct tlm_view_boat {
    /*  0 */ uint16_t boat;
    /*  2 */ uint8_t in_use;    /* 1: below the boat count, so that its values can be read */
    /*  3 */ uint8_t has_data;  /* 1: a value has been stored for it since the section was made */
    /*  4 */ uint32_t mmsi;     /* 0: none */
    /*  8 */ uint32_t colour;   /* red in the low byte, then green, then blue */
    /* 12 */ uint32_t reserved; /* 0 */
    /* 16 */ char name[96];     /* empty when it has none */
} tlm_view_boat;

/* The man-overboard mark, 56 bytes. */
typedef struct tlm_view_mob {
    /*  0 */ double latitude;     /* degrees, north positive; 32767.0 for none */
    /*  8 */ double longitude;    /* degrees, east positive; 32767.0 for none */
    /* 16 */ uint8_t flag_a;      /* 1 after an alarm */
    /* 17 */ uint8_t flag_b;      /* 1 after an alarm */
    /* 18 */ uint8_t reserved[6]; /* 0 */
    /* 24 */ char name[32];       /* "MOB" after an alarm; ASCII */
} tlm_view_mob;

/* --- the view itself */

/* TLM_VIEW_INTERFACE of the library that is loaded. */
int32_t tlm_view_interface(void) TLM_VIEW_NOEXCEPT;

/* A new view, attached to the section if there is one. Null only when memory is short. */
tlm_view* tlm_view_open(void) TLM_VIEW_NOEXCEPT;

/* Ends a view. Null does nothing. */
void tlm_view_close(tlm_view* view) TLM_VIEW_NOEXCEPT;

/*
 * Looks whether the section is still held by somebody and whether there is a new one. Lets a section go whose
 * last holder has ended, and attaches to one that has been made since. Asks the system at most every 250 ms and is
 * a clock reading otherwise, so call it before each round of reading. No other function changes what the view is
 * attached to.
 *
 * Returns enum tlm_view_attachment.
 */
int32_t tlm_view_refresh(tlm_view* view) TLM_VIEW_NOEXCEPT;

/* The same, asking the system in any case. */
int32_t tlm_view_refresh_now(tlm_view* view) TLM_VIEW_NOEXCEPT;

/* What the last refresh found (enum tlm_view_attachment). Asks nobody. */
int32_t tlm_view_state(const tlm_view* view) TLM_VIEW_NOEXCEPT;

/* How many sections the view has been attached to since it was opened. A change means that names, entries and
 * system values may all be others. */
uint32_t tlm_view_generation(const tlm_view* view) TLM_VIEW_NOEXCEPT;

/* The clock that ages are counted by: the system's wall clock, now. */
int64_t tlm_view_now(void) TLM_VIEW_NOEXCEPT;

/* The handle of the host application's window (on Linux: the number of its socket); 0 for none. */
uint64_t tlm_view_host_window(const tlm_view* view) TLM_VIEW_NOEXCEPT;

/*
 * 1 while a recording is being played into the section: its values were measured once, with stamps of now, and are not
 * live. A program that shows, logs or steers by values asks this at each round, and says so or leaves them alone.
 * Stays 1 after a player that was killed, until a host or another player sets it right. 0 without a section.
 */
int32_t tlm_view_is_replay(const tlm_view* view) TLM_VIEW_NOEXCEPT;

/* --- channels */

/* Gets what a channel is. 0, with everything empty and 32767 as its number, for 414 and above. */
int32_t tlm_view_get_channel(const tlm_view* view, uint16_t channel, tlm_view_channel* info) TLM_VIEW_NOEXCEPT;

/* The same from the catalogue alone, whatever the section has set. */
int32_t tlm_view_get_catalogue(uint16_t channel, tlm_view_channel* info) TLM_VIEW_NOEXCEPT;

/*
 * The number of the channel with this short name (the one that GetZanVarName gives, in UTF-8); where there is none,
 * with this long name. Letters count as they are written. Of several the lowest number. 32767 when there is none.
 *
 * name   UTF-8, terminated; null finds none
 */
uint16_t tlm_view_find_channel(const tlm_view* view, const char* name) TLM_VIEW_NOEXCEPT;

/* The channel that is read in place of this one now: itself unless it is alternating (117 to 126). 32767 when it
 * is 414 or above or stands for none. */
uint16_t tlm_view_source(const tlm_view* view, uint16_t channel) TLM_VIEW_NOEXCEPT;

/* --- boats */

/* How many boats are in use: one more than the highest that has received a value, at most 100; 0 without a
 * section. */
uint16_t tlm_view_boat_count(const tlm_view* view) TLM_VIEW_NOEXCEPT;

/* Gets a boat's entry. 0, with everything empty, for 100 and above or without a section. */
int32_t tlm_view_get_boat(const tlm_view* view, uint16_t boat, tlm_view_boat* info) TLM_VIEW_NOEXCEPT;

/* The number of the boat with this name (UTF-8, letters as written; of several the lowest), -1 when there is
 * none. A boat without a name is never found. */
int32_t tlm_view_find_boat(const tlm_view* view, const char* name) TLM_VIEW_NOEXCEPT;

/* --- values */

/*
 * Reads one value.
 *
 * channel   0 to 413; an alternating one gives the channel that it stands for
 * boat      0 to 99; boats 2 to 99 keep 34 of the channels
 * value     gets the value, its stamp, age and state
 *
 * As GetZanVar, with two exceptions. The values that the library derives itself with a foreign record header (ROT,
 * TrimRate, HeelRate, RudderToe, GPS tOffset) are read by their channel's kind. And a value with the stamp 0 was
 * never written (boat 1's block starts as zeros): it is none.
 *
 * The age is the clock less the stamp. A stamp up to ten seconds ahead of the clock counts as now (age 0): clocks
 * are set while programs run. A stamp further ahead, before 1601 or INT64_MAX has no age, and the value is stale
 * if its channel has a time-out. A clock set back makes values look younger, one set forward older, until they are
 * written again.
 *
 * Stamp and record are written one after the other, so they may come from different writes.
 *
 * Returns 1 when there is a value, fresh or not.
 */
int32_t tlm_view_read(const tlm_view* view, uint16_t channel, uint16_t boat, tlm_view_value* value) TLM_VIEW_NOEXCEPT;

/*
 * Reads many channels of one boat so that they belong to one moment.
 *
 * channels  count channel numbers
 * values    gets count values, in the same order
 * group     gets how it went; may be null
 *
 * The group is read twice, and again until two readings in a row are equal in every stamp, record and source, at
 * most TLM_VIEW_GROUP_TRIES readings in all. It does not wait in between.
 *
 * Returns 1 when two readings were equal: then there was a moment at which all these stamps and records stood in
 * the section together. 0 when it never got two, or when there is no section: each value is then good by itself, as
 * tlm_view_read gives it, and `changed` marks those that were written between the last two readings.
 *
 * It does not promise that no writer was at work: one that stood still in the middle of a write, or between two
 * channels that belong together (Lat and Lon), is not seen. Stamps of values from one round of a writer lie close
 * together; compare oldest_stamp and newest_stamp where that matters.
 */
int32_t tlm_view_read_group(const tlm_view* view, uint16_t boat, const uint16_t* channels, uint32_t count,
                            tlm_view_value* values, tlm_view_group* group) TLM_VIEW_NOEXCEPT;

/* --- system values and the man-overboard mark */

/* Gets system variable 0 to 79 in its own unit. 0, with 32767.0, when it has no value, is out of range or there is
 * no section. A NaN is a value. */
int32_t tlm_view_get_variable(const tlm_view* view, uint16_t index, double* value) TLM_VIEW_NOEXCEPT;

/* Gets system integer 0 to 12. 0, with 0, when out of range or without a section. */
int32_t tlm_view_get_integer(const tlm_view* view, uint16_t index, int32_t* value) TLM_VIEW_NOEXCEPT;

/* Gets system flag 0 to 59, the byte as it stands. 0, with 0, when out of range or without a section. */
int32_t tlm_view_get_flag(const tlm_view* view, uint16_t index, uint8_t* value) TLM_VIEW_NOEXCEPT;

/* Gets the man-overboard mark. 1 when there is a position. Its fields are written one after the other. */
int32_t tlm_view_get_mob(const tlm_view* view, tlm_view_mob* mob) TLM_VIEW_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif
