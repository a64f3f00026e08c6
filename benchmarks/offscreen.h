// Qt for benchmarks that draw on a real picture; needs no display.
#pragma once

#ifndef QT_NO_KEYWORDS
#define QT_NO_KEYWORDS // "slots" is a word of ours too
#endif

#include <QGuiApplication>

namespace orv {

struct offscreenqt {
    bool chosen = qputenv("QT_QPA_PLATFORM", "offscreen");
    int argumentcount = 1;
    char name[10] = "benchmark";
    char* arguments[2] = {name, nullptr};
    QGuiApplication application{argumentcount, arguments};
};

} // namespace orv
