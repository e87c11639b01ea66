// The planar transform that takes one quadrangle to another.
#pragma once

#include <engine/stratum/tree.h>
#include <fundo/lum_matrix33.h>

namespace Stratum {

// Scaled so that its last component is 1. The identity where either is no proper quadrangle.
Lum_Matrix33 transformBetween(const Corners& from, const Corners& to);

} // namespace Stratum
