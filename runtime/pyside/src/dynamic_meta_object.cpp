// The tables that Qt's meta-object compiler would have written, in the layout that all of Qt 5 reads.
#include "dynamic_meta_object.h"

#include "signalmanager.h"

#include <QByteArrayList>
#include <QMetaType>
#include <algorithm>
#include <cstring>
#include <map>

namespace PySide {

namespace {

enum Header {
    Revision,
    ClassName,
    MethodCount = 4,
    MethodData,
    PropertyCount,
    PropertyData,
    SignalCount = 13,
    HeaderSize
};
enum : uint { LayoutRevision = 7, WordsPerMethod = 5, UnresolvedType = 0x80000000 };
enum MethodFlags : uint { PublicSignal = 0x02 | 0x04, PublicSlot = 0x02 | 0x08 };
enum PropertyFlags : uint {
    Readable = 0x01,
    Writable = 0x02,
    Visible = 0x01000 | 0x04000 | 0x10000,
    Notifies = 0x400000
};

// The texts that the tables refer to by number.
class Texts
{
public:
    uint place(const QByteArray& text)
    {
        const auto inserted = m_places.emplace(text, static_cast<uint>(m_texts.size()));
        if (inserted.second)
            m_texts.push_back(text);
        return inserted.first->second;
    }

    // One block: a QByteArrayData per text, then their characters.
    std::unique_ptr<char[]> block() const
    {
        std::size_t size = m_texts.size() * sizeof(QByteArrayData);
        for (const QByteArray& text : m_texts)
            size += text.size() + 1;
        std::unique_ptr<char[]> block(new char[size]);
        QByteArrayData* const headers = reinterpret_cast<QByteArrayData*>(block.get());
        char* characters = block.get() + m_texts.size() * sizeof(QByteArrayData);
        for (std::size_t i = 0; i < m_texts.size(); ++i) {
            const qptrdiff offset = characters - reinterpret_cast<char*>(headers + i);
            new (headers + i)
                QByteArrayData(Q_STATIC_BYTE_ARRAY_DATA_HEADER_INITIALIZER_WITH_OFFSET(m_texts[i].size(), offset));
            std::memcpy(characters, m_texts[i].constData(), m_texts[i].size() + 1);
            characters += m_texts[i].size() + 1;
        }
        return block;
    }

private:
    std::map<QByteArray, uint> m_places;
    std::vector<QByteArray> m_texts;
};

QByteArrayList parameterTypeNames(const QByteArray& signature)
{
    const int open = signature.indexOf('(');
    const QByteArray inner = signature.mid(open + 1, signature.lastIndexOf(')') - open - 1);
    QByteArrayList names;
    int depth = 0, start = 0;
    for (int i = 0; i < inner.size(); ++i) {
        depth += inner[i] == '<' ? 1 : inner[i] == '>' ? -1 : 0;
        if (inner[i] == ',' && depth == 0) {
            names.append(inner.mid(start, i - start));
            start = i + 1;
        }
    }
    if (!inner.isEmpty())
        names.append(inner.mid(start));
    return names;
}

uint typeWord(Texts& texts, const QByteArray& name)
{
    if (name.isEmpty())
        return QMetaType::Void;
    const int type = QMetaType::type(name.constData());
    // Types that are registered later must be found by name then.
    return type != QMetaType::UnknownType && type < QMetaType::User ? type : UnresolvedType | texts.place(name);
}

// Appends the parameters' words, and fills the method's.
void describe(const DynamicMethod& method, uint flags, Texts& texts, std::vector<uint>& data, std::size_t place)
{
    const QByteArrayList types = parameterTypeNames(method.signature);
    const uint noText = texts.place(QByteArray());
    const uint words[WordsPerMethod] = {texts.place(method.signature.left(method.signature.indexOf('('))),
                                        static_cast<uint>(types.size()), static_cast<uint>(data.size()), noText, flags};
    std::memcpy(&data[place], words, sizeof words);
    data.push_back(typeWord(texts, method.resultType));
    for (const QByteArray& type : types)
        data.push_back(typeWord(texts, type));
    data.insert(data.end(), types.size(), noText); // the parameters' names
}

// Behind the properties stand the places of the signals that tell of their changes.
void describe(const DynamicMembers& members, Texts& texts, std::vector<uint>& data)
{
    std::vector<uint> notifiers;
    for (const DynamicProperty& property : members.properties) {
        const auto signal =
            std::find_if(members.signalList.begin(), members.signalList.end(),
                         [&](const DynamicMethod& each) { return each.signature == property.notifySignal; });
        const bool isNotified = signal != members.signalList.end();
        notifiers.push_back(isNotified ? signal - members.signalList.begin() : 0);
        data.insert(data.end(),
                    {texts.place(property.name), typeWord(texts, property.type),
                     Readable | Visible | (property.isWritable ? Writable : 0u) | (isNotified ? Notifies : 0u)});
    }
    data.insert(data.end(), notifiers.begin(), notifiers.end());
}

} // namespace

DynamicMetaObject::DynamicMetaObject(const QMetaObject* base, const QByteArray& className,
                                     const DynamicMembers& members)
    : m_data(HeaderSize + WordsPerMethod * (members.signalList.size() + members.slotList.size()))
{
    Texts texts;
    m_data[Revision] = LayoutRevision;
    m_data[ClassName] = texts.place(className);
    m_data[MethodCount] = members.signalList.size() + members.slotList.size();
    m_data[MethodData] = HeaderSize;
    m_data[SignalCount] = members.signalList.size();
    std::size_t place = HeaderSize;
    for (const DynamicMethod& method : members.signalList) {
        describe(method, PublicSignal, texts, m_data, place);
        place += WordsPerMethod;
    }
    for (const DynamicMethod& method : members.slotList) {
        describe(method, PublicSlot, texts, m_data, place);
        place += WordsPerMethod;
    }
    m_data[PropertyCount] = members.properties.size();
    m_data[PropertyData] = m_data.size();
    describe(members, texts, m_data);
    m_data.push_back(0);
    m_strings = texts.block();
    m_metaObject.d = {base,   reinterpret_cast<const QByteArrayData*>(m_strings.get()), m_data.data(), nullptr, nullptr,
                      nullptr};
}

namespace {

// What Qt asks about an object in place of its class. No public header has it, but all of Qt 5 this layout: the
// meta-object follows the pointer to these virtual functions.
class AttachedMetaObject
{
public:
    explicit AttachedMetaObject(std::shared_ptr<const DynamicMetaObject> kept)
        : m_metaObject(*kept->metaObject()), m_kept(std::move(kept))
    {}
    virtual ~AttachedMetaObject() = default;
    virtual void objectDestroyed(QObject*) { delete this; }
    virtual void* toDynamicMetaObject(QObject*) { return this; }
    virtual int metaCall(QObject* object, QMetaObject::Call call, int id, void** arguments)
    {
        const int left = object->qt_metacall(call, id, arguments);
        return left < 0 ? left : SignalManager::qt_metacall(object, call, id, arguments);
    }

private:
    const QMetaObject m_metaObject;
    const std::shared_ptr<const DynamicMetaObject> m_kept; // the tables that the copy refers to
};
static_assert(QT_VERSION_MAJOR == 5, "another Qt may ask otherwise");

} // namespace

void attachMetaObject(QObject* object, std::shared_ptr<const DynamicMetaObject> metaObject)
{
    struct Protected : QObject
    {
        using QObject::d_ptr;
    };
    QDynamicMetaObjectData*& place = (object->*&Protected::d_ptr)->metaObject;
    if (!place)
        place = reinterpret_cast<QDynamicMetaObjectData*>(new AttachedMetaObject(std::move(metaObject)));
}

PythonQObject::~PythonQObject() = default;

void PythonQObject::setPythonMetaObject(std::shared_ptr<const DynamicMetaObject> metaObject)
{
    m_metaObject.store(metaObject->metaObject(), std::memory_order_release);
    m_kept.push_back(std::move(metaObject));
}

} // namespace PySide
