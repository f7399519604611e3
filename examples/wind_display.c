/*
 * A wind instrument for the terminal, in C: apparent and true wind of the own boat, drawn anew every second.
 *
 *     wind_display [--interval SECONDS] [--count ROUNDS] [--plain]
 *
 * It looks at the section and never makes one: started before any other program it waits, and it goes on when they
 * come and go. The last line says whether the values are live or played from a recording. "-" is a value that is not
 * there; one older than its channel's time-out is shown with its age.
 * --plain draws one round below the other, for files and for consoles without escape sequences.
 */
#define _POSIX_C_SOURCE 199309L /* nanosleep, which mingw-w64 has too */

#include <tallowmere/view.h>

#include <math.h>
#include <signal.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

enum { CHANNELS = 5 };
static const uint16_t channels[CHANNELS] = {ZAN_AWA, ZAN_AWS, ZAN_TWA, ZAN_TWS, ZAN_TWD};

static volatile sig_atomic_t stopped;

static void stop(int signal_number) {
    (void)signal_number;
    stopped = 1;
}

typedef struct Options {
    double interval;     /* seconds */
    unsigned long count; /* rounds; 0: without end */
    bool plain;
} Options;

static bool parse(int count, char** arguments, Options* options) {
    for (int i = 1; i < count; ++i) {
        char* end = NULL;
        if (strcmp(arguments[i], "--plain") == 0) {
            options->plain = true;
        } else if (strcmp(arguments[i], "--interval") == 0 && i + 1 < count) {
            options->interval = strtod(arguments[++i], &end);
            if (*end != '\0' || !(options->interval >= 0.01 && options->interval <= 3600)) return false;
        } else if (strcmp(arguments[i], "--count") == 0 && i + 1 < count) {
            options->count = strtoul(arguments[++i], &end, 10);
            if (*end != '\0' || options->count == 0) return false;
        } else {
            return false;
        }
    }
    return true;
}

/* A number may be anything at all: a foreign program can have written it. */
static bool is_sensible(const tlm_view_value* value) {
    return value->state != TLM_VIEW_NONE && fabs(value->value) < 1e6;
}

static void print_row(const tlm_view* view, const tlm_view_value* value, const char* line_end) {
    tlm_view_channel channel;
    tlm_view_get_channel(view, value->channel, &channel);
    printf("%-4s", channel.short_name);
    if (!is_sensible(value)) {
        printf("%9s", "-");
    } else {
        printf("%9.*f %s", channel.precision < 10 ? channel.precision : 1, value->value, channel.unit);
        if (value->state == TLM_VIEW_STALE) {
            if (value->age_seconds >= 0)
                printf("  (%.0f s old)", value->age_seconds);
            else
                printf("  (age unknown)");
        }
    }
    fputs(line_end, stdout);
}

/* The apparent wind on a dial from astern over port, ahead and starboard to astern, ten degrees a place. */
static void print_dial(const tlm_view_value* angle, const char* line_end) {
    char dial[] = "P ------------------|------------------ S";
    if (is_sensible(angle) && angle->state != TLM_VIEW_STALE && fabs(angle->value) <= 180)
        dial[2 + lround((angle->value + 180) / 10)] = 'W';
    printf("%s%s", dial, line_end);
}

static const char* describe(const tlm_view* view) {
    switch (tlm_view_state(view)) {
    case TLM_VIEW_ATTACHED:
        return tlm_view_is_replay(view) ? "REPLAY: a recording is being played, this is not the wind now" : "live";
    case TLM_VIEW_WRITERS_GONE:
        return "the last program that wrote values has ended";
    default:
        return "waiting for a program that writes values";
    }
}

static void draw(tlm_view* view, bool plain) {
    const char* line_end = plain ? "\n" : "\x1b[K\n";
    tlm_view_refresh(view);
    tlm_view_value values[CHANNELS];
    tlm_view_read_group(view, 0, channels, CHANNELS, values, NULL);
    print_dial(&values[0], line_end);
    for (int i = 0; i < CHANNELS; ++i) print_row(view, &values[i], line_end);
    printf("%s%s", describe(view), line_end);
    fflush(stdout);
}

int main(int count, char** arguments) {
    Options options = {1.0, 0, false};
    if (!parse(count, arguments, &options)) {
        fprintf(stderr, "usage: %s [--interval SECONDS] [--count ROUNDS] [--plain]\n", arguments[0]);
        return 2;
    }
    signal(SIGINT, stop);
    tlm_view* view = tlm_view_open();
    if (view == NULL) {
        fprintf(stderr, "%s: out of memory\n", arguments[0]);
        return 1;
    }
    const struct timespec pause = {(time_t)options.interval, (long)(fmod(options.interval, 1.0) * 1e9)};
    for (unsigned long round = 0; !stopped; ++round) {
        if (round > 0 && !options.plain) printf("\x1b[%dA", CHANNELS + 2); /* back up over the last round */
        draw(view, options.plain);
        if (round + 1 == options.count) break;
        nanosleep(&pause, NULL); /* a signal ends it early */
    }
    tlm_view_close(view);
    return 0;
}
