/* The public header is the first thing that the compiler sees here, and nothing else is there in C11. */
#include <tallowmere/tallowmere.h>

_Static_assert(__STDC_VERSION__ >= 201112L, "compiled as C11");
_Static_assert(sizeof(ChannelValue) == 16, "a record has 16 bytes");
_Static_assert(sizeof(ChannelIndex) == 2 && sizeof(BoatIndex) == 2, "16-bit numbers");
_Static_assert(ZAN_KIND_BYTE == 0 && ZAN_KIND_DOUBLE == 1 && ZAN_KIND_INTEGER == 2 && ZAN_KIND_TIME == 3, "kinds");

/* Every function with its exact type. */
int header_c_uses_all(double* value, uint16_t* source, ChannelValue* record, char* name, uint8_t* flag);
int header_c_uses_all(double* value, uint16_t* source, ChannelValue* record, char* name, uint8_t* flag) {
    int (*boats)(void) = GetBoatNum;
    int (*channels)(void) = GetZanVarNum;
    uint8_t (*get)(uint16_t, double*, uint16_t, uint16_t*) = GetZanVar;
    uint8_t (*get2)(uint16_t, ChannelValue*, uint16_t, uint16_t*) = GetZanVar2;
    void (*get_name)(uint16_t, char*) = GetZanVarName;
    uint8_t (*get_flag)(uint16_t, uint8_t*) = GetSysBool;
    uint8_t (*get_variable)(uint16_t, double*) = GetSysVar;
    void (*set_name)(uint16_t, const char*) = SetZanUserVarName;
    uint8_t (*set)(uint16_t, double, uint16_t) = SetZanVar;
    uint8_t (*set2)(uint16_t, const ChannelValue*, uint16_t) = SetZanVar2;
    int (*mob)(double, double) = SetMOB;
    get_name(ZAN_BSP, name);
    set_name(0, name);
    return boats() + channels() + get(ZAN_BSP, value, 0, source) + get2(ZAN_BSP, record, 0, source) +
           get_flag(0, flag) + get_variable(0, value) + set(ZAN_BSP, 1.0, 0) + set2(ZAN_BSP, record, 0) + mob(0.0, 0.0);
}
