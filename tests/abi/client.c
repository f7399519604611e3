/*
 * A program in C that uses every function and some of the channel constants, and checks what it gets.
 * Ends with 0 when all is well.
 */
#include <tallowmere/tallowmere.h>

#include <stdio.h>
#include <string.h>

static int failures = 0;

static void check(int holds, const char* what) {
    if (holds) return;
    fprintf(stderr, "wrong: %s\n", what);
    ++failures;
}
#define CHECK(condition) check((condition) ? 1 : 0, #condition)

static void check_constants(void) {
    CHECK(NO_VALUE == 32767.0);
    CHECK(ZAN_CHANNEL_COUNT == 414);
    CHECK(ZAN_BOAT_COUNT == 100);
    CHECK(ZAN_NAME_BYTES == 16);
    CHECK(ZAN_TIME == 0);
    CHECK(ZAN_BSP == 1);
    CHECK(ZAN_TWD == 6);
    CHECK(ZAN_LAT == 48);
    CHECK(ZAN_LON == 49);
    CHECK(ZAN_ALT_0 == 117);
    CHECK(ZAN_USER_0 == 172);
    CHECK(ZAN_USER_31 == 203);
    CHECK(ZAN_SAIL == 269);
    CHECK(ZAN_PREDSEATEMP == 413);
    CHECK(sizeof(ChannelValue) == 16);
}

static void check_counts(void) {
    CHECK(GetBoatNum() == 100);
    CHECK(GetZanVarNum() == 414);
}

static void check_value(void) {
    double value = -1.0;
    uint16_t source = 0;
    CHECK(SetZanVar(ZAN_BSP, 6.4, 0) == 1);
    CHECK(GetZanVar(ZAN_BSP, &value, 0, &source));
    CHECK(value == 6.4);
    CHECK(source == ZAN_BSP);

    CHECK(SetZanVar(ZAN_TWD, 370.0, 3) == 1);
    CHECK(GetZanVar(ZAN_TWD, &value, 3, &source));
    CHECK(value == 10.0);

    CHECK(SetZanVar(ZAN_BSP, NO_VALUE, 0) == 1);
    value = -1.0;
    CHECK(!GetZanVar(ZAN_BSP, &value, 0, &source));
    CHECK(value == -1.0);

    CHECK(!GetZanVar(ZAN_CHANNEL_COUNT, &value, 0, &source));
    CHECK(value == NO_VALUE);
    CHECK(source == ZAN_NO_CHANNEL);
    CHECK(SetZanVar(ZAN_TIME, 1.0, 0) == 0xFF);
    CHECK(SetZanVar(ZAN_CHANNEL_COUNT, 1.0, 0) == 0x9D);
}

static void check_record(void) {
    ChannelValue record;
    uint16_t source = 0;
    memset(&record, 0, sizeof record);
    record.kind = ZAN_KIND_INTEGER;
    record.payload.integer = 7;
    CHECK(SetZanVar2(ZAN_SAIL, &record, 0) == 1);
    memset(&record, 0, sizeof record);
    CHECK(GetZanVar2(ZAN_SAIL, &record, 0, &source));
    CHECK(record.kind == ZAN_KIND_INTEGER);
    CHECK(record.payload.integer == 7);
    CHECK(source == ZAN_SAIL);
    CHECK(!GetZanVar2(ZAN_TIME, &record, ZAN_BOAT_COUNT, &source));
    CHECK(record.kind == ZAN_KIND_DOUBLE);
    CHECK(record.payload.number == NO_VALUE);
    CHECK(SetZanVar2(ZAN_SAIL, &record, ZAN_BOAT_COUNT) == ((ZAN_SAIL - 1) & 0xFF));
}

static void check_name(void) {
    char name[ZAN_NAME_BYTES];
    memset(name, 'x', sizeof name);
    GetZanVarName(ZAN_BSP, name);
    CHECK(strcmp(name, "BSP") == 0);
    SetZanUserVarName(3, "A name of twenty ch.");
    GetZanVarName(ZAN_USER_0 + 3, name);
    CHECK(strcmp(name, "A name of twent") == 0);
    GetZanVarName(ZAN_BSP, NULL);
}

static void check_system(void) {
    double value = -1.0;
    uint8_t flag = 9;
    CHECK(GetSysVar(0, &value));
    CHECK(value >= 1.0); /* 15.85 unless the user has set another length */
    CHECK(!GetSysVar(ZAN_SYSTEM_VARIABLE_COUNT, &value));
    CHECK(value == NO_VALUE);
    CHECK(GetSysBool(38, &flag));
    CHECK(flag == 1); /* something has been written */
    flag = 9;
    CHECK(!GetSysBool(ZAN_SYSTEM_FLAG_COUNT, &flag));
    CHECK(flag == 9);
}

static void check_man_overboard(void) {
    CHECK(SetMOB(51.5, -0.1) == 0); /* no host application is there */
}

int main(void) {
    check_constants();
    check_counts();
    check_value();
    check_record();
    check_name();
    check_system();
    check_man_overboard();
    if (failures == 0) puts("all well");
    return failures == 0 ? 0 : 1;
}
