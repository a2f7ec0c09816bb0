#pragma once

#include <gio/gio.h>

#include <memory>

namespace marrowick {

/// Ends the ownership of a GLib handle with the function that GLib names for it.
template<auto Function>
struct GLibRelease {
    template<typename T>
    void operator()(T* handle) const
    {
        Function(handle);
    }
};

template<typename T>
using GObjectOwner = std::unique_ptr<T, GLibRelease<g_object_unref>>;
using GErrorOwner = std::unique_ptr<GError, GLibRelease<g_error_free>>;
using GKeyFileOwner = std::unique_ptr<GKeyFile, GLibRelease<g_key_file_free>>;
using GStringOwner = std::unique_ptr<char, GLibRelease<g_free>>;
using GStringListOwner = std::unique_ptr<char*, GLibRelease<g_strfreev>>;
using GVariantOwner = std::unique_ptr<GVariant, GLibRelease<g_variant_unref>>;

}
