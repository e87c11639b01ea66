// ColorParameters: plain settings. A clip learns of changes from the object's signal.

#include <engine/handles/destruction_hook.h>
#include <orrery/color_parameters.h>

ColorParameters::ColorParameters(Colorspace colorspace, ColorConversion conversion, float offset, float softclip,
                                 float log_reference_white, float log_reference_black, float gamma)
    : m_colorspace(colorspace), m_conversion(conversion), m_offset(offset), m_softclip(softclip),
      m_log_reference_white(log_reference_white), m_log_reference_black(log_reference_black), m_gamma(gamma)
{}

ColorParameters::~ColorParameters()
{
    orrery::tellDestruction(this);
    setParent(nullptr);
}

bool ColorParameters::operator==(const ColorParameters& other) const
{
    return m_colorspace == other.m_colorspace && m_conversion == other.m_conversion && m_offset == other.m_offset &&
           m_softclip == other.m_softclip && m_log_reference_white == other.m_log_reference_white &&
           m_log_reference_black == other.m_log_reference_black && m_gamma == other.m_gamma;
}

bool ColorParameters::operator!=(const ColorParameters& other) const { return !(*this == other); }
