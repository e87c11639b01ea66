// How the pixel values of a clip are to be understood.
#ifndef ORRERY_COLOR_PARAMETERS_H
#define ORRERY_COLOR_PARAMETERS_H

#include <QObject>
#include <orrery/enumerations.h>
#include <orrery/sbk_cleaner.h>

class ColorParameters : public QObject, private SbkCleaner
{
    Q_OBJECT

public:
    ColorParameters(Colorspace colorspace, ColorConversion conversion, float offset, float softclip,
                    float log_reference_white, float log_reference_black, float gamma);
    ~ColorParameters();

    // Of the footage. Converts nothing by itself: that is asked for by the conversion.
    Colorspace get_colorspace() const { return m_colorspace; }
    void set_colorspace(Colorspace colorspace) { change(m_colorspace, colorspace); }

    // To linear light, as floating point or rounded to 256 levels. With NoneConversion the values stay as they stand in
    // the file, whatever the colour space.
    ColorConversion get_conversion() const { return m_conversion; }
    void set_conversion(ColorConversion conversion) { change(m_conversion, conversion); }

    // Added to the linear value after a log conversion.
    float get_offset() const { return m_offset; }
    void set_offset(float offset) { change(m_offset, offset); }

    // Code values below the reference white from which highlights are compressed; 0 for none, and less than
    // from the reference black to the reference white.
    float get_softclip() const { return m_softclip; }
    void set_softclip(float softclip) { change(m_softclip, softclip); }

    // The 10-bit code value, 0 to 1023, that becomes 1.
    float get_log_reference_white() const { return m_log_reference_white; }
    void set_log_reference_white(float white) { change(m_log_reference_white, white); }
    // The 10-bit code value, 0 to 1023, that becomes 0; below the reference white.
    float get_log_reference_black() const { return m_log_reference_black; }
    void set_log_reference_black(float black) { change(m_log_reference_black, black); }

    // The gamma of the log conversion; greater than 0.
    float get_gamma() const { return m_gamma; }
    void set_gamma(float gamma) { change(m_gamma, gamma); }

    // Equal when all seven settings are.
    bool operator==(const ColorParameters& other) const;
    bool operator!=(const ColorParameters& other) const;

signals:
    // A setting was written, whether or not its value changed.
    void propertyChanged();

private:
    template <class T>
    void change(T& field, T value)
    {
        field = value;
        emit propertyChanged();
    }

    Colorspace m_colorspace;
    ColorConversion m_conversion;
    float m_offset;
    float m_softclip;
    float m_log_reference_white;
    float m_log_reference_black;
    float m_gamma;
};

#endif
