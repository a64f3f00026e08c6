// The keys that the core acts on, by the codes it knows them by.
#pragma once

namespace orv {

enum keycode {
    keybackspace = 8,
    keyenter = 13,
    keyescape = 27,
    keypageup = 33,
    keypagedown = 34,
    keyend = 35,
    keyhome = 36,
    keyleft = 37,
    keyup = 38,
    keyright = 39,
    keydown = 40,
    keyf1 = 112
};

} // namespace orv
