// The default view.
#include <knob/view.h>

namespace Knob {

int View::defaultViewId() { return -1; }

} // namespace Knob
