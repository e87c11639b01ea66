// The hidden companion of a QObject. A user-data slot of QObject carries it: that one is deleted at the very end of the
// QObject's destruction, and unlike a dynamic property or a child no script sees it.
#include "object_life.h"

#include "signal_hub.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations" // user data, which Qt 6 will not have

namespace PySide {

namespace {

class Companion : public QObjectUserData
{
public:
    explicit Companion(QObject* object) : m_object(object) {}
    ~Companion() override
    {
        if (!isPythonAlive())
            return;
        const Shiboken::GilState lock;
        const ErrorAside aside;
        m_life.hub.reset();
        Shiboken::BindingManager& manager = Shiboken::BindingManager::instance();
        if (SbkObject* const wrapper = manager.retrieveWrapper(m_object))
            Shiboken::Object::destroy(wrapper, m_object);
    }

    ObjectLife& life() { return m_life; }

private:
    void* const m_object; // only its address is good for anything by then
    ObjectLife m_life;
};

uint slot()
{
    static const uint slot = QObject::registerUserData();
    return slot;
}

} // namespace

ObjectLife::ObjectLife() = default;
ObjectLife::~ObjectLife() = default;

ObjectLife* ObjectLife::find(const QObject* object)
{
    QObjectUserData* const data = object->userData(slot());
    return data ? &static_cast<Companion*>(data)->life() : nullptr;
}

ObjectLife& ObjectLife::of(QObject* object)
{
    if (ObjectLife* const life = find(object))
        return *life;
    Companion* const companion = new Companion(object);
    object->setUserData(slot(), companion);
    return companion->life();
}

} // namespace PySide
