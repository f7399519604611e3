/* Writes a boat speed and reads it back, without a C run-time library. */
#include <tallowmere/tallowmere.h>
#include <tallowmere/view.h>

int _fltused; /* what the run-time library defines for programs that use doubles */

int start(void) {
    double speed = 0;
    uint16_t source = 0;
    if (!SetZanVar(ZAN_BSP, 6.4, 0)) return 1;
    if (!GetZanVar(ZAN_BSP, &speed, 0, &source)) return 2;
    if (tlm_view_interface() == 0) return 3;
    return speed == 6.4 && source == ZAN_BSP ? 0 : 4;
}
