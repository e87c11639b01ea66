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

constexpr auto methods =
    methodTable(noArguments("get_colorspace", operation<&ColorParameters::get_colorspace>),
                one("set_colorspace", operation<&ColorParameters::set_colorspace>),
                noArguments("get_conversion", operation<&ColorParameters::get_conversion>),
                one("set_conversion", operation<&ColorParameters::set_conversion>),
                noArguments("get_offset", operation<&ColorParameters::get_offset>),
                one("set_offset", operation<&ColorParameters::set_offset>),
                noArguments("get_softclip", operation<&ColorParameters::get_softclip>),
                one("set_softclip", operation<&ColorParameters::set_softclip>),
                noArguments("get_log_reference_white", operation<&ColorParameters::get_log_reference_white>),
                one("set_log_reference_white", operation<&ColorParameters::set_log_reference_white>),
                noArguments("get_log_reference_black", operation<&ColorParameters::get_log_reference_black>),
                one("set_log_reference_black", operation<&ColorParameters::set_log_reference_black>),
                noArguments("get_gamma", operation<&ColorParameters::get_gamma>),
                one("set_gamma", operation<&ColorParameters::set_gamma>));

constexpr Property properties[] = {
    writable("colorspace", "get_colorspace", "set_colorspace"),
    writable("conversion", "get_conversion", "set_conversion"),
    writable("offset", "get_offset", "set_offset"),
    writable("softclip", "get_softclip", "set_softclip"),
    writable("log_reference_white", "get_log_reference_white", "set_log_reference_white"),
    writable("log_reference_black", "get_log_reference_black", "set_log_reference_black"),
    writable("gamma", "get_gamma", "set_gamma"),
};

// The type's own name, which for a Python subclass is the subclass's, and the seven settings.
PyObject* represent(PyObject* self)
{
    const ColorParameters* const parameters =
        static_cast<const ColorParameters*>(libraryObject(self, Wrapped<ColorParameters>::type()));
    if (!parameters)
        return nullptr;
    QString text = QString::fromLatin1("%1(%2, %3")
                       .arg(QString::fromLatin1(Py_TYPE(self)->tp_name))
                       .arg(int(parameters->get_colorspace()))
                       .arg(int(parameters->get_conversion()));
    for (const float setting :
         {parameters->get_offset(), parameters->get_softclip(), parameters->get_log_reference_white(),
          parameters->get_log_reference_black(), parameters->get_gamma()})
        text += QString::fromLatin1(", %1").arg(double(setting), 0, 'f', 6);
    text += QLatin1Char(')');
    return PyString_FromString(text.toLocal8Bit().constData());
}

} // namespace

void vireo::registerColorParameters(PyObject* module)
{
    ClassTable parameters = qtObjectClass<ColorParameters, ColorParametersWrapper, making, methods>();
    parameters.compare = &ComparisonOf<ColorParameters, Equal | NotEqual>::compare;
    parameters.repr = &represent;
    setProperties(parameters, properties);
    registerClass(module, parameters);
}
