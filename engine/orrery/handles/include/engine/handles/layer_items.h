// What the handles of layers and groups have in common: locking, edits, and the settings that both have.
#pragma once

#include <engine/handles/presence.h>
#include <type_traits>
#include <utility>

namespace orrery {

// A layer or group with its project's lock held; throws for one that was removed meanwhile.
template <class Model>
class LockedItem
{
public:
    template <class Base>
    explicit LockedItem(boost::shared_ptr<Base> object)
        : m_object(std::move(object)), m_lock(Stratum::model(*m_object).manager()),
          m_model(m_lock.of(Stratum::model(*m_object)))
    {}

    const Model* operator->() const { return &m_model; }
    const Model& operator*() const { return m_model; }
    int resolve(const View& view) const { return resolveView(*m_lock, view); }

private:
    using Object = std::conditional_t<std::is_same_v<Model, Stratum::LayerModel>, STRM_Layer, Stratum::LayerGroup>;
    const boost::shared_ptr<Object> m_object;
    const Stratum::Reading m_lock;
    const Model& m_model;
};

// An edit of one item; throws for one that was removed.
class ItemEdit : public Stratum::Edit
{
public:
    explicit ItemEdit(Stratum::TreeItem& item) : Edit(item.manager()) { of(item); }
};

// The object of a handle that was passed as an argument: STRM_BadArgument for a null one.
template <class T>
boost::shared_ptr<T> argumentObject(const char* argument, const PyHandle<T>& handle)
{
    try {
        return handle.handledObject();
    } catch (const STRM_BadState&) {
        raise<STRM_BadArgument>(
            QString::fromLatin1("%1: the handle refers to nothing").arg(QString::fromLatin1(argument)));
    }
}

void requireSameProject(const char* argument, const Stratum::TreeItem& item, const STRM_ProjectManager& manager);

// ---- Settings ----

// Checked by the member's row.
template <auto member, class Object, class T>
void assign(const boost::shared_ptr<Object>& object, T value, Stratum::Notices notices = {})
{
    requireField<member>(value);
    auto& item = Stratum::model(*object);
    ItemEdit edit(item);
    edit.assign(item.*member, std::move(value), std::move(notices));
    edit.commit();
}

template <class Object>
void setName(const boost::shared_ptr<Object>& object, const QString& name)
{
    assign<&Stratum::ItemSettings::name>(object, name, Stratum::Notices::layersChanged());
}

template <class Object>
int zOrder(const boost::shared_ptr<Object>& object)
{
    auto& item = Stratum::model(*object);
    const Stratum::Reading reading(item.manager());
    return static_cast<int>(reading.of(item).sequence()->index(item));
}

template <class Object>
void setZOrder(const boost::shared_ptr<Object>& object, int place)
{
    auto& item = Stratum::model(*object);
    ItemEdit edit(item);
    Stratum::reorder(edit, item, place);
    edit.commit();
}

} // namespace orrery
