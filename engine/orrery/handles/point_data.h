// Between the records that scripts pass and the engine's values of points.
#pragma once

#include <engine/stratum/shapes.h>
#include <orrery/control_point_data.h>

namespace orrery {

Stratum::PointValues valuesOf(const BezierControlPointData& record);
Stratum::PointValues valuesOf(const XControlPointData& record);

void write(const Stratum::PointState& state, BezierControlPointData& record);
void write(const Stratum::PointState& state, XControlPointData& record);

} // namespace orrery
