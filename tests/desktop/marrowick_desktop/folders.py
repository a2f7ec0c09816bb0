"""How often a folder is read."""

import ctypes
import os
import struct

IN_OPEN = 0x20
IN_ISDIR = 0x40000000
IN_NONBLOCK = 0o4000


class FolderReads:
    """Counts how often a folder itself is opened to be listed, by any program."""

    def __init__(self, folder):
        self._library = ctypes.CDLL(None, use_errno=True)
        self._descriptor = self._library.inotify_init1(IN_NONBLOCK)
        if self._library.inotify_add_watch(self._descriptor, os.fsencode(folder), IN_OPEN) < 0:
            raise OSError(ctypes.get_errno(), "no watch on " + str(folder))
        self._count = 0

    def count(self):
        while True:
            try:
                data = os.read(self._descriptor, 65536)
            except BlockingIOError:
                return self._count
            offset = 0
            while offset < len(data):
                _, mask, _, length = struct.unpack_from("iIII", data, offset)
                # An event of the folder itself carries no name.
                if mask & IN_ISDIR and length == 0:
                    self._count += 1
                offset += 16 + length

    def close(self):
        os.close(self._descriptor)
