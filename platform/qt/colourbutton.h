// A button that shows a colour. For Qt files only.
#pragma once

#include <cstdint>

class QAbstractButton;

namespace orv {

// Fills the button's icon with a colour 0x00BBGGRR.
void showcolour(QAbstractButton& button, std::int32_t colour);

} // namespace orv
