// The out-of-line members of the platform's base classes, which give each of them one run-time type in the process.
#include <stratum/contour.h>
#include <stratum/layer_base.h>
#include <stratum/vx_clip.h>

namespace Stratum {

LayerBase::LayerBase() : m_parentGroup(nullptr) {}
LayerBase::~LayerBase() = default;
LayerGroup::LayerGroup() = default;
LayerGroup::~LayerGroup() = default;
LayerRoot::LayerRoot() = default;
LayerRoot::~LayerRoot() = default;

ControlPoint::ControlPoint(Contour* contour, unsigned int id) : m_master(nullptr), m_contour(contour), m_id(id) {}
ControlPoint::~ControlPoint() = default;
Contour::Contour(int type) : m_type(type) {}
Contour::~Contour() = default;

} // namespace Stratum

STRM_Layer::STRM_Layer() = default;
STRM_Layer::~STRM_Layer() = default;

VX::IClip::~IClip() = default;
