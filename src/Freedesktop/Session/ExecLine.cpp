#include "Freedesktop/Session/ExecLine.h"

#include "Freedesktop/GLibOwners.h"

#include <algorithm>

namespace marrowick {

namespace {

std::vector<std::string> wordsOf(std::string const& exec)
{
    int count = 0;
    char** parsed = nullptr;
    if (!g_shell_parse_argv(exec.c_str(), &count, &parsed, nullptr))
        return {};
    GStringListOwner const words(parsed);
    return { words.get(), words.get() + count };
}

bool isFieldCode(std::string_view word)
{
    return word.size() == 2 && word.front() == '%' && word.back() != '%';
}

/// One word with its field codes replaced; `usedFile` tells that the file was asked for.
std::string expandWord(std::string_view word, ExecFields const& fields, bool& usedFile)
{
    std::string expanded;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%' || i + 1 == word.size()) {
            expanded += word[i];
            continue;
        }
        switch (word[++i]) {
        case '%':
            expanded += '%';
            break;
        case 'f':
        case 'F':
            expanded += fields.file.value_or(std::string());
            usedFile = true;
            break;
        case 'u':
        case 'U':
            expanded += fields.file ? fileURIOf(*fields.file) : std::string();
            usedFile = true;
            break;
        case 'c':
            expanded += fields.localizedName;
            break;
        case 'k':
            expanded += fields.entryPath;
            break;
        default:
            // Codes of the past stand for nothing.
            break;
        }
    }
    return expanded;
}

}

std::vector<std::string> expandExecLine(std::string const& exec, ExecFields const& fields)
{
    std::vector<std::string> command;
    bool usedFile = false;
    for (auto const& word : wordsOf(exec)) {
        if (word == "%i") {
            if (!fields.icon.empty())
                command.insert(command.end(), { "--icon", fields.icon });
            continue;
        }
        auto expanded = expandWord(word, fields, usedFile);
        if (!expanded.empty() || !isFieldCode(word))
            command.push_back(std::move(expanded));
    }
    if (!command.empty() && fields.file && !usedFile)
        command.push_back(*fields.file);
    return command;
}

std::string soleProgramOfExecLine(std::string const& exec)
{
    auto const words = wordsOf(exec);
    if (words.empty())
        return {};
    bool const isSole = std::all_of(words.begin() + 1, words.end(),
        [](std::string const& word) { return word.starts_with('-') || isFieldCode(word); });
    auto const& program = words.front();
    return isSole ? program.substr(program.rfind('/') + 1) : std::string();
}

std::string fileURIOf(std::string const& path)
{
    GStringOwner const uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    return uri ? std::string(uri.get()) : std::string();
}

}
