/* Writes a boat speed and reads it back, by the library and by the view, without a C run-time library. */
#include <tallowmere/tallowmere.h>
#include <tallowmere/view.h>

int _fltused; /* what the run-time library defines for programs that use doubles */

static int look(void) {
    tlm_view* view = tlm_view_open();
    tlm_view_value speed;
    tlm_view_channel channel;
    if (tlm_view_refresh(view) != TLM_VIEW_ATTACHED) return 5;
    if (!tlm_view_read(view, ZAN_BSP, 0, &speed) || speed.value != 6.4 || speed.state != TLM_VIEW_FRESH) return 6;
    if (!tlm_view_get_channel(view, ZAN_BSP, &channel) || channel.unit[0] != 'k') return 7;
    tlm_view_close(view);
    return 0;
}

int start(void) {
    double speed = 0;
    uint16_t source = 0;
    if (!SetZanVar(ZAN_BSP, 6.4, 0)) return 1;
    if (!GetZanVar(ZAN_BSP, &speed, 0, &source)) return 2;
    if (speed != 6.4 || source != ZAN_BSP) return 3;
    if (tlm_view_interface() != TLM_VIEW_INTERFACE) return 4;
    return look();
}
