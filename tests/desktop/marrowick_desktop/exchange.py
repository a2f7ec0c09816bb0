"""The other side of the exchange: what an extension of the file manager reads, and the requests that it drops."""

import json
import os
import pathlib


class Exchange:
    """The folder that both programs know."""

    def __init__(self):
        self.folder = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Marrowick"
        self.snapshot = self.folder / "menu-snapshot.json"
        self.requests = self.folder / "Requests"
        self._count = 0

    def published(self):
        """The bytes of the snapshot; nothing where there is none."""
        try:
            return self.snapshot.read_bytes()
        except FileNotFoundError:
            return b""

    def roots(self):
        content = self.published()
        return json.loads(content)["roots"] if content else None

    def drop_bytes(self, content, name=None):
        """Writes a file under another name and lets it appear whole, as a request must. Returns where it is."""
        self._count += 1
        path = self.requests / (name or f"{self._count}.json")
        unfinished = self.requests / f"{self._count}.unfinished"
        unfinished.write_bytes(content)
        unfinished.rename(path)
        return path

    def drop(self, op, dest, *sources, name=None, **others):
        """Drops a request."""
        request = {"op": op, "dest": str(dest), "sources": [str(source) for source in sources], **others}
        return self.drop_bytes(json.dumps(request).encode(), name)

    def waiting(self):
        """The names that lie in the folder of requests."""
        return sorted(os.listdir(self.requests))


def written(text):
    """A text as it stands in the snapshot, where no character of it needs an escape but the slash."""
    return b'"' + os.fsencode(text).replace(b"/", b"\\/") + b'"'


def node(name, path, *children):
    """A folder as it stands in the snapshot."""
    return (b'{"name":' + written(name) + b',"path":' + written(path) + b',"children":['
            + b",".join(children) + b"]}")
