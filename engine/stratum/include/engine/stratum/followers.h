// Links from an object to its many followers, made and cut at a cost that does not depend on how many there are.
#pragma once

#include <boost/intrusive/list.hpp>

namespace Stratum {

// A base of Object, which it links into at most one list of followers; its destruction unlinks it.
template <class Object>
class Follower : public boost::intrusive::list_base_hook<boost::intrusive::link_mode<boost::intrusive::auto_unlink>>
{
public:
    using List = boost::intrusive::list<Object, boost::intrusive::constant_time_size<false>>;

    // Moves to the end of that list, or out of all for null.
    void follow(List* followers)
    {
        if (this->is_linked())
            this->unlink();
        if (followers)
            followers->push_back(static_cast<Object&>(*this));
    }
};

template <class Object>
using Followers = typename Follower<Object>::List;

} // namespace Stratum
