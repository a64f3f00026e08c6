// The one kind of failure of the whole program, and the trap that goes on at the next statement.
#pragma once

#include <new>
#include <string>

namespace orv {

enum class errorkind {
    subscript,      // a table index outside its range
    divisionbyzero, // a quotient without a divisor
    overflow,       // a number too large for the variable that is to hold it
    domain,         // a logarithm, root or power outside its domain
    memory,         // no room for a table
    filenotfound,   // a file that is not there
    fileaccess,     // a file that cannot be opened, read or written
    pastend,        // reading behind the end of a file
    typemismatch,   // words where a number was expected
    cancelled       // the user closed a dialog with Cancel
};

// Thrown by value, caught where a workflow traps it or, last of all, where a window event enters the
// program. `text` is a sentence for a person: which file, which line or record, what was wrong there.
struct runtimeerror {
    errorkind kind;
    std::string text;
};

// Runs one step of a routine that is meant to go on at the next statement when this one fails. Hand over
// one statement at a time, its assignment last, so that a failed step leaves its target as it was.
// Returns whether the step succeeded; a condition tried this way therefore counts as false when it fails.
template <class step>
bool attempt(step&& run) {
    try {
        run();
        return true;
    } catch (const runtimeerror&) {
        return false;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// Runs a command with a dialog, whose cancel is the end of the command. Returns whether it went to its own
// end.
template <class step>
bool untilcancelled(step&& run) {
    try {
        run();
        return true;
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::cancelled) throw;
        return false;
    }
}

} // namespace orv
