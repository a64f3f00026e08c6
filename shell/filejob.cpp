// The frame of the commands with a file dialog.
#include "shell/filejob.h"

#include "base/runtimeerror.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

namespace orv {

std::optional<std::string> chosenfile(filedialog ask, const char* title, const char* filter,
                                      const std::string& proposal) {
    try {
        return ask({title, filter, proposal, SessionState.dataDirectory});
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::cancelled) throw;
        return std::nullopt;
    }
}

bool unlessrefused(const std::function<void()>& step, const std::string& title) {
    try {
        step();
        return true;
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::cancelled) platform::warningbox(title, error.text);
        return false;
    }
}

filejob::filejob() : outermost(!commandssuspended()) {
    platform::pointer(platform::shape::wait);
    if (!outermost) return;
    suspendcommands(true);
    platform::setenabled("Redisplay", false);
}

filejob::~filejob() {
    if (!outermost) return;
    platform::pointer(platform::shape::normal);
    platform::setenabled("Redisplay", true);
    suspendcommands(false);
}

} // namespace orv
