// Events that have no signal, for any widget or window without a class of its own. For Qt files only.
#pragma once

#include <Qt>

#include <functional>

class QObject;

namespace orv {

enum class pointeraction { press, release, move, doubleclick };

// Position in the widget's pixels. The buttons are those that the event is about; at a move, those held.
struct pointerevent {
    pointeraction action;
    double x, y;
    bool left, right;
};

// What is to be called; any of them may be left out. All run inside enter() (boundary.h).
struct windowhook {
    std::function<void()> paint = {};                      // in place of the widget's own painting
    std::function<void(const pointerevent&)> pointer = {}; // the widget gets it too
    std::function<void(int)> key = {};               // a Qt::Key, once per press; the widget gets it too
    std::function<bool(int)> keytaken = {};          // whether the widget does not get the key after all
    bool repeatedkeys = false;                       // a key that is held down counts again and again
    std::function<void()> resize = {};               // the widget has its new size
    std::function<void()> close = {};                // asked to close; it then does
    std::function<void(Qt::FocusReason)> focus = {}; // has received the focus
    std::function<void(Qt::FocusReason)> leave = {}; // has lost it
};

// The core's code of a Qt::Key (platform/keycodes.h), 0 for one that it does not know.
int keycodeof(int key);

// Whether the key that is being pressed comes without Ctrl, Alt and Meta.
bool isplainkey();

// Watches an object for the rest of its life.
void hook(QObject& watched, windowhook calls);

} // namespace orv
