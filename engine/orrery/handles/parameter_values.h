// Between variants and the values of parameters. No lock is held: a variant may hold a script's object.
#pragma once

#include <QVariant>
#include <engine/knob/parameter_tree.h>

namespace orrery {

QVariant toVariant(const Knob::Description& description, const Knob::Value& value);

// STRM_BadArgument for a type that the parameter does not take. Ranges are checked elsewhere.
Knob::Value fromVariant(const Knob::Description& description, const QVariant& variant);

} // namespace orrery
