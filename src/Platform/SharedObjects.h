#pragma once

#include <functional>
#include <memory>

namespace marrowick {

namespace detail {
/// The object registered under `key`, made by `make` when there is none yet.
void* sharedObject(void const* key, std::function<std::shared_ptr<void>()> const& make);
}

/// The one object of type `T` that belongs to the installed services: made on first use, destroyed before the services
/// (the last made first), made anew for the next installation. Main thread only.
template<typename T>
T& sharedObject()
{
    static char const key = 0;
    return *static_cast<T*>(
        detail::sharedObject(&key, [] { return std::shared_ptr<void>(std::shared_ptr<T>(new T)); }));
}

}
