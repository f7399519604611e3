// The smallest client that only looks: nobody holds a section here, and it makes none.
#include <tallowmere/view.hpp>

int main() {
    tallowmere::view::View view;
    if (view.refresh() != tallowmere::view::State::NoSection) return 1;
    if (view.channel(ZAN_BSP)->unit() != "kt") return 2;
    return view.read(ZAN_BSP).number() ? 3 : 0;
}
