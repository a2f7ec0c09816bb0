#pragma once

#include <glib-object.h>

#include <memory>
#include <string>

namespace marrowick::companion {

struct ObjectRelease {
    void operator()(void* object) const { g_object_unref(object); }
};
/// Ends the ownership of an object.
template<typename T>
using ObjectOwner = std::unique_ptr<T, ObjectRelease>;

/// The text that GLib gave away; empty for null.
inline std::string taken(char* text)
{
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

}
