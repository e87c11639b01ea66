// Finds the pixel library: as the dynamic loader does, beside the library that this file is linked into, or in lib
// beside the folder of the program that it is linked into.

#include "pixels_loader.h"

#include <atomic>
#include <dlfcn.h>
#include <mutex>
#include <unistd.h>

namespace pixels {
namespace {

constexpr const char* fileName = "libvireo-pixels.so";

std::string ownFolder()
{
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void*>(&ownFolder), &info) || !info.dli_fname)
        return {};
    const std::string self = info.dli_fname;
    const auto slash = self.rfind('/');
    return slash == std::string::npos ? std::string("./") : self.substr(0, slash + 1);
}

void* open()
{
    if (void* handle = dlopen(fileName, RTLD_NOW | RTLD_LOCAL))
        return handle;
    std::string problem = dlerror();
    const std::string folder = ownFolder();
    for (const std::string& path : {folder + fileName, folder + "../lib/" + fileName}) {
        if (::access(path.c_str(), F_OK) != 0)
            continue;
        if (void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
            return handle;
        problem = dlerror();
    }
    throw LoadError("The pixel library cannot be loaded: " + problem);
}

Library& load()
{
    void* handle = open();
    const auto factory = reinterpret_cast<Factory>(dlsym(handle, factoryName));
    Library* library = factory ? factory(interfaceVersion) : nullptr;
    if (!library) {
        Dl_info info{};
        const std::string path = factory && dladdr(reinterpret_cast<const void*>(factory), &info) && info.dli_fname
                                     ? info.dli_fname
                                     : fileName;
        dlclose(handle);
        throw LoadError("The pixel library cannot be used: " + path +
                        (factory ? " has another version of the interface" : " has no " + std::string(factoryName)));
    }
    return *library;
}

} // namespace

Library& library()
{
    static std::atomic<Library*> loaded{nullptr};
    static std::mutex loading;
    if (Library* known = loaded.load(std::memory_order_acquire))
        return *known;
    std::lock_guard<std::mutex> lock(loading);
    if (!loaded.load(std::memory_order_relaxed))
        loaded.store(&load(), std::memory_order_release);
    return *loaded.load(std::memory_order_relaxed);
}

} // namespace pixels
