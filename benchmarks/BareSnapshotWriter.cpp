#include "BareSnapshotWriter.h"

#include <cstdio>

namespace marrowick::benchmarks {

namespace {

void appendText(std::string& bytes, std::string_view text)
{
    bytes += '"';
    for (char const c : text) {
        if (c == '"' || c == '\\' || c == '/') {
            bytes += '\\';
            bytes += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            bytes += escape;
        } else {
            bytes += c;
        }
    }
    bytes += '"';
}

void appendNodes(std::string& bytes, SnapshotNodes const& nodes)
{
    bytes += '[';
    for (std::size_t index = 0; index < nodes.size(); ++index) {
        bytes += index == 0 ? "{\"name\":" : ",{\"name\":";
        appendText(bytes, nodes[index].name);
        bytes += ",\"path\":";
        appendText(bytes, nodes[index].path);
        bytes += ",\"children\":";
        appendNodes(bytes, nodes[index].children);
        bytes += '}';
    }
    bytes += ']';
}

}

std::string writeSnapshot(Snapshot const& snapshot, std::string_view generated)
{
    std::string bytes = "{\"generated\":";
    appendText(bytes, generated);
    bytes += ",\"roots\":";
    appendNodes(bytes, snapshot.roots);
    bytes += '}';
    return bytes;
}

}
