#pragma once

#include <glib.h>

#include <exception>

namespace marrowick::companion {

/// What `function` returns, or `otherwise` where it throws: the file manager that called knows no exceptions.
template<typename Function, typename Value>
Value guarded(Value otherwise, Function function) noexcept
{
    try {
        return function();
    } catch (std::exception const& exception) {
        g_message("Marrowick: %s", exception.what());
    } catch (...) {
        g_message("Marrowick: an unknown failure");
    }
    return otherwise;
}

/// The same for what returns nothing.
template<typename Function>
void guarded(Function function) noexcept
{
    guarded(0, [&] {
        function();
        return 0;
    });
}

}
