#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

struct Installation {
    Platform services;
    std::thread::id mainThread = std::this_thread::get_id();
    std::vector<std::pair<void const*, std::shared_ptr<void>>> sharedObjects;
};

Installation* installation = nullptr;

Installation& installed()
{
    if (!installation)
        fatalError("Marrowick: the services of the desktop are asked for before they are installed");
    assertMainThread();
    return *installation;
}

}

Platform& platform()
{
    return installed().services;
}

PlatformScope::PlatformScope(Platform services)
{
    if (installation)
        fatalError("Marrowick: the services of the desktop are installed twice");
    installation = new Installation { .services = std::move(services), .sharedObjects = {} };
}

PlatformScope::~PlatformScope()
{
    auto& objects = installation->sharedObjects;
    while (!objects.empty()) {
        auto last = std::move(objects.back().second);
        objects.pop_back();
        last.reset();
    }
    delete std::exchange(installation, nullptr);
}

void fatalError(std::string_view message)
{
    if (installation && installation->services.log)
        installation->services.log->write(message);
    else
        std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
    std::abort();
}

void assertMainThread()
{
    if (installation && installation->mainThread != std::this_thread::get_id())
        fatalError("Marrowick: called on another thread than the main thread");
}

namespace detail {

void* sharedObject(void const* key, std::function<std::shared_ptr<void>()> const& make)
{
    for (auto const& [madeFor, object] : installed().sharedObjects) {
        if (madeFor == key)
            return object.get();
    }
    auto object = make();
    installed().sharedObjects.emplace_back(key, object);
    return object.get();
}

}

}
