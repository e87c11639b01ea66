// What the records of the two kinds of control points have in common. They differ in their fields.
#ifndef VIREO_PROJECT_CONTROLPOINTDATA_WRAPPER_H
#define VIREO_PROJECT_CONTROLPOINTDATA_WRAPPER_H

#include "defaults.h"

namespace vireo {

// Accessors and properties of the fields up to y, and of those after what tells the kinds apart.
template <class Data>
constexpr auto
    leadingFields = binding::methodTable(binding::noArguments("get_active", binding::operation<&Data::get_active>),
                                         binding::one("set_active", binding::operation<&Data::set_active>),
                                         binding::noArguments("get_corner", binding::operation<&Data::get_corner>),
                                         binding::one("set_corner", binding::operation<&Data::set_corner>),
                                         binding::noArguments("get_x", binding::operation<&Data::get_x>),
                                         binding::one("set_x", binding::operation<&Data::set_x>),
                                         binding::noArguments("get_y", binding::operation<&Data::get_y>),
                                         binding::one("set_y", binding::operation<&Data::set_y>));

template <class Data>
constexpr auto edgeFields =
    binding::methodTable(binding::noArguments("get_edge_width", binding::operation<&Data::get_edge_width>),
                         binding::one("set_edge_width", binding::operation<&Data::set_edge_width>),
                         binding::noArguments("get_edge_angle_ratio", binding::operation<&Data::get_edge_angle_ratio>),
                         binding::one("set_edge_angle_ratio", binding::operation<&Data::set_edge_angle_ratio>));

constexpr binding::Property activeProperty = binding::writable("active", "get_active", "set_active");
constexpr binding::Property cornerProperty = binding::writable("corner", "get_corner", "set_corner");
constexpr binding::Property xProperty = binding::writable("x", "get_x", "set_x");
constexpr binding::Property yProperty = binding::writable("y", "get_y", "set_y");
constexpr binding::Property edgeWidthProperty = binding::writable("edge_width", "get_edge_width", "set_edge_width");
constexpr binding::Property edgeAngleRatioProperty =
    binding::writable("edge_angle_ratio", "get_edge_angle_ratio", "set_edge_angle_ratio");

} // namespace vireo

#endif
