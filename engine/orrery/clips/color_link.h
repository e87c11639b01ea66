// Connects a clip to its colour parameters, whose class has one signal and knows nothing of clips.
#pragma once

#include <QObject>
#include <atomic>
#include <engine/clips/data.h>

namespace orrery {

class ColorLink : public QObject
{
    Q_OBJECT

public:
    explicit ColorLink(Clip::Data& clip) : m_clip(clip) {}

    void attach(ColorParameters* parameters)
    {
        connect(parameters, SIGNAL(propertyChanged()), this, SLOT(changed()), Qt::DirectConnection);
        connect(parameters, SIGNAL(destroyed(QObject*)), this, SLOT(gone()), Qt::DirectConnection);
    }
    void detach(ColorParameters* parameters) { disconnect(parameters, nullptr, this, nullptr); }

public slots:
    void changed() { m_clip.colorChanged(); }
    void gone() { m_clip.colorGone(); }

private:
    Clip::Data& m_clip;
};

} // namespace orrery
