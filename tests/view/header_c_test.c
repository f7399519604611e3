/* The header is the first thing that the compiler sees here, and nothing else is there in C11. */
#include <tallowmere/view.h>

#include <stddef.h>

/* What the header says of its structures, held against the compiler. */
#define AT(type, field, offset) _Static_assert(offsetof(type, field) == (offset), #type "." #field)

_Static_assert(sizeof(tlm_view_value) == 48, "value");
AT(tlm_view_value, value, 0);
AT(tlm_view_value, age_seconds, 8);
AT(tlm_view_value, stamp, 16);
AT(tlm_view_value, record_header, 24);
AT(tlm_view_value, record_payload, 32);
AT(tlm_view_value, channel, 40);
AT(tlm_view_value, source, 42);
AT(tlm_view_value, state, 44);
AT(tlm_view_value, changed, 45);
AT(tlm_view_value, reserved, 46);

_Static_assert(sizeof(tlm_view_group) == 40, "group");
AT(tlm_view_group, moment, 0);
AT(tlm_view_group, oldest_stamp, 8);
AT(tlm_view_group, newest_stamp, 16);
AT(tlm_view_group, tries, 24);
AT(tlm_view_group, values, 28);
AT(tlm_view_group, section_generation, 32);
AT(tlm_view_group, quiet, 36);

_Static_assert(sizeof(tlm_view_channel) == 184, "channel");
AT(tlm_view_channel, channel, 0);
AT(tlm_view_channel, unit_class, 2);
AT(tlm_view_channel, timeout_seconds, 4);
AT(tlm_view_channel, precision, 6);
AT(tlm_view_channel, min_value, 8);
AT(tlm_view_channel, max_value, 10);
AT(tlm_view_channel, storage_kind, 12);
AT(tlm_view_channel, other_boats, 13);
AT(tlm_view_channel, own_boat_protected, 14);
AT(tlm_view_channel, sensor, 15);
AT(tlm_view_channel, log, 16);
AT(tlm_view_channel, written, 17);
AT(tlm_view_channel, blocked, 18);
AT(tlm_view_channel, reserved, 19);
AT(tlm_view_channel, short_name, 24);
AT(tlm_view_channel, long_name, 72);
AT(tlm_view_channel, unit, 168);

_Static_assert(sizeof(tlm_view_boat) == 112, "boat");
AT(tlm_view_boat, boat, 0);
AT(tlm_view_boat, in_use, 2);
AT(tlm_view_boat, has_data, 3);
AT(tlm_view_boat, mmsi, 4);
AT(tlm_view_boat, colour, 8);
AT(tlm_view_boat, reserved, 12);
AT(tlm_view_boat, name, 16);

_Static_assert(sizeof(tlm_view_mob) == 56, "mob");
AT(tlm_view_mob, latitude, 0);
AT(tlm_view_mob, longitude, 8);
AT(tlm_view_mob, flag_a, 16);
AT(tlm_view_mob, flag_b, 17);
AT(tlm_view_mob, reserved, 18);
AT(tlm_view_mob, name, 24);

/* Every function with its exact type. */
int view_header_uses_all(tlm_view_value* value, tlm_view_group* group, tlm_view_channel* info, tlm_view_boat* boat,
                         tlm_view_mob* mob);
int view_header_uses_all(tlm_view_value* value, tlm_view_group* group, tlm_view_channel* info, tlm_view_boat* boat,
                         tlm_view_mob* mob) {
    int32_t (*interface_number)(void) = tlm_view_interface;
    tlm_view* (*open)(void) = tlm_view_open;
    void (*close)(tlm_view*) = tlm_view_close;
    int32_t (*refresh)(tlm_view*) = tlm_view_refresh;
    int32_t (*refresh_now)(tlm_view*) = tlm_view_refresh_now;
    int32_t (*state)(const tlm_view*) = tlm_view_state;
    uint32_t (*generation)(const tlm_view*) = tlm_view_generation;
    int64_t (*now)(void) = tlm_view_now;
    uint64_t (*host_window)(const tlm_view*) = tlm_view_host_window;
    int32_t (*is_replay)(const tlm_view*) = tlm_view_is_replay;
    int32_t (*get_channel)(const tlm_view*, uint16_t, tlm_view_channel*) = tlm_view_get_channel;
    int32_t (*get_catalogue)(uint16_t, tlm_view_channel*) = tlm_view_get_catalogue;
    uint16_t (*find_channel)(const tlm_view*, const char*) = tlm_view_find_channel;
    uint16_t (*source)(const tlm_view*, uint16_t) = tlm_view_source;
    uint16_t (*boat_count)(const tlm_view*) = tlm_view_boat_count;
    int32_t (*get_boat)(const tlm_view*, uint16_t, tlm_view_boat*) = tlm_view_get_boat;
    int32_t (*find_boat)(const tlm_view*, const char*) = tlm_view_find_boat;
    int32_t (*read)(const tlm_view*, uint16_t, uint16_t, tlm_view_value*) = tlm_view_read;
    int32_t (*read_group)(const tlm_view*, uint16_t, const uint16_t*, uint32_t, tlm_view_value*, tlm_view_group*) =
        tlm_view_read_group;
    int32_t (*get_variable)(const tlm_view*, uint16_t, double*) = tlm_view_get_variable;
    int32_t (*get_integer)(const tlm_view*, uint16_t, int32_t*) = tlm_view_get_integer;
    int32_t (*get_flag)(const tlm_view*, uint16_t, uint8_t*) = tlm_view_get_flag;
    int32_t (*get_mob)(const tlm_view*, tlm_view_mob*) = tlm_view_get_mob;

    const uint16_t channels[] = {ZAN_BSP};
    double number = 0;
    int32_t integer = 0;
    uint8_t flag = 0;
    tlm_view* view = open();
    const int sum = interface_number() + refresh(view) + refresh_now(view) + state(view) + (int)generation(view) +
                    (now() > 0) + (host_window(view) != 0) + is_replay(view) + get_channel(view, 1, info) +
                    get_catalogue(1, info) + find_channel(view, "BSP") + source(view, 1) + boat_count(view) +
                    get_boat(view, 0, boat) + find_boat(view, "") + read(view, 1, 0, value) +
                    read_group(view, 0, channels, 1, value, group) + get_variable(view, 0, &number) +
                    get_integer(view, 0, &integer) + get_flag(view, 0, &flag) + get_mob(view, mob);
    close(view);
    return sum;
}
