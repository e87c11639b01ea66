// ColorParameters: how the pixel values of a clip are to be understood.
#include "defaults.h"

using namespace binding;

class ColorParametersWrapper : public QtDispatch<ColorParameters>
{
public:
    using QtDispatch::QtDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(
    Form::Uncounted,
    signature(constructs<ColorParametersWrapper, Colorspace, ColorConversion, float, float, float, float, float>,
              optional<Linear>("colorspace"), optional<Unconverted>("conversion"), optional<ZeroFloat>("offset"),
              optional<ZeroFloat>("softclip"), optional<ReferenceWhite>("log_reference_white"),
              optional<ZeroFloat>("log_reference_black"), optional<OneFloat>("gamma")));

constexpr auto members = memberTable(
    property("colorspace", operation<&ColorParameters::get_colorspace>, operation<&ColorParameters::set_colorspace>),
    property("conversion", operation<&ColorParameters::get_conversion>, operation<&ColorParameters::set_conversion>),
    property("offset", operation<&ColorParameters::get_offset>, operation<&ColorParameters::set_offset>),
    property("softclip", operation<&ColorParameters::get_softclip>, operation<&ColorParameters::set_softclip>),
    property("log_reference_white", operation<&ColorParameters::get_log_reference_white>,
             operation<&ColorParameters::set_log_reference_white>),
    property("log_reference_black", operation<&ColorParameters::get_log_reference_black>,
             operation<&ColorParameters::set_log_reference_black>),
    property("gamma", operation<&ColorParameters::get_gamma>, operation<&ColorParameters::set_gamma>));

// The type's own name, which for a Python subclass is the subclass's, and the seven settings.
PyObject* represent(PyObject* self)
{
    const ColorParameters* const parameters =
        static_cast<const ColorParameters*>(libraryObject(self, Wrapped<ColorParameters>::type()));
    if (!parameters)
        return nullptr;
    QString text = QString::fromLatin1("%1(%2, %3")
                       .arg(QString::fromLatin1(Py_TYPE(self)->tp_name), QString::number(parameters->get_colorspace()),
                            QString::number(parameters->get_conversion()));
    for (const float setting :
         {parameters->get_offset(), parameters->get_softclip(), parameters->get_log_reference_white(),
          parameters->get_log_reference_black(), parameters->get_gamma()})
        text += QString::fromLatin1(", %1").arg(double(setting), 0, 'f', 6);
    text += QLatin1Char(')');
    return PyString_FromString(text.toLocal8Bit().constData());
}

} // namespace

template <>
ClassTable vireo::tableOf<ColorParameters>()
{
    ClassTable parameters = qtObjectClass<ColorParameters, ColorParametersWrapper, making, members>();
    parameters.compare = &ComparisonOf<ColorParameters, Equal | NotEqual>::compare;
    parameters.repr = &represent;
    return parameters;
}
