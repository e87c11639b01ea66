// Qt meta-objects made at run time: for Python classes that declare signals and slots, and for signals that are added
// to an object.
#ifndef DYNAMIC_META_OBJECT_H
#define DYNAMIC_META_OBJECT_H

#include <QByteArray>
#include <QMetaObject>
#include <atomic>
#include <memory>
#include <vector>

namespace PySide {

struct DynamicMethod
{
    QByteArray signature;  // normalized: "changed(int,QString)"
    QByteArray resultType; // of a slot; empty for none
};

// Immutable. Whoever takes its address must keep it.
class DynamicMetaObject
{
public:
    DynamicMetaObject(const QMetaObject* base, const QByteArray& className,
                      const std::vector<DynamicMethod>& signalList, const std::vector<DynamicMethod>& slotList);
    DynamicMetaObject(const DynamicMetaObject&) = delete;
    DynamicMetaObject& operator=(const DynamicMetaObject&) = delete;

    const QMetaObject* metaObject() const { return &m_metaObject; }

private:
    std::vector<uint> m_data;
    std::unique_ptr<char[]> m_strings;
    QMetaObject m_metaObject;
};

// The part of a QObject that Python made which knows its Python class's meta-object. What such a QObject's metaObject()
// returns, on any thread.
class PythonQObject
{
public:
    virtual ~PythonQObject();
    const QMetaObject* pythonMetaObject() const { return m_metaObject.load(std::memory_order_acquire); }
    void setPythonMetaObject(std::shared_ptr<const DynamicMetaObject> metaObject);

private:
    std::atomic<const QMetaObject*> m_metaObject{nullptr};
    std::vector<std::shared_ptr<const DynamicMetaObject>> m_kept; // earlier ones too: Qt may have noted them
};

} // namespace PySide

#endif
