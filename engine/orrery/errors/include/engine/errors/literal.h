// Texts as a script writes them, for representations that can be typed again.
#pragma once

#include <QString>

namespace orrery {

// A literal in plain ASCII: 'left', 'it\'s', u'\xe4'.
QString literal(const QString& text);

} // namespace orrery
