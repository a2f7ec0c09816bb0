#!/usr/bin/python3
"""What is published for the file manager's extension, byte for byte, and when."""

import datetime
import os
import re

from marrowick_desktop import ExchangeCase, empty, fill, holds_for, node, run, wait_for, written


def without_date(content):
    """What follows the date of a snapshot, and the date."""
    start = re.match(rb'\{"generated":"(\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}Z)","roots":', content)
    assert start, content
    return content[start.end():], datetime.datetime.strptime(start[1].decode(), "%Y-%m-%dT%H:%M:%SZ")


class Publishing(ExchangeCase):
    def test_EmptyHomeGetsTheFoldersAndASnapshotOfNothing(self):
        before = datetime.datetime.utcnow().replace(microsecond=0)
        self.run_with_nothing()
        content = wait_for(self.exchange.published, "a snapshot")
        roots, date = without_date(content)
        self.assertEqual(roots, b"[]}")
        self.assertLessEqual(before, date)
        self.assertLessEqual(date, datetime.datetime.utcnow())
        self.assertEqual(self.names(self.exchange.folder), ["Marrowick Items", "Requests", "menu-snapshot.json"])
        self.assertEqual(self.names(self.exchange.requests), [])
        self.assertEqual(self.own_lines(), [])

    def run_with_nothing(self):
        self.switch_generated_off()
        self.start()
        self.host.icon(self.program.pid)

    def test_TreeIsPublishedByteForByte(self):
        fill(self.work, "Target/Inside/", "Target/note.txt")
        fill(self.items, "1.)Work/Reports/2026/Q1/Too deep/", "1.)Work/10/", "1.)Work/9/", "1.)Work/.cache/",
             "1.)Work/Tool.app/", "1.)Work/file.txt", "1.)Work/hidden/", "2.)---d", "3.)Templates---C/Template/",
             "4.)Plain---X/Größe/", "5.)In---i/b/", "5.)In---i/Deep---i/c/", "5.)In---i/a.txt", "6.)file.txt", "7.)----")
        (self.items / "1.)Work/.hidden").write_text("hidden\n")
        (self.items / "1.)Work/link").symlink_to(self.work / "Target")
        (self.items / "8.)Linked").symlink_to(self.work / "Target")
        os.mkdir(os.fsencode(self.items) + b"/1.)Work/broken\xff")
        desktop = self.desktop.home / "Desktop"
        empty(desktop)
        fill(desktop, "Sorted/")
        self.publish()
        work = self.items / "1.)Work"
        inline = self.items / "5.)In---i"
        expected = [
            node("Work", work, node("9", work / "9"), node("10", work / "10"),
                 node("Reports", work / "Reports",
                      node("2026", work / "Reports/2026", node("Q1", work / "Reports/2026/Q1")))),
            node("Desktop", desktop, node("Sorted", desktop / "Sorted")),
            node("Plain", self.items / "4.)Plain---X", node("Größe", self.items / "4.)Plain---X/Größe")),
            node("b", inline / "b"),
            node("c", inline / "Deep---i/c"),
            node("Linked", self.work / "Target", node("Inside", self.work / "Target/Inside")),
        ]
        self.assertEqual(without_date(self.exchange.published())[0], b"[" + b",".join(expected) + b"]}")

    def test_CharactersThatNeedItAreEscaped(self):
        name = 'quote " back \\ tab \t new\nline \x01 \x7f \U0001f600'
        self.publish(name + "/")
        escaped = (b'quote \\" back \\\\ tab \\t new\\nline \\u0001 \x7f ' + "\U0001f600".encode())
        path = written(self.items)[:-1] + b"\\/" + escaped + b'"'
        content = without_date(self.exchange.published())[0]
        self.assertTrue(content.endswith(b',"path":' + path + b',"children":[]}]}'), content)

    def test_AtMost150OfAFolderAnd2000OfAllArePublishedInTheirOrder(self):
        for parent in range(12):
            for child in range(149):
                os.makedirs(self.items / f"A/{parent}/{child}")
        for child in range(200):
            os.makedirs(self.items / f"B/{child}/inside/deeper/too deep")
        os.makedirs(self.items / "C/nothing left")
        self.publish()
        a, b, c = self.exchange.roots()
        self.assertEqual([(each["name"], len(each["children"])) for each in a["children"]],
                         [(str(parent), 149) for parent in range(12)])
        left = 2000 - 12 * 150
        folders = [each["name"] for each in b["children"]]
        self.assertEqual(folders, [str(child) for child in range(-(-left // 3))])
        self.assertEqual(b["children"][-1]["children"][0]["children"], [])
        self.assertEqual((c["name"], c["children"]), ("C", []))

    def test_FirstHundredAndFiftyInTheFileManagersOrder(self):
        for child in range(200):
            os.makedirs(self.items / f"A/{child}")
        self.publish()
        self.assertEqual([each["name"] for each in self.exchange.roots()[0]["children"]],
                         [str(child) for child in range(150)])

    def test_EveryChangeOfTheItemsFolderIsPublishedAtOnce(self):
        self.publish("A/")
        self.wait_for_roots("A")
        (self.items / "B").mkdir()
        self.wait_for_roots("A", "B")
        (self.items / "A").rename(self.items / "C")
        self.wait_for_roots("B", "C")
        (self.items / "B").rmdir()
        self.wait_for_roots("C")

    def wait_for_roots(self, *names):
        wait_for(lambda: [root["name"] for root in self.exchange.roots()] == list(names),
                 lambda: f"{names}, there is {self.exchange.published()}")

    def test_ChangeBelowTheItemsFolderWaitsForTheNextOccasion(self):
        self.publish("A/B/")
        wait_for(lambda: self.exchange.roots()[0]["children"], "the folder inside")
        before = self.exchange.snapshot.stat()
        (self.items / "A/new").mkdir()
        (self.items / "A/B/new").mkdir()
        holds_for(lambda: self.exchange.snapshot.stat() == before, 0.5, "the snapshot stays as it is")
        (self.items / "Z").mkdir()
        self.wait_for_roots("A", "Z")
        self.assertEqual([each["name"] for each in self.exchange.roots()[0]["children"]], ["B", "new"])

    def test_SnapshotIsReplacedByRenamingAndNothingElseIsLeft(self):
        self.publish("A/")
        self.wait_for_roots("A")
        with open(self.exchange.snapshot, "rb") as old:
            content = self.exchange.published()
            (self.items / "B").mkdir()
            self.wait_for_roots("A", "B")
            self.assertEqual(old.read(), content)
            self.assertEqual(os.fstat(old.fileno()).st_nlink, 0)
        self.assertEqual(self.names(self.exchange.folder), ["Marrowick Items", "Requests", "menu-snapshot.json"])


if __name__ == "__main__":
    run()
