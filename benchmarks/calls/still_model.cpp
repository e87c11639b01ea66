// The model with nothing behind the measured operations: put before the library's own, so that what is measured is the
// way to the library and back.
#include <orrery/clip.h>
#include <orrery/layer.h>
#include <orrery/project.h>
#include <stratum/exception.h>

namespace {

constexpr int layerCount = 1000;

} // namespace

void Clip::add_stream(const QString&, View, unsigned int, unsigned int, bool) {}

void Clip::assign_project_view(View, View) {}

float Clip::get_frame_rate() const { return 24.f; }

void Clip::set_frame_rate(float) {}

bool Layer::isNull() const { return false; }

BezierContour Layer::add_bezier_contour(float, const QVector<BezierControlPointData>&, View) { return BezierContour(); }

int Layer::get_z_order() const { throw STRM_BadState(__FILE__, __LINE__, "Invalid object", "Invalid object"); }

QVector<Layer> Project::get_layers()
{
    static const QVector<Layer> layers(layerCount);
    return layers;
}
