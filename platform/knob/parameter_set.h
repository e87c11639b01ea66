// The node of the parameter tree, known to its users by pointer only.
#ifndef KNOB_PARAMETER_SET_H
#define KNOB_PARAMETER_SET_H

namespace Knob {

// A node that holds further nodes, or a leaf that holds one animatable value. The handles Parameter and ParameterSet
// refer to it.
class ParameterSet;

} // namespace Knob

#endif
