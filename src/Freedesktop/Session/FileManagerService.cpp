#include "Freedesktop/Session/FileManagerService.h"

#include "Freedesktop/Session/ExecLine.h"

#include <utility>

namespace marrowick {

namespace {

constexpr char serviceName[] = "org.freedesktop.FileManager1";
constexpr int busTimeout = 3000;
/// A file manager that does not come up in this time is taken for broken.
constexpr int startTimeout = 10'000;

BusCall callToBus(char const* method, GVariant* arguments)
{
    return { "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments, busTimeout };
}

bool holdsServiceName(GVariant* answer)
{
    if (!answer || !g_variant_is_of_type(answer, G_VARIANT_TYPE("(as)")))
        return false;
    GVariantOwner const list(g_variant_get_child_value(answer, 0));
    std::unique_ptr<char const*, GLibRelease<g_free>> const names(g_variant_get_strv(list.get(), nullptr));
    return g_strv_contains(names.get(), serviceName);
}

bool isTrue(GVariant* answer)
{
    if (!answer || !g_variant_is_of_type(answer, G_VARIANT_TYPE("(b)")))
        return false;
    gboolean value = FALSE;
    g_variant_get(answer, "(b)", &value);
    return value;
}

}

void FileManagerService::findOut(std::function<void(Availability)> then)
{
    if (!SessionBus::isAvailable()) {
        then(Availability::absent);
        return;
    }
    bus_.call(callToBus("NameHasOwner", g_variant_new("(s)", serviceName)),
        [this, then = std::move(then)](GVariant* answer, GError const*) {
            if (isTrue(answer))
                then(Availability::running);
            else if (answer)
                findOutWhetherStartable(then);
            else
                then(Availability::absent);
        });
}

void FileManagerService::findOutWhetherStartable(std::function<void(Availability)> then)
{
    bus_.call(callToBus("ListActivatableNames", nullptr), [then = std::move(then)](GVariant* answer, GError const*) {
        then(holdsServiceName(answer) ? Availability::startable : Availability::absent);
    });
}

void FileManagerService::request(char const* method, FileURL const& url, std::string const& startupID,
    Availability availability, std::function<void()> refused)
{
    auto const uri = fileURIOf(url.path());
    char const* const uris[] = { uri.c_str(), nullptr };
    bool const isRunning = availability == Availability::running;
    BusCall call { serviceName, "/org/freedesktop/FileManager1", serviceName, method,
        g_variant_new("(^ass)", uris, startupID.c_str()), isRunning ? -1 : startTimeout };
    bus_.call(std::move(call), [isRunning, refused = std::move(refused)](GVariant*, GError const* error) {
        // One that runs and is merely slow will still do it.
        bool const mayStillDoIt = isRunning && error && g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
        if (error && !mayStillDoIt)
            refused();
    });
}

void FileManagerService::showItems(
    std::vector<FileURL> const& urls, std::string const& startupID, std::function<void(FileURL const&)> notShown)
{
    findOut([this, urls, startupID, notShown = std::move(notShown)](Availability availability) {
        for (auto const& url : urls) {
            if (availability == Availability::absent)
                notShown(url);
            else
                request("ShowItems", url, startupID, availability, [url, notShown] { notShown(url); });
        }
    });
}

void FileManagerService::showItemProperties(FileURL const& url, std::string const& startupID)
{
    findOut([this, url, startupID](Availability availability) {
        if (availability != Availability::absent)
            request("ShowItemProperties", url, startupID, availability, [] {});
    });
}

}
