#!/usr/bin/python3
"""The preview of a highlighted entry."""

import struct
import subprocess
import zlib

from marrowick_desktop import DesktopCase, fill, holds_for, run, wait_for
from marrowick_desktop.accessibility import Gone


def png(width, height, colour):
    """The file of a picture of one colour."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = (b"\0" + bytes(colour) * width) * height
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def pdf(*texts):
    """The file of a document whose pages have these texts."""
    kids = " ".join(f"{4 + 2 * index} 0 R" for index in range(len(texts)))
    objects = ["<< /Type /Catalog /Pages 2 0 R >>", f"<< /Type /Pages /Count {len(texts)} /Kids [ {kids} ] >>",
               "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"]
    for text in texts:
        content = f"BT /F 40 Tf 60 600 Td ({text}) Tj ET"
        objects.append("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 500 700] /Resources << /Font << /F 3 0 R >> >> "
                       f"/Contents {len(objects) + 2} 0 R >>")
        objects.append(f"<< /Length {len(content)} >>\nstream\n{content}\nendstream")
    body = b"%PDF-1.4\n"
    table = "0000000000 65535 f \n"
    for number, each in enumerate(objects, 1):
        table += f"{len(body):010} 00000 n \n"
        body += f"{number} 0 obj\n{each}\nendobj\n".encode()
    end = f"xref\n0 {len(objects) + 1}\n{table}trailer\n<< /Size {len(objects) + 1} /Root 1 0 R >>\nstartxref\n" \
          f"{len(body)}\n%%EOF\n"
    return body + end.encode()


class PreviewCase(DesktopCase):
    """Some items of different kinds."""

    def start_with(self):
        fill(self.items, "notes.txt", "other.txt", "Folder/", "Folder/inside.txt")
        (self.items / "notes.txt").write_text("".join(f"Line {number}\n" for number in range(400)))
        (self.items / "red.png").write_bytes(png(500, 400, (255, 0, 0)))
        (self.items / "pages.pdf").write_bytes(pdf("First page", "Second page"))
        self.run_with()

    def preview(self, title, key="p"):
        if not self.program:
            self.start_with()
        self.open_menu()
        self.menus.highlight(title)
        self.screen.key(key)
        self.menus.wait_for_depth(0)
        return self.wait_for_preview(title)

    def frames(self):
        """The windows of the program that are on the screen: no menus, and not its icon."""
        try:
            application = self.desktop.bus.application(self.program.pid)
            return [each for each in (application.children() if application else [])
                    if "showing" in each.states() and each.role() != "popup menu" and each.area().width > 100]
        except Gone:
            return []

    def window(self, title):
        """The X window of this title; None while there is none."""
        utf8 = title.encode()
        return next((each for each in self.screen.windows_of(self.program.pid)
                     if bytes(self.screen.property(each, "_NET_WM_NAME") or b"") == utf8), None)

    def wait_for_preview(self, title):
        """The preview's X window, once it shows this item."""
        wait_for(lambda: [each for each in self.frames() if each.name() == title], f"a preview of {title!r}")
        return wait_for(lambda: self.window(title), f"a window {title!r}")

    def wait_for_none(self):
        wait_for(lambda: not self.frames(), "the preview to close")

    def all(self, *roles):
        """The accessible parts with these roles."""
        def below(accessible):
            for child in accessible.children():
                yield child
                yield from below(child)
        try:
            return [each for frame in self.frames() for each in below(frame)
                    if each.role() in roles and "showing" in each.states()]
        except Gone:
            return []


class Contents(PreviewCase):
    """What the preview shows."""

    def test_PictureIsShownInItsSize(self):
        window = self.preview("red.png")
        area = wait_for(lambda: self.screen.area(window), "its place")
        self.assertEqual((area.width, area.height), (500, 400))
        wait_for(lambda: {colour for row in self.screen.pixels(area) for colour in row} == {0xFF0000}, "the picture")

    def test_TextIsReadable(self):
        self.preview("other.txt")
        wait_for(lambda: [each for each in self.all("text") if each.name() == "other.txt"], "the text")

    def test_DocumentTellsItsPage(self):
        self.preview("pages.pdf")
        wait_for(lambda: any(each.name() == "Page 1 of 2" and each.description() == "First page"
                             for frame in self.frames() for each in self.everything(frame)), "the first page")
        self.screen.key("End")
        wait_for(lambda: any(each.name() == "Page 2 of 2" for frame in self.frames()
                             for each in self.everything(frame)), "the second page")

    def everything(self, accessible):
        for child in accessible.children():
            yield child
            yield from self.everything(child)

    def test_FolderShowsWhatIsKnownOfIt(self):
        self.preview("Folder")
        wait_for(lambda: any(each.name().startswith("1 item \u2022 ") for each in self.all("label")), "the facts")

    def test_AlternateKeyDoesTheSame(self):
        self.preview("other.txt", key="q")


class Window(PreviewCase):
    """How the window behaves."""

    def test_EscapeAndSpaceClose(self):
        for key in ("Escape", "space"):
            window = self.preview("other.txt")
            self.screen.wait_for_active(window.id)
            self.screen.key(key)
            self.wait_for_none()
        self.assertTrue(self.program.runs())

    def test_AnotherItemReplacesTheFirst(self):
        first = self.preview("other.txt")
        second = self.preview("red.png")
        self.assertEqual(first.id, second.id)
        self.assertEqual(len(self.frames()), 1)
        self.screen.wait_for_active(second.id)
        self.screen.key("Escape")
        self.wait_for_none()

    def test_ItIsAToolWindowInsideTheScreen(self):
        window = self.preview("pages.pdf")
        kinds = self.screen.property(window, "_NET_WM_WINDOW_TYPE")
        self.assertIn(self.screen.display.intern_atom("_NET_WM_WINDOW_TYPE_UTILITY"), kinds)
        states = self.screen.property(window, "_NET_WM_STATE")
        self.assertIn(self.screen.display.intern_atom("_NET_WM_STATE_SKIP_TASKBAR"), states)
        area, whole = self.screen.area(window), self.screen.work_area()
        self.assertLessEqual(area.height, whole.height * 0.8 + 1)
        self.assertGreaterEqual(area.y, whole.y)
        self.assertLessEqual(area.y + area.height, whole.y + whole.height)

    def test_ArrowsScroll(self):
        window = self.preview("notes.txt")
        self.screen.wait_for_active(window.id)
        area = self.screen.area(window)
        before = self.screen.bytes(area)
        self.screen.key("Next")
        wait_for(lambda: self.screen.bytes(area) != before, "the text to scroll")
        self.screen.key("Home")
        wait_for(lambda: self.screen.bytes(area) == before, "the text to scroll back")
        self.screen.key("Down")
        wait_for(lambda: self.screen.bytes(area) != before, "the text to scroll")

    def test_MenuThatStaysOpenKeepsTheKeysAndThePreviewGetsThemAfterwards(self):
        self.desktop.set("immedActionOnKeyPress", "false")
        self.start_with()
        menu = self.open_menu()
        self.menus.highlight("other.txt")
        self.screen.key("p")
        window = self.wait_for_preview("other.txt")
        holds_for(lambda: self.menus.open_menus() == [menu], 0.3, "the menu stays open")
        self.screen.key("Down")
        wait_for(lambda: menu.highlighted() not in (None, "other.txt"), "the highlight to move")
        self.screen.key("Escape")
        self.menus.wait_for_depth(0)
        self.screen.wait_for_active(window.id)
        self.screen.key("Escape")
        self.wait_for_none()

    def test_OneAfterTheOtherFromTheOpenMenu(self):
        self.desktop.set("immedActionOnKeyPress", "false")
        self.start_with()
        self.open_menu()
        for title in ("other.txt", "red.png", "pages.pdf"):
            self.menus.highlight(title)
            self.screen.key("p")
            self.wait_for_preview(title)
        self.assertEqual(len(self.frames()), 1)

    def test_CloseButtonOfTheWindowManagerCloses(self):
        window = self.preview("other.txt")
        subprocess.run(["wmctrl", "-i", "-c", hex(window.id)], check=True, timeout=30)
        self.wait_for_none()
        self.preview("other.txt")


if __name__ == "__main__":
    run()
