// The one SessionState.
#include "shell/sessionstate.h"

namespace orv {

sessionstate SessionState;

} // namespace orv
