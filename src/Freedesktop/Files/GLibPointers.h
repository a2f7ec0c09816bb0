#pragma once

#include <glib-object.h>
#include <memory>

namespace marrowick {

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
/// Owns a reference to a value.
using VariantPointer = std::unique_ptr<GVariant, VariantUnref>;

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
/// Owns a reference to an object.
template<typename T>
using ObjectPointer = std::unique_ptr<T, ObjectUnref>;

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPointer = std::unique_ptr<GError, ErrorFree>;

}
