#include "Platform/FileURL.h"

#include <utility>

namespace marrowick {

FileURL::FileURL(std::string path, bool isDirectory)
    : path_(std::move(path))
    , isDirectory_(isDirectory)
{
    while (path_.size() > 1 && path_.back() == '/') {
        path_.pop_back();
        isDirectory_ = true;
    }
}

std::string_view FileURL::lastPathComponent() const
{
    if (path_ == "/")
        return path_;
    std::string_view const path = path_;
    auto const slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view FileURL::pathExtension() const
{
    return pathExtensionOf(lastPathComponent());
}

std::string_view FileURL::nameWithoutExtension() const
{
    auto name = lastPathComponent();
    auto const extension = pathExtensionOf(name);
    if (!extension.empty())
        name.remove_suffix(extension.size() + 1);
    return name;
}

FileURL FileURL::deletingLastPathComponent() const
{
    auto const slash = path_.rfind('/');
    if (slash == std::string::npos)
        return FileURL({}, true);
    return FileURL(path_.substr(0, slash == 0 ? 1 : slash), true);
}

FileURL FileURL::appendingPathComponent(std::string_view component, bool isDirectory) const
{
    std::string path;
    path.reserve(path_.size() + 1 + component.size());
    path = path_;
    if (!path.empty() && path.back() != '/')
        path += '/';
    path += component;
    return FileURL(std::move(path), isDirectory);
}

std::string_view pathExtensionOf(std::string_view name)
{
    // Found out faster from the front; most names of folders have none.
    if (name.find('.') == std::string_view::npos)
        return {};
    auto const dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size())
        return {};
    return name.substr(dot + 1);
}

}
