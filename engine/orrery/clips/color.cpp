// A clip's colour parameters: the settings are the model's, with undo and saving; the object that scripts hold shows
// them and reports what scripts change.

#include "color_link.h"

#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/handles/announcement.h>
#include <map>
#include <mutex>

namespace orrery {
namespace {

// Which clip has adopted which object: an object serves one clip only.
class Owners
{
public:
    bool claim(const ColorParameters* parameters, const Clip::Data* clip)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_owners.emplace(parameters, clip).second;
    }

    void release(const ColorParameters* parameters)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_owners.erase(parameters);
    }

private:
    std::mutex m_mutex;
    std::map<const ColorParameters*, const Clip::Data*> m_owners;
};

Owners& owners()
{
    static Owners all;
    return all;
}

// The object that this thread is updating from the model: its signals report nothing that the model does not know.
thread_local const ColorParameters* shown = nullptr;

class Showing
{
public:
    explicit Showing(const ColorParameters* parameters) : m_before(shown) { shown = parameters; }
    ~Showing() { shown = m_before; }
    Showing(const Showing&) = delete;
    Showing& operator=(const Showing&) = delete;

private:
    const ColorParameters* const m_before;
};

ColorParameters* newParameters(const ColorSettings& settings)
{
    return new ColorParameters(static_cast<Colorspace>(settings.colorspace),
                               static_cast<ColorConversion>(settings.conversion), settings.offset, settings.softclip,
                               settings.logReferenceWhite, settings.logReferenceBlack, settings.gamma);
}

} // namespace

ColorSettings settingsOf(const ColorParameters& parameters)
{
    return {parameters.get_colorspace(), parameters.get_conversion(),          parameters.get_offset(),
            parameters.get_softclip(),   parameters.get_log_reference_white(), parameters.get_log_reference_black(),
            parameters.get_gamma()};
}

void writeSettings(ColorParameters& parameters, const ColorSettings& settings)
{
    const ColorSettings now = settingsOf(parameters);
    const Announcement announcement(parameters);
    if (now.colorspace != settings.colorspace)
        announcement([&] { parameters.set_colorspace(static_cast<Colorspace>(settings.colorspace)); });
    if (now.conversion != settings.conversion)
        announcement([&] { parameters.set_conversion(static_cast<ColorConversion>(settings.conversion)); });
    if (now.offset != settings.offset)
        announcement([&] { parameters.set_offset(settings.offset); });
    if (now.softclip != settings.softclip)
        announcement([&] { parameters.set_softclip(settings.softclip); });
    if (now.logReferenceWhite != settings.logReferenceWhite)
        announcement([&] { parameters.set_log_reference_white(settings.logReferenceWhite); });
    if (now.logReferenceBlack != settings.logReferenceBlack)
        announcement([&] { parameters.set_log_reference_black(settings.logReferenceBlack); });
    if (now.gamma != settings.gamma)
        announcement([&] { parameters.set_gamma(settings.gamma); });
}

} // namespace orrery

using namespace orrery;

ColorParameters* Clip::Data::exchange(ColorParameters* parameters)
{
    std::lock_guard<std::mutex> lock(m_colorMutex);
    std::swap(m_color, parameters);
    return parameters;
}

ColorParameters* Clip::Data::colorParameters()
{
    {
        std::lock_guard<std::mutex> lock(m_colorMutex);
        if (m_color)
            return m_color;
    }
    // Most clips are never asked for the object; and somebody may have destroyed it.
    std::unique_ptr<ColorParameters> made(newParameters(state().color));
    std::unique_lock<std::mutex> lock(m_colorMutex);
    if (!m_color) {
        owners().claim(made.get(), this);
        m_colorLink->attach(made.get());
        m_color = made.release();
    }
    return m_color;
}

void Clip::Data::adopt(ColorParameters* parameters)
{
    if (parameters && parameters == colorParameters())
        return;
    std::unique_ptr<ColorParameters> made;
    if (!parameters) {
        made.reset(newParameters(ColorSettings()));
        parameters = made.get();
    }
    if (!owners().claim(parameters, this))
        raise<STRM_BadArgument>(text("The colour parameters belong to another clip"));
    m_colorLink->attach(parameters);
    ColorParameters* const former = exchange(parameters);
    const QPointer<ColorParameters> replaced = former;
    if (replaced)
        m_colorLink->detach(replaced);
    // Whoever is told may destroy the clip, which owns the new object by then; the old one is nobody's any more.
    const bool ownMade = made.release();
    try {
        const ColorSettings settings = settingsOf(*parameters);
        change([&settings](ClipState& state) { state.color = settings; }, settingChanged("color_parameters"));
    } catch (...) { // before anybody was told
        if (former)
            m_colorLink->attach(former);
        exchange(former);
        m_colorLink->detach(parameters);
        owners().release(parameters);
        if (ownMade)
            delete parameters;
        throw;
    }
    owners().release(former);
    delete replaced;
}

void Clip::Data::destroy(ColorParameters* parameters)
{
    if (!parameters)
        return;
    m_colorLink->detach(parameters);
    owners().release(parameters);
    delete parameters;
}

void Clip::Data::colorChanged()
{
    ColorParameters* parameters;
    {
        std::lock_guard<std::mutex> lock(m_colorMutex);
        parameters = m_color;
    }
    if (!parameters || shown == parameters)
        return;
    const ColorSettings settings = settingsOf(*parameters);
    change([&settings](ClipState& state) { state.color = settings; }, settingChanged("color_parameters"));
}

void Clip::Data::colorGone()
{
    if (ColorParameters* gone = exchange(nullptr))
        owners().release(gone);
}

void Clip::Data::showColor()
{
    const ColorSettings settings = state().color;
    ColorParameters* parameters;
    {
        std::lock_guard<std::mutex> lock(m_colorMutex);
        parameters = m_color;
    }
    if (!parameters)
        return;
    Showing showing(parameters);
    writeSettings(*parameters, settings);
}
