// What is recorded by hand: functions outside the object model's classes, and what these leave to their libraries.
#include "call.h"

#include <atomic>
#include <engine/embedding.h>
#include <engine/handles/destruction_hook.h>
#include <knob/time.h>
#include <listener.h>
#include <orrery/point_constraint.h>
#include <orrery/py_type_error.h>
#include <orrery/start_up.h>
#include <stratum/error_detector.h>

using recording::answer;
using recording::call;

namespace {

std::atomic<orrery::DestructionHook> hook{nullptr};

} // namespace

void recording::gone(void* object, const char* name)
{
    orrery::tellDestruction(object);
    end(object, name);
}

// A change of colour parameters is noted as the signal that tells it.
void recording::begin(ColorParameters* object, const char* name)
{
    begin<ColorParameters>(object, name);
    auto* const told = new Listener(*object, SIGNAL(propertyChanged()),
                                    [object] { call("ColorParameters.propertyChanged", *object); });
    told->setParent(object);
}

// The part of the library that knows the binding runtime is the real one: from pyBootstrap() to pyCleanup() it has this
// hook.
// Nothing takes long here.
bool orrery::cancelOperations() { return false; }
void orrery::setOperationEndHook(void (*)(bool)) {}

void orrery::setDestructionHook(DestructionHook given)
{
    call(given ? "pyBootstrap" : "pyCleanup");
    hook = given;
}

void orrery::tellDestruction(void* object) noexcept
{
    if (const DestructionHook told = hook)
        told(object);
}

Project* getCurrentProject() { return call("getCurrentProject"); }

bool isEmbedded() { return call("isEmbedded"); }

void Python::setPointConstraint(boost::shared_ptr<Stratum::ControlPoint> master,
                                boost::shared_ptr<Stratum::ControlPoint> point, STRM_ProjectManager* manager,
                                const Knob::Context& context, bool lock_tangents)
{
    call("Python.setPointConstraint", master, point, manager, context, lock_tangents);
}

int Knob::View::defaultViewId() { return answer(7, "Knob::View.defaultViewId"); }

double Knob::Time::fromDouble(double frames) { return answer(frames, "Knob::Time.fromDouble", frames); }

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

PyTypeError::~PyTypeError() noexcept = default;

SbkCleaner::~SbkCleaner() = default;

RenderOperation::RenderOperation() = default;

VX::IClip* RenderInsertOperation::onRender(STRM_ProjectManager&, int, int, QVector<Layer>, View) { return nullptr; }

VX::IClip* RenderRemoveOperation::onRender(STRM_ProjectManager&, int, int, QVector<Layer>, View) { return nullptr; }

VX::IClip* RenderStabilizeOperation::onRender(STRM_ProjectManager&, int, int, QVector<Layer>, View) { return nullptr; }
