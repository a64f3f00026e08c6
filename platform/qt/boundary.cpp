// Where events enter: what nobody trapped is told here and ends the program.
#include "platform/qt/boundary.h"

#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "platform/qt/platformqt.h"
#include "shell/sessionstate.h"

#include <exception>
#include <new>
#include <string>

namespace orv {

namespace {

constexpr int failurestatus = 1;

void endprogram(const std::string& sentence) {
    // The box lets events in; one that fails too has nothing to add.
    static bool ending = false;
    if (ending) return;
    ending = true;
    platform::messagebox(std::string(programname) + std::string(versiontext),
                         sentence + "\n\nThe program ends now.", platform::buttons::ok, platform::icon::stop,
                         platform::answer::ok);
    platform::halt(failurestatus);
}

} // namespace

void enter(const std::function<void()>& routine) {
    platform::restartyield();
    try {
        routine();
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::cancelled) endprogram(error.text);
    } catch (const std::bad_alloc&) {
        endprogram("The computer's memory is not enough for this.");
    } catch (const std::exception& error) {
        endprogram(std::string("An unexpected error has occurred (") + error.what() + ").");
    } catch (...) {
        endprogram("An unexpected error has occurred.");
    }
}

} // namespace orv
