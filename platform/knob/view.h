// The parameter library's notion of a view.
#ifndef KNOB_VIEW_H
#define KNOB_VIEW_H

namespace Knob {

class View
{
public:
    // The id that a default view carries: -1. It stands for "the hero view of the project it is used in", whichever
    // that is at the time; no view of a project has this id. Never throws.
    static int defaultViewId();
};

} // namespace Knob

#endif
