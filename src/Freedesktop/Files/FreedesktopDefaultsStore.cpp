#include "Freedesktop/Files/FreedesktopDefaultsStore.h"

#include "Freedesktop/Files/DefaultsWriter.h"

#include <algorithm>
#include <cstring>
#include <dconf.h>
#include <mutex>

namespace marrowick {

namespace {

bool isUtf8(std::string_view text)
{
    // A zero byte ends the database's texts, so it is invalid here too.
    return g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE;
}

/// Where the database keeps `key`; absent for a key that it cannot hold. The library stops the process on such a key.
std::optional<std::string> databasePath(std::string_view key)
{
    if (key.empty() || key.find('/') != std::string_view::npos || !isUtf8(key))
        return std::nullopt;
    return "/org/marrowick/Marrowick/" + std::string(key);
}

DefaultsValue valueOf(GVariant* variant)
{
    switch (g_variant_classify(variant)) {
    case G_VARIANT_CLASS_BOOLEAN:
        return g_variant_get_boolean(variant) != FALSE;
    case G_VARIANT_CLASS_STRING:
        return std::string(g_variant_get_string(variant, nullptr));
    case G_VARIANT_CLASS_DOUBLE:
        return g_variant_get_double(variant);
    case G_VARIANT_CLASS_BYTE:
        return static_cast<double>(g_variant_get_byte(variant));
    case G_VARIANT_CLASS_INT16:
        return static_cast<double>(g_variant_get_int16(variant));
    case G_VARIANT_CLASS_UINT16:
        return static_cast<double>(g_variant_get_uint16(variant));
    case G_VARIANT_CLASS_INT32:
        return static_cast<double>(g_variant_get_int32(variant));
    case G_VARIANT_CLASS_UINT32:
        return static_cast<double>(g_variant_get_uint32(variant));
    case G_VARIANT_CLASS_INT64:
        return static_cast<double>(g_variant_get_int64(variant));
    case G_VARIANT_CLASS_UINT64:
        return static_cast<double>(g_variant_get_uint64(variant));
    case G_VARIANT_CLASS_HANDLE:
    case G_VARIANT_CLASS_OBJECT_PATH:
    case G_VARIANT_CLASS_SIGNATURE:
    case G_VARIANT_CLASS_VARIANT:
    case G_VARIANT_CLASS_MAYBE:
    case G_VARIANT_CLASS_ARRAY:
    case G_VARIANT_CLASS_TUPLE:
    case G_VARIANT_CLASS_DICT_ENTRY:
        break;
    }
    return ForeignValue {};
}

/// Null for a value that the database cannot hold.
GVariantOwner variantOf(DefaultsValue const& value)
{
    GVariant* variant = nullptr;
    if (auto const* boolean = std::get_if<bool>(&value))
        variant = g_variant_new_boolean(*boolean);
    else if (auto const* number = std::get_if<double>(&value))
        variant = g_variant_new_double(*number);
    else if (auto const* text = std::get_if<std::string>(&value); text && isUtf8(*text))
        variant = g_variant_new_string(text->c_str());
    return GVariantOwner(variant ? g_variant_ref_sink(variant) : nullptr);
}

GLogWriterOutput writeUnlessFromSettings(GLogLevelFlags level, GLogField const* fields, gsize count, gpointer data)
{
    bool const isFromSettings = std::any_of(fields, fields + count, [](GLogField const& field) {
        return std::strcmp(field.key, "GLIB_DOMAIN") == 0
            && std::strcmp(static_cast<char const*>(field.value), "dconf") == 0;
    });
    return isFromSettings ? G_LOG_WRITER_HANDLED : g_log_writer_default(level, fields, count, data);
}

/// Keeps the settings library from writing to standard error. In a home that cannot be written to it complains at every
/// read, though reading works; what a user should know the store itself says, once. The toolkit takes one writer for the
/// whole life of the process.
void silenceSettingsLibrary()
{
    static std::once_flag once;
    std::call_once(once, [] { g_log_set_writer_func(writeUnlessFromSettings, nullptr, nullptr); });
}

}

struct FreedesktopDefaultsStore::Database {
    GObjectOwner<DConfClient> client { dconf_client_new() };
    DefaultsWriter writer { GObjectOwner<DConfClient>(static_cast<DConfClient*>(g_object_ref(client.get()))) };
};

FreedesktopDefaultsStore::FreedesktopDefaultsStore(Log& log)
    : log_(log)
    , database_(std::make_unique<Database>())
{
    silenceSettingsLibrary();
}

FreedesktopDefaultsStore::~FreedesktopDefaultsStore() = default;

std::optional<DefaultsValue> FreedesktopDefaultsStore::object(std::string_view key)
{
    auto const path = databasePath(key);
    if (!path)
        return std::nullopt;
    if (auto const pending = database_->writer.pendingValue(*path))
        return valueOf(pending.get());
    GVariantOwner const stored(dconf_client_read(database_->client.get(), path->c_str()));
    if (!stored)
        return std::nullopt;
    return valueOf(stored.get());
}

void FreedesktopDefaultsStore::set(std::string_view key, DefaultsValue const& value)
{
    auto const path = databasePath(key);
    auto variant = variantOf(value);
    if (!path || !variant) {
        reportOnce(key, path ? "the settings database cannot hold the value" : "the settings database has no such key");
        return;
    }
    if (auto const failure = database_->writer.write(*path, std::move(variant)))
        reportOnce(key, *failure);
}

void FreedesktopDefaultsStore::reportOnce(std::string_view key, std::string_view reason)
{
    if (hasReported_)
        return;
    hasReported_ = true;
    log_.write("Marrowick: failed to store the setting \"" + std::string(key) + "\": " + std::string(reason));
}

}
