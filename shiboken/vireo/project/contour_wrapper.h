// What the two kinds of contours have in common: all but how a point is inserted.
#ifndef VIREO_PROJECT_CONTOUR_WRAPPER_H
#define VIREO_PROJECT_CONTOUR_WRAPPER_H

#include "defaults.h"

namespace vireo {

template <class Contour>
constexpr auto contourMembers = binding::memberTable(
    binding::one("control_point", binding::operation<&Contour::control_point, binding::NoneForNull>),
    binding::keywords("get_bounding_rect", binding::operation<&Contour::get_bounding_rect>,
                      binding::optional<defaults::ZeroFloat>("time"), binding::optional<defaults::FirstView>("view")),
    binding::noArguments("isNull", binding::lockedOperation<&binding::isNull<Contour>>),
    binding::one("parameter", binding::operation<&Contour::parameter>),
    binding::keywords("parameter_set", binding::operation<&Contour::parameter_set>,
                      binding::optional<defaults::NoNames>("name_components")),
    binding::noArguments("remove", binding::operation<&Contour::remove>),
    binding::property("control_points", binding::operation<&Contour::get_control_points>));

template <class Contour, class TWrapper, const auto& making, const auto& members>
binding::ClassTable contourTable()
{
    binding::ClassTable contour = binding::handleClass<Contour, TWrapper, making, members>();
    contour.compare = &binding::ComparisonOf<Contour, binding::Equal>::compare;
    contour.hash = &binding::hash<Contour>;
    return contour;
}

} // namespace vireo

#endif
