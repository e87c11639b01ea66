// Qt meta-objects made at run time: for Python classes that declare signals, slots and properties, and for signals that
// are added to an object.
#ifndef DYNAMIC_META_OBJECT_H
#define DYNAMIC_META_OBJECT_H

#include <QByteArray>
#include <QEvent>
#include <QMetaObject>
#include <QObject>
#include <atomic>
#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QTimerEvent;
class QChildEvent;
QT_END_NAMESPACE

namespace PySide {

struct DynamicMethod
{
    QByteArray signature;  // normalized: "changed(int,QString)"
    QByteArray resultType; // of a slot; empty for none
};

struct DynamicProperty
{
    QByteArray name;
    QByteArray type;
    bool isWritable;
    QByteArray notifySignal; // signature of a signal of the same meta-object; empty for none
};

struct DynamicMembers
{
    std::vector<DynamicMethod> signalList;
    std::vector<DynamicMethod> slotList;
    std::vector<DynamicProperty> properties;
};

// Immutable. A caller that takes its address must keep it alive.
class DynamicMetaObject
{
public:
    DynamicMetaObject(const QMetaObject* base, const QByteArray& className, const DynamicMembers& members);
    DynamicMetaObject(const DynamicMetaObject&) = delete;
    DynamicMetaObject& operator=(const DynamicMetaObject&) = delete;

    const QMetaObject* metaObject() const { return &m_metaObject; }

private:
    std::vector<uint> m_data;
    std::unique_ptr<char[]> m_strings;
    QMetaObject m_metaObject;
};

// Makes it the meta-object of a QObject that has only its C++ class's, and keeps it as long as the QObject.
void attachMetaObject(QObject* object, std::shared_ptr<const DynamicMetaObject> metaObject);

// The part of a QObject that Python made: what the object's metaObject() returns, and the operations of its C++ class
// without regard to Python overrides. All of it may be used on any thread, without the lock.
class PythonQObject
{
public:
    virtual ~PythonQObject();

    // Null while the C++ class's own is right.
    const QMetaObject* pythonMetaObject() const { return m_metaObject.load(std::memory_order_acquire); }
    void setPythonMetaObject(std::shared_ptr<const DynamicMetaObject> metaObject);

    virtual bool ownEvent(QEvent* event) = 0;
    virtual bool ownEventFilter(QObject* watched, QEvent* event) = 0;
    virtual void ownTimerEvent(QTimerEvent* event) = 0;
    virtual void ownChildEvent(QChildEvent* event) = 0;
    virtual void ownCustomEvent(QEvent* event) = 0;

private:
    std::atomic<const QMetaObject*> m_metaObject{nullptr};
    std::vector<std::shared_ptr<const DynamicMetaObject>> m_kept; // earlier ones too: Qt may have noted them
};

} // namespace PySide

#endif
