// Converts between variants and the values of parameters. Called without the lock: a variant may hold a Python object,
// and copying it takes the interpreter's lock.
#pragma once

#include <QVariant>
#include <engine/knob/parameter_tree.h>

namespace orrery {

QVariant toVariant(const Knob::Description& description, const Knob::Value& value);

// STRM_BadArgument for a type that the parameter does not take. Ranges are checked elsewhere.
Knob::Value fromVariant(const Knob::Description& description, const QVariant& variant);

} // namespace orrery
