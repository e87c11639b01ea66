// Runs a few tasks on all cores.
#pragma once

#include <functional>
#include <vector>

namespace orrery {

// Begins the tasks in their order, as many at once as there are cores; a task may wait for one before it. Returns when
// all have ended. When some throw, the first of them in order is thrown here.
void runTasks(const std::vector<std::function<void()>>& tasks);

} // namespace orrery
