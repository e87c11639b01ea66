// The tables of engine objects, and the handles' way to them.
#include "engine_objects.h"

#include "call.h"

#include <boost/core/demangle.hpp>
#include <map>
#include <mutex>
#include <stratum/exception.h>
#include <tuple>

namespace recording {

namespace {

struct Root : Stratum::LayerRoot
{};

template <class T>
using Table = std::map<int, boost::shared_ptr<T>>;

struct Engine
{
    std::mutex mutex;
    boost::shared_ptr<STRM_ProjectManager> manager = boost::make_shared<STRM_ProjectManager>();
    Root root;
    std::tuple<Table<EngineLayer>, Table<EngineGroup>, Table<EngineContour>, Table<EnginePoint>,
               Table<Knob::ParameterSet>>
        tables;
};

Engine& engine()
{
    static Engine* const one = new Engine;
    return *one;
}

template <class T, class... More>
boost::shared_ptr<T> found(int number, const More&... more)
{
    const std::lock_guard lock(engine().mutex);
    if (!number)
        return {};
    boost::shared_ptr<T>& object = std::get<Table<T>>(engine().tables)[number];
    if (!object)
        object = boost::make_shared<T>(number, more...);
    return object;
}

} // namespace

boost::shared_ptr<EngineLayer> engineLayer(int number) { return found<EngineLayer>(number); }

boost::shared_ptr<EngineGroup> engineGroup(int number) { return found<EngineGroup>(number); }

boost::shared_ptr<EngineContour> engineContour(int number, int type) { return found<EngineContour>(number, type); }

boost::shared_ptr<EnginePoint> enginePoint(int number, int contour, int type)
{
    return number ? found<EnginePoint>(number, engineContour(contour, type).get()) : nullptr;
}

boost::shared_ptr<Knob::ParameterSet> engineParameter(int number) { return found<Knob::ParameterSet>(number); }

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
    setManager(true);
    const std::lock_guard lock(engine().mutex);
    engine().tables = {};
}

boost::shared_ptr<Stratum::ControlPoint> EngineContour::pointByID(unsigned int id)
{
    call("Contour.pointByID", number, id);
    return enginePoint(static_cast<int>(id), number, type());
}

} // namespace recording

using namespace recording;

template <class T>
PyHandle<T>::PyHandle() = default;

template <class T>
PyHandle<T>::PyHandle(boost::shared_ptr<T> object, boost::weak_ptr<STRM_ProjectManager> manager)
    : m_object(object), m_manager(manager)
{}

template <class T>
PyHandle<T>::~PyHandle() = default;

template <class T>
boost::shared_ptr<T> PyHandle<T>::handledObject() const
{
    static const std::string name = boost::core::demangle(typeid(T).name()) + ".handledObject";
    const auto object = m_object.lock();
    call(name.c_str(), object);
    if (!object && !Silence::now())
        throw STRM_BadState("recording", 1, "Invalid object", "Invalid object");
    return object;
}

template class PyHandle<STRM_Layer>;
template class PyHandle<Stratum::LayerGroup>;
template class PyHandle<Stratum::Contour>;
template class PyHandle<Stratum::ControlPoint>;
template class PyHandle<Knob::ParameterSet>;
