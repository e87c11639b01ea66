// Whether an application embeds the interpreter, and which project it has open.
#include <atomic>
#include <engine/embedding.h>
#include <engine/project/data.h>
#include <orrery/start_up.h>

namespace {

std::atomic<bool> embedded{false};
std::atomic<Project*> current{nullptr};

} // namespace

Project* getCurrentProject() { return current.load(std::memory_order_acquire); }

bool isEmbedded() { return embedded.load(std::memory_order_acquire); }

namespace orrery {

void setEmbedded(bool isEmbedded) { embedded.store(isEmbedded, std::memory_order_release); }

void setCurrentProject(Project* project) { current.store(project, std::memory_order_release); }

void forgetProject(Project* project) { current.compare_exchange_strong(project, nullptr); }

} // namespace orrery
