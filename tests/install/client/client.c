/* The smallest client: writes a boat speed and reads it back. */
#include <tallowmere/tallowmere.h>

#include <stdio.h>

int main(void) {
    double speed = 0;
    uint16_t source = 0;
    if (!SetZanVar(ZAN_BSP, 6.4, 0)) return 1;
    if (!GetZanVar(ZAN_BSP, &speed, 0, &source)) return 2;
    printf("BSP %.2f from channel %d\n", speed, source);
    return speed == 6.4 && source == ZAN_BSP ? 0 : 3;
}
