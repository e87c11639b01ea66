// The engine's objects behind the recorded handles: each is a number, made when it is first asked for, with just the
// links that can be read directly.
#pragma once

#include <boost/make_shared.hpp>
#include <knob/parameter_set.h>
#include <stratum/contour.h>
#include <stratum/layer_base.h>
#include <stratum/project_manager.h>

class STRM_ProjectManager
{};

class Knob::ParameterSet
{
public:
    explicit ParameterSet(int number) : number(number) {}
    const int number;
};

struct UndoGroupData
{
    int number;
};

namespace recording {

struct EngineLayer : STRM_Layer
{
    explicit EngineLayer(int number) : number(number) {}
    void setParent(Stratum::LayerGroup* group) { m_parentGroup = group; }
    const int number;
};

struct EngineGroup : Stratum::LayerGroup
{
    explicit EngineGroup(int number) : number(number) {}
    const int number;
};

struct EngineContour : Stratum::Contour
{
    EngineContour(int number, int type) : Stratum::Contour(type), number(number) {}
    boost::shared_ptr<Stratum::ControlPoint> pointByID(unsigned int id) override;
    const int number;
};

struct EnginePoint : Stratum::ControlPoint
{
    EnginePoint(int number, Stratum::Contour* contour) : Stratum::ControlPoint(contour, number), number(number) {}
    void setMaster(Stratum::ControlPoint* master) { m_master = master; }
    const int number;
};

// Null for 0.
boost::shared_ptr<EngineLayer> engineLayer(int number);
boost::shared_ptr<EngineGroup> engineGroup(int number);
boost::shared_ptr<EngineContour> engineContour(int number, int type);          // the type counts when it is made
boost::shared_ptr<EnginePoint> enginePoint(int number, int contour, int type); // and so do the contour and its type
boost::shared_ptr<Knob::ParameterSet> engineParameter(int number);
Stratum::LayerGroup* engineRoot();

inline int numberOf(const STRM_Layer& layer) { return static_cast<const EngineLayer&>(layer).number; }
inline int numberOf(const Stratum::LayerGroup& group) { return static_cast<const EngineGroup&>(group).number; }
inline int numberOf(const Stratum::Contour& contour) { return static_cast<const EngineContour&>(contour).number; }
inline int numberOf(const Stratum::ControlPoint& point) { return static_cast<const EnginePoint&>(point).number; }
inline int numberOf(const Knob::ParameterSet& set) { return set.number; }
inline int numberOf(const UndoGroupData& group) { return group.number; }

// The project's manager; all handles refer to the same one. Without it, projectManager() gives an expired pointer.
boost::weak_ptr<STRM_ProjectManager> manager();
void setManager(bool there);

void forgetEngine(); // all objects go, and a new manager comes

} // namespace recording
