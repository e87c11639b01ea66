// The tables of engine objects, and the engine's classes that have no behaviour of their own.
#include "engine_objects.h"

#include "call.h"

#include <knob/time.h>
#include <knob/view.h>
#include <map>
#include <mutex>
#include <stratum/error_detector.h>
#include <stratum/vx_clip.h>

namespace recording {

namespace {

struct Root : Stratum::LayerRoot
{};

struct Engine
{
    std::mutex mutex;
    boost::shared_ptr<STRM_ProjectManager> manager = boost::make_shared<STRM_ProjectManager>();
    Root root;
    std::map<int, boost::shared_ptr<EngineLayer>> layers;
    std::map<int, boost::shared_ptr<EngineGroup>> groups;
    std::map<int, boost::shared_ptr<EngineContour>> contours;
    std::map<int, boost::shared_ptr<EnginePoint>> points;
    std::map<int, boost::shared_ptr<Knob::ParameterSet>> parameters;
};

Engine& engine()
{
    static Engine* const one = new Engine;
    return *one;
}

template <class T, class... More>
boost::shared_ptr<T> found(std::map<int, boost::shared_ptr<T>>& table, int number, const More&... more)
{
    const std::lock_guard lock(engine().mutex);
    if (!number)
        return {};
    boost::shared_ptr<T>& object = table[number];
    if (!object)
        object = boost::make_shared<T>(number, more...);
    return object;
}

} // namespace

boost::shared_ptr<EngineLayer> engineLayer(int number) { return found(engine().layers, number); }

boost::shared_ptr<EngineGroup> engineGroup(int number) { return found(engine().groups, number); }

boost::shared_ptr<EngineContour> engineContour(int number, int type) { return found(engine().contours, number, type); }

boost::shared_ptr<EnginePoint> enginePoint(int number, int contour, int type)
{
    return number ? found(engine().points, number, engineContour(contour, type).get()) : nullptr;
}

boost::shared_ptr<Knob::ParameterSet> engineParameter(int number) { return found(engine().parameters, number); }

Stratum::LayerGroup* engineRoot() { return &engine().root; }

boost::weak_ptr<STRM_ProjectManager> manager()
{
    const std::lock_guard lock(engine().mutex);
    return engine().manager;
}

void setManager(bool there)
{
    const std::lock_guard lock(engine().mutex);
    engine().manager = there ? boost::make_shared<STRM_ProjectManager>() : nullptr;
}

void forgetEngine()
{
    const std::lock_guard lock(engine().mutex);
    engine().layers.clear();
    engine().groups.clear();
    engine().points.clear();
    engine().contours.clear();
    engine().parameters.clear();
    engine().manager = boost::make_shared<STRM_ProjectManager>();
}

boost::shared_ptr<Stratum::ControlPoint> EngineContour::pointByID(unsigned int id)
{
    call("Contour.pointByID", number, id);
    return enginePoint(static_cast<int>(id), number, type());
}

} // namespace recording

using recording::call;

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

STRM_ErrorDetector::~STRM_ErrorDetector() = default;

void STRM_ErrorDetector::reportAssertion(int reserved, const QString& file, int line, const QString& condition,
                                         const QString& message)
{
    call("STRM_ErrorDetector.reportAssertion", reserved, file, line, condition, message);
}

bool STRM_ErrorDetector::init() { return call("STRM_ErrorDetector.init"); }

void STRM_ErrorDetector::setFullErrorDetection(bool full, bool fatal)
{
    call("STRM_ErrorDetector.setFullErrorDetection", full, fatal);
}

STRM_ErrorDetector* STRM_ErrorDetector::instance()
{
    static STRM_ErrorDetector one;
    return &one;
}

namespace Knob {

int View::defaultViewId() { return recording::answer(7, "Knob::View.defaultViewId"); }

double Time::fromDouble(double frames) { return recording::answer(frames, "Knob::Time.fromDouble", frames); }

} // namespace Knob
