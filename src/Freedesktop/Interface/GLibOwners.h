#pragma once

#include <glib-object.h>

#include <memory>

namespace marrowick {

struct GLibRelease {
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
    void operator()(char* text) const { g_free(text); }
};

struct GObjectRelease {
    void operator()(void* object) const { g_object_unref(object); }
};

template<typename T>
using GLibOwner = std::unique_ptr<T, GLibRelease>;

template<typename T>
using GObjectOwner = std::unique_ptr<T, GObjectRelease>;

}
