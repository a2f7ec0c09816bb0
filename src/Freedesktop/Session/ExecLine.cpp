#include "Freedesktop/Session/ExecLine.h"

#include "Freedesktop/GLibOwners.h"

#include <algorithm>
#include <span>
#include <utility>

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

bool takesSeveralFiles(std::vector<std::string> const& words)
{
    return std::any_of(
        words.begin(), words.end(), [](std::string const& word) { return word == "%F" || word == "%U"; });
}

/// One command in the making.
struct Expansion {
    ExecFields const& fields;
    std::span<std::string const> files;
    std::vector<std::string> command;
    bool usedFile = false;
};

std::string expandWord(std::string_view word, Expansion& expansion)
{
    auto const file = expansion.files.empty() ? std::string() : expansion.files.front();
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
            expanded += file;
            expansion.usedFile = true;
            break;
        case 'u':
        case 'U':
            expanded += file.empty() ? std::string() : fileURIOf(file);
            expansion.usedFile = true;
            break;
        case 'c':
            expanded += expansion.fields.localizedName;
            break;
        case 'k':
            expanded += expansion.fields.entryPath;
            break;
        default:
            // Codes of the past stand for nothing.
            break;
        }
    }
    return expanded;
}

void addWord(std::string const& word, Expansion& expansion)
{
    auto& command = expansion.command;
    if (word == "%i") {
        if (!expansion.fields.icon.empty())
            command.insert(command.end(), { "--icon", expansion.fields.icon });
        return;
    }
    if (word == "%F" || word == "%U") {
        for (auto const& file : expansion.files)
            command.push_back(word == "%F" ? file : fileURIOf(file));
        expansion.usedFile = true;
        return;
    }
    auto expanded = expandWord(word, expansion);
    if (!expanded.empty() || !isFieldCode(word))
        command.push_back(std::move(expanded));
}

std::vector<std::string> expandWords(
    std::vector<std::string> const& words, ExecFields const& fields, std::span<std::string const> files)
{
    Expansion expansion { .fields = fields, .files = files, .command = {} };
    for (auto const& word : words)
        addWord(word, expansion);
    if (!expansion.command.empty() && !expansion.usedFile)
        expansion.command.insert(expansion.command.end(), files.begin(), files.end());
    return std::move(expansion.command);
}

}

std::vector<std::vector<std::string>> expandExecLine(std::string const& exec, ExecFields const& fields)
{
    auto const words = wordsOf(exec);
    std::span<std::string const> const files(fields.files);
    auto const filesPerStart = takesSeveralFiles(words) ? std::max<std::size_t>(files.size(), 1) : std::size_t { 1 };
    std::vector<std::vector<std::string>> commands;
    std::size_t next = 0;
    do {
        auto const count = std::min(filesPerStart, files.size() - next);
        auto command = expandWords(words, fields, files.subspan(next, count));
        if (!command.empty())
            commands.push_back(std::move(command));
        next += filesPerStart;
    } while (next < files.size());
    return commands;
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
