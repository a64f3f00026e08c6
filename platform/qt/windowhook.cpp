// The event filter behind hook().
#include "platform/qt/windowhook.h"

#include "platform/keycodes.h"
#include "platform/qt/boundary.h"

#include <QEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QObject>

#include <utility>

namespace orv {

namespace {

constexpr struct {
    Qt::Key key;
    keycode code;
} keycodes[] = {{Qt::Key_Backspace, keybackspace},
                {Qt::Key_Return, keyenter},
                {Qt::Key_Enter, keyenter},
                {Qt::Key_Escape, keyescape},
                {Qt::Key_PageUp, keypageup},
                {Qt::Key_PageDown, keypagedown},
                {Qt::Key_End, keyend},
                {Qt::Key_Home, keyhome},
                {Qt::Key_Left, keyleft},
                {Qt::Key_Up, keyup},
                {Qt::Key_Right, keyright},
                {Qt::Key_Down, keydown},
                {Qt::Key_F1, keyf1}};

pointeraction actionof(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
        return pointeraction::press;
    case QEvent::MouseButtonRelease:
        return pointeraction::release;
    case QEvent::MouseButtonDblClick:
        return pointeraction::doubleclick;
    default:
        return pointeraction::move;
    }
}

void callpointer(const windowhook& calls, const QEvent& event) {
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    const pointeraction action = actionof(event.type());
    const Qt::MouseButtons of = action == pointeraction::move ? mouse.buttons() : mouse.button();
    enter([&] {
        calls.pointer({action, mouse.position().x(), mouse.position().y(), of.testFlag(Qt::LeftButton),
                       of.testFlag(Qt::RightButton)});
    });
}

void callfocus(const std::function<void(Qt::FocusReason)>& call, const QEvent& event) {
    if (call) enter([&] { call(static_cast<const QFocusEvent&>(event).reason()); });
}

// An event filter is an object to Qt; this is all of it.
struct filter : QObject {
    windowhook calls;

    filter(QObject& watched, windowhook given) : QObject(&watched), calls(std::move(given)) {}

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::Paint:
            if (!calls.paint) return false;
            enter(calls.paint);
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
            if (calls.pointer) callpointer(calls, *event);
            return false;
        case QEvent::KeyPress:
            if (const auto& press = static_cast<const QKeyEvent&>(*event);
                calls.key && (calls.repeatedkeys || !press.isAutoRepeat()))
                enter([&] { calls.key(press.key()); });
            return calls.keytaken && calls.keytaken(static_cast<const QKeyEvent&>(*event).key());
        case QEvent::Resize:
            if (calls.resize) enter(calls.resize);
            return false;
        case QEvent::Close:
            if (calls.close) enter(calls.close);
            return false;
        case QEvent::FocusIn:
            callfocus(calls.focus, *event);
            return false;
        case QEvent::FocusOut:
            callfocus(calls.leave, *event);
            return false;
        default:
            return false;
        }
    }
};

} // namespace

int keycodeof(int key) {
    for (const auto& row : keycodes)
        if (row.key == key) return row.code;
    return 0;
}

bool isplainkey() {
    return (QGuiApplication::keyboardModifiers() &
            (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
}

void hook(QObject& watched, windowhook calls) {
    watched.installEventFilter(new filter(watched, std::move(calls)));
}

} // namespace orv
