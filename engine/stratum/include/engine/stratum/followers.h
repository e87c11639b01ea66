// Who follows whom, where one object may be followed by very many: links that are made and cut at a cost that does not
// depend on how many there are.
#pragma once

#include <boost/intrusive/list.hpp>

namespace Stratum {

// Of the class Object, as a base of it; no longer followed by one that is destroyed.
template <class Object>
class Follower : public boost::intrusive::list_base_hook<boost::intrusive::link_mode<boost::intrusive::auto_unlink>>
{
public:
    using List = boost::intrusive::list<Object, boost::intrusive::constant_time_size<false>>;

    // Leaves the list that it is in and goes to the end of another; null for none.
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
