// What is behind a Clip: its model, the manager that guards it, and the objects that scripts can see and the clip owns.
#pragma once

#include <QPointer>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <engine/clips/model.h>
#include <functional>
#include <memory>
#include <orrery/clip.h>
#include <orrery/color_parameters.h>

namespace orrery {

class ColorLink;

ColorSettings settingsOf(const ColorParameters& parameters);
// Emits the object's signal for each setting that differs.
void writeSettings(ColorParameters& parameters, const ColorSettings& settings);

} // namespace orrery

namespace orrery {

// Whose a clip is: is told before the clip is gone, by whoever destroys it.
class ClipOwner
{
public:
    virtual void forget(Clip& clip) = 0;

protected:
    ~ClipOwner() = default;
};

} // namespace orrery

// A clip that belongs to no project has a manager of its own, so that everything else is the same for both.
struct Clip::Data : Stratum::Listener
{
    explicit Data(Clip& clip);
    ~Data();

    // For a clip that no other thread can reach yet: from now on the project's manager guards it.
    void moveTo(const boost::shared_ptr<STRM_ProjectManager>& projectManager, orrery::ClipState state);

    // Calls the function with a copy of the state, under the lock and in an edit, and makes the modified copy the
    // clip's state. The signals that the notices stand for are emitted once the lock is released.
    void change(const std::function<void(orrery::ClipState&)>& function, const Stratum::Notices& notices);
    orrery::ClipState state() const; // takes the lock
    Stratum::Notices settingChanged(const char* property);
    Stratum::Notices streamsChanged();

    // Listener of a manager of its own: calls what is to be called.
    void announce(const Stratum::Notices& notices) override;

    // ---- Colour parameters: the object follows the model's settings, and they follow it ----

    ColorParameters* colorParameters();
    void adopt(ColorParameters* parameters); // owned by the caller unless this returns
    void colorChanged();                     // by a script, through the object
    void colorGone();                        // somebody destroyed it
    void showColor();                        // in the object, after undo

    Clip& clip;
    const unsigned int id;
    bool detached = true;
    orrery::ClipOwner* owner = nullptr; // outlives the clip
    boost::shared_ptr<STRM_ProjectManager> manager;
    boost::shared_ptr<orrery::ClipModel> model;
    const QPointer<ProgressWatcher> progressWatcher; // owned; null once a script destroyed it

private:
    // Called as long as the clip is there: its history outlives one that a script destroys.
    Stratum::Notices whileAlive(std::function<void()> call);
    ColorParameters* exchange(ColorParameters* parameters);
    void destroy(ColorParameters* parameters); // null: nothing

    const std::unique_ptr<orrery::ColorLink> m_colorLink;
    std::mutex m_colorMutex; // guards the pointer; nothing is called while it is held
    ColorParameters* m_color = nullptr;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};
