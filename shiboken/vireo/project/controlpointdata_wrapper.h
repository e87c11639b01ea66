// What the records of the two kinds of control points have in common. They differ in their fields.
#ifndef VIREO_PROJECT_CONTROLPOINTDATA_WRAPPER_H
#define VIREO_PROJECT_CONTROLPOINTDATA_WRAPPER_H

#include "defaults.h"

namespace vireo {

// The fields up to y, and those after what tells the kinds apart.
template <class Data>
constexpr auto leadingFields = binding::memberTable(
    binding::property("active", binding::operation<&Data::get_active>, binding::operation<&Data::set_active>),
    binding::property("corner", binding::operation<&Data::get_corner>, binding::operation<&Data::set_corner>),
    binding::property("x", binding::operation<&Data::get_x>, binding::operation<&Data::set_x>),
    binding::property("y", binding::operation<&Data::get_y>, binding::operation<&Data::set_y>));

template <class Data>
constexpr auto edgeFields = binding::memberTable(binding::property("edge_width",
                                                                   binding::operation<&Data::get_edge_width>,
                                                                   binding::operation<&Data::set_edge_width>),
                                                 binding::property("edge_angle_ratio",
                                                                   binding::operation<&Data::get_edge_angle_ratio>,
                                                                   binding::operation<&Data::set_edge_angle_ratio>));

} // namespace vireo

#endif
