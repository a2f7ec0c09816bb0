#pragma once

#include "Platform/FileURL.h"

#include <string>
#include <string_view>
#include <variant>

namespace marrowick {

/// What a script asks the Finder for.
namespace finderScript {
struct Selection { };
struct FrontWindowTarget { };
struct OpenInformationWindow {
    FileURL url;
};
struct NotUnderstood { };
}

using FinderScript = std::variant<finderScript::Selection, finderScript::FrontWindowTarget,
    finderScript::OpenInformationWindow, finderScript::NotUnderstood>;

FinderScript parseFinderScript(std::string_view source);

/// A script system's error dictionary, printed on one line.
std::string errorDictionary(std::string_view message, int number);

}
