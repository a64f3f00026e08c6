// A hand for boxes and dialogs where nobody sits: the tour and the windows' tests. What is expected stands in
// one queue, in order; every few milliseconds the modal window in front is looked at, and the head of the
// queue is done with it. A window that nothing is expected of, and an expectation whose window does not come
// while another one waits, counts as a failure after 5 s: the window is cancelled.
#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace orv::answers {

// Looked at before an answer is given, to take a picture for instance.
using look = std::function<void(QWidget&)>;

// Begins watching. `failed` is told what went wrong, in a sentence.
void watch(std::function<void(const std::string&)> failed);

// Stops watching. Returns what is still expected, one line each.
std::vector<std::string> stop();

// The next window is a message box whose title or text holds `fragment` (code page 1252).
void expectbox(std::string fragment, platform::answer given, look before = {});

// ... a file dialog whose title holds `fragment`; answered with a path, or cancelled for an empty one.
void expectfile(std::string fragment, std::string path, look before = {});

// ... the colour dialog, answered with a colour 0x00BBGGRR.
void expectcolour(std::int32_t colour);

// ... the print dialog, answered by printing to a PDF file, or cancelled for an empty path.
void expectprint(std::string path, look before = {});

// ... any other window, by its object name; `inside` is to close it in the end.
void expectwindow(std::string name, look inside);

} // namespace orv::answers
