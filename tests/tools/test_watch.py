"""vaultpad-layout watch: draws again whenever the layout changes."""

import os
import queue
import shutil
import signal
import subprocess
import threading
import unittest

from layouttool import STAGE, TIMEOUT, TOOL, ToolTest, staged


class Watch(ToolTest):
    def setUp(self):
        super().setUp()
        self.layout = self.folder / "pinpad.xml"
        self.images = self.folder / "images"
        shutil.copytree(STAGE / "images", self.images)
        self.layout.write_text(staged("pinpad").read_text(encoding="utf-8").replace(str(STAGE / "images"),
                                                                                    str(self.images)),
                               encoding="utf-8")
        self.picture = self.folder / "picture.png"
        self.process = subprocess.Popen([TOOL, "watch", self.layout, "-o", self.picture], stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True)
        self.addCleanup(self.end)
        self.lines = queue.Queue()
        self.reader = threading.Thread(target=lambda: [self.lines.put(line) for line in self.process.stdout])
        self.reader.start()

    def end(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.reader.join()
        self.process.stdout.close()

    def change(self, old, new):
        """As editors do: a new file takes the old one's place."""
        text = self.layout.read_text(encoding="utf-8")
        self.assertIn(old, text)
        other = self.folder / "pinpad.xml~"
        other.write_text(text.replace(old, new), encoding="utf-8")
        os.replace(other, self.layout)

    def next_drawing(self):
        """The lines up to the one that tells of a drawing."""
        lines = [self.lines.get(timeout=TIMEOUT)]
        while " ms)" not in lines[-1]:
            lines.append(self.lines.get(timeout=TIMEOUT))
        return lines

    def test_draws_again_when_the_file_is_replaced(self):
        self.assertRegex(self.next_drawing()[-1], r"pinpad.xml: drawn to .*picture.png, 0 findings \([0-9]+ ms\)\n")
        first = self.picture.read_bytes()
        self.change('value="5"', 'value="S"')
        self.assertIn("0 findings", self.next_drawing()[-1])
        self.assertNotEqual(first, self.picture.read_bytes())

    def test_draws_again_when_the_file_is_written_in_place(self):
        self.next_drawing()
        first = self.picture.read_bytes()
        self.layout.write_text(self.layout.read_text(encoding="utf-8").replace('value="5"', 'value="S"'),
                               encoding="utf-8")
        self.next_drawing()
        self.assertNotEqual(first, self.picture.read_bytes())

    def test_draws_again_when_an_image_changes(self):
        self.next_drawing()
        first = self.picture.read_bytes()
        os.replace(self.images / "standard-focus-on-panel-135x69.tga", self.images / "standard-key-on-panel-135x69.tga")
        lines = self.next_drawing()
        self.assertIn(": image: ", lines[0])
        self.assertNotEqual(first, self.picture.read_bytes())

    def test_shows_findings_and_goes_on(self):
        self.next_drawing()
        self.change('<fonts>', '<fonts')
        lines = self.next_drawing()
        self.assertIn(": xml: ", lines[0])
        self.assertIn("not drawn: ", lines[-1])
        self.change('<fonts', '<fonts>')
        self.assertIn("0 findings", self.next_drawing()[-1])

    def test_ends_with_the_interrupt_key(self):
        self.next_drawing()
        self.process.send_signal(signal.SIGINT)
        self.assertEqual(0, self.process.wait(timeout=TIMEOUT))


if __name__ == "__main__":
    unittest.main()
