// Finding objects by their numbers, where every object that ever was is kept in the order of its number.
#pragma once

#include <algorithm>
#include <boost/shared_ptr.hpp>
#include <vector>

namespace Stratum {

// Null when there never was one.
template <class Object>
Object* withId(const std::vector<boost::shared_ptr<Object>>& objects, unsigned int id)
{
    const auto found = std::lower_bound(objects.begin(), objects.end(), id,
                                        [](const auto& object, unsigned int id) { return object->id() < id; });
    return found != objects.end() && (*found)->id() == id ? found->get() : nullptr;
}

} // namespace Stratum
