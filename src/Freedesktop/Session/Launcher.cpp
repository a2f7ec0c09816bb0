#include "Freedesktop/Session/Launcher.h"

#include "Freedesktop/Session/ChildProcess.h"
#include "Freedesktop/Session/ExecLine.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

/// The words in front of a command that is to run in a terminal window; empty where there is no terminal.
std::vector<std::string> terminalWords()
{
    struct Terminal {
        char const* program;
        char const* option;
    };
    static constexpr std::array terminals {
        Terminal { "xdg-terminal-exec", nullptr },
        Terminal { "x-terminal-emulator", "-e" },
        Terminal { "gnome-terminal", "--" },
        Terminal { "konsole", "-e" },
        Terminal { "xfce4-terminal", "-x" },
        Terminal { "xterm", "-e" },
    };
    for (auto const& [program, option] : terminals) {
        if (GStringOwner const found { g_find_program_in_path(program) }) {
            std::vector<std::string> words { program };
            if (option)
                words.emplace_back(option);
            return words;
        }
    }
    return {};
}

std::string textOf(char* owned)
{
    GStringOwner const text(owned);
    return text ? std::string(text.get()) : std::string();
}

std::vector<std::vector<std::string>> commandsOf(GDesktopAppInfo* application, std::vector<std::string> const& files)
{
    char const* const exec = g_app_info_get_commandline(G_APP_INFO(application));
    if (!exec)
        return {};
    char const* const path = g_desktop_app_info_get_filename(application);
    ExecFields const fields {
        .files = files,
        .localizedName = g_app_info_get_name(G_APP_INFO(application)),
        .icon = textOf(g_desktop_app_info_get_string(application, "Icon")),
        .entryPath = path ? path : "",
    };
    auto commands = expandExecLine(exec, fields);
    if (commands.empty() || !g_desktop_app_info_get_boolean(application, "Terminal"))
        return commands;
    auto const words = terminalWords();
    if (words.empty())
        return {};
    for (auto& command : commands)
        command.insert(command.begin(), words.begin(), words.end());
    return commands;
}

/// What this process was told about its own start does not hold for what it starts.
EnvironmentChanges changesForStart()
{
    return { { "DESKTOP_STARTUP_ID", std::nullopt }, { "XDG_ACTIVATION_TOKEN", std::nullopt },
        { "GIO_LAUNCHED_DESKTOP_FILE", std::nullopt }, { "GIO_LAUNCHED_DESKTOP_FILE_PID", std::nullopt } };
}

}

Launcher::Launcher(std::shared_ptr<XConnection> connection)
    : connection_(std::move(connection))
{
}

std::string Launcher::makeStartupID()
{
    return "marrowick-" + std::to_string(getpid()) + "-" + std::to_string(++startupCount_) + "_TIME"
        + std::to_string(connection_->serverTime());
}

void Launcher::startProgram(std::string const& path, std::vector<std::string> const& arguments)
{
    ChildProcess child {
        .command = { path }, .environment = environmentWith(changesForStart()), .workingDirectory = {}
    };
    child.command.insert(child.command.end(), arguments.begin(), arguments.end());
    startDetached(child);
}

void Launcher::launch(GDesktopAppInfo* application, std::vector<std::string> const& files)
{
    auto commands = commandsOf(application, files);
    if (commands.empty() && g_desktop_app_info_get_boolean(application, "DBusActivatable"))
        activateOverBus(application, files);
    for (auto& command : commands)
        start(application, std::move(command));
}

void Launcher::start(GDesktopAppInfo* application, std::vector<std::string> command)
{
    auto changes = changesForStart();
    if (g_desktop_app_info_get_boolean(application, "StartupNotify"))
        changes["DESKTOP_STARTUP_ID"] = makeStartupID();
    startDetached({ .command = std::move(command),
        .environment = environmentWith(changes),
        .workingDirectory = textOf(g_desktop_app_info_get_string(application, "Path")) });
}

void Launcher::activateOverBus(GDesktopAppInfo* application, std::vector<std::string> const& files)
{
    char const* const path = g_desktop_app_info_get_filename(application);
    GStringOwner const name(path ? g_path_get_basename(path) : g_strdup(""));
    std::string_view id(name.get());
    constexpr std::string_view suffix = ".desktop";
    if (id.ends_with(suffix))
        id.remove_suffix(suffix.size());
    std::string const destination(id);
    if (!SessionBus::isAvailable() || !g_dbus_is_name(destination.c_str()) || destination.front() == ':')
        return;

    std::string objectPath = "/" + destination;
    std::replace(objectPath.begin(), objectPath.end(), '.', '/');
    std::replace(objectPath.begin(), objectPath.end(), '-', '_');
    GVariantBuilder platformData;
    g_variant_builder_init(&platformData, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&platformData, "{sv}", "desktop-startup-id", g_variant_new_string(makeStartupID().c_str()));
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE("as"));
    for (auto const& file : files)
        g_variant_builder_add(&uris, "s", fileURIOf(file).c_str());
    bool const hasFiles = !files.empty();
    auto* const arguments
        = hasFiles ? g_variant_new("(asa{sv})", &uris, &platformData) : g_variant_new("(a{sv})", &platformData);
    if (!hasFiles)
        g_variant_builder_clear(&uris);
    bus_.call({ destination, objectPath, "org.freedesktop.Application", hasFiles ? "Open" : "Activate", arguments },
        [](GVariant*, GError const*) {});
}

bool Launcher::openInDefaultApplication(char const* contentType, std::vector<std::string> const& files)
{
    GObjectOwner<GAppInfo> const application(g_app_info_get_default_for_type(contentType, FALSE));
    if (!application || !G_IS_DESKTOP_APP_INFO(application.get()))
        return false;
    launch(G_DESKTOP_APP_INFO(application.get()), files);
    return true;
}

}
