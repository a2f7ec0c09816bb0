#include "Freedesktop/Session/ExportedWindows.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace marrowick {

namespace {

constexpr std::uint32_t maximumListBytes = 65'536 * 4;
constexpr std::uint32_t maximumTextBytes = 4096;

/// The properties of one window, asked for and on their way.
struct NamesQuestion {
    xcb_window_t id = XCB_WINDOW_NONE;
    XConnection::Request connection;
    XConnection::Request objectPath;
    XConnection::Request title;
};

std::string lastComponent(std::string const& uri)
{
    GObjectOwner<GFile> const file(g_file_new_for_uri(uri.c_str()));
    GStringOwner const name(g_file_get_basename(file.get()));
    return name ? name.get() : std::string();
}

/// The only folder that there is, or that has the title; empty where that is not one.
std::string folderOf(std::vector<std::string> const& tabs, std::string const& title)
{
    std::set<std::string> const folders(tabs.begin(), tabs.end());
    if (folders.size() == 1)
        return *folders.begin();
    std::vector<std::string> titled;
    std::copy_if(folders.begin(), folders.end(), std::back_inserter(titled),
        [&](std::string const& uri) { return lastComponent(uri) == title; });
    return titled.size() == 1 ? titled.front() : std::string();
}

}

void appendExportedWindows(FileManagerWindows& windows, GVariant* answer, std::string const& connection)
{
    if (!g_variant_is_of_type(answer, G_VARIANT_TYPE("(v)")))
        return;
    GVariant* boxed = nullptr;
    g_variant_get(answer, "(v)", &boxed);
    GVariantOwner const property(boxed);
    if (!g_variant_is_of_type(property.get(), G_VARIANT_TYPE("a{sas}")))
        return;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, property.get());
    char const* path = nullptr;
    GVariant* locations = nullptr;
    while (g_variant_iter_next(&iterator, "{&s@as}", &path, &locations)) {
        GVariantOwner const list(locations);
        ExportedWindow exported { connection, path, {} };
        for (std::size_t i = 0; i < g_variant_n_children(list.get()); ++i) {
            GVariantOwner const location(g_variant_get_child_value(list.get(), i));
            exported.folderURIs.emplace_back(g_variant_get_string(location.get(), nullptr));
        }
        windows.push_back({});
        windows.back().exported = std::move(exported);
    }
}

std::vector<NamedWindow> readNamedWindows(XConnection& connection)
{
    auto const ids = connection.collectNumbers(connection.request(
        connection.root(), connection.atom(XAtom::netClientListStacking), XCB_ATOM_WINDOW, maximumListBytes));
    auto const text = connection.atom(XAtom::utf8String);
    std::vector<NamesQuestion> questions;
    questions.reserve(ids.size());
    for (auto const id : ids) {
        auto const ask
            = [&](XAtom property) { return connection.request(id, connection.atom(property), text, maximumTextBytes); };
        questions.push_back(
            { id, ask(XAtom::gtkUniqueBusName), ask(XAtom::gtkWindowObjectPath), ask(XAtom::netWMName) });
    }
    std::vector<NamedWindow> named;
    for (auto const& question : questions) {
        NamedWindow window { question.id, connection.collectText(question.connection).value_or(""),
            connection.collectText(question.objectPath).value_or(""),
            connection.collectText(question.title).value_or("") };
        if (!window.connection.empty() && !window.objectPath.empty())
            named.push_back(std::move(window));
    }
    connection.noticeQueuedEvents();
    return named;
}

void identifyExportedWindows(FileManagerWindows& windows, std::vector<NamedWindow> const& named)
{
    auto const isExported = [](FileManagerWindow const& window) { return window.exported.has_value(); };
    bool const isOnlyOne = std::count_if(windows.begin(), windows.end(), isExported) == 1;
    std::erase_if(windows, [&](FileManagerWindow& window) {
        if (!window.exported)
            return false;
        auto const& exported = *window.exported;
        auto const known = std::find_if(named.begin(), named.end(), [&](NamedWindow const& candidate) {
            return candidate.connection == exported.connection && candidate.objectPath == exported.objectPath;
        });
        bool const isKnown = known != named.end();
        if (isKnown)
            window.id = known->id;
        window.folderURI = folderOf(exported.folderURIs, isKnown ? known->title : std::string());
        return !isKnown && !isOnlyOne;
    });
}

}
