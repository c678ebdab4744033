"""The summary of a long run: figures as the parts print them, and no summary when one is missing."""
import tempfile
import unittest
from pathlib import Path

import figures

SOAK = """key names, EFL stays up: too few sessions to judge the memory by

sessions                       325 after warm-ups of 192, in 4.0 minutes
decrypted as typed             346
longest session                1.5 s
TA killed                      35
failed: cynara_check           3
failed: vconf_get_int          4
helper killed                  38

growth                           sessions  allocated/session   resident/session    windows/session
key names, EFL comes and goes         175             1131 B           2000 B               0.00
key names, EFL stays up                75            -7986 B           3000 B               0.00
plain                                  75           188000 B         200000 B               1.10

findings                       0
"""
LOGS = {
    "faults": "PlainFamilyPinPadSilent: 20 calls failed one by one, 40 sessions survived\n"
              "PlainFamilyPinPadSilent: 300 allocations failed one by one, 600 sessions survived, std::bad_alloc reached "
              "the client from 4\n",
    "soak": SOAK,
    "soak-speaking": SOAK.replace("helper killed ", "voice maker killed "),
    "fuzz": "fuzzer             executions   coverage   findings\nta-answer               59783        120          0\n",
    "hostile-voice": "endless: 12 pads in 7.5 seconds\n",
}


class Figures(unittest.TestCase):
    def summary(self, **changed):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**LOGS, **changed}.items():
                Path(folder, f"{name}.log").write_text(text, encoding="utf-8")
            return figures.figures(folder)

    def test_every_figure_of_the_parts_is_in_the_summary(self):
        summary = self.summary()
        for row in ("| PlainFamilyPinPadSilent | 20 | 300 |", "| all | 20 | 300 |", "Sessions survived: 640,",
                    "| sessions in one client | 325, after warm-ups of 192 | 325, after warm-ups of 192 |",
                    "| decrypted, and as typed | 346 | 346 |",
                    "| kills of the TA, of the helper, of the voice maker | 35, 38, 0 | 35, 0, 38 |",
                    "| platform calls that failed, in sessions of their own | 7, in 2 functions | 7, in 2 functions |",
                    "| allocated per session, EFL up and down with each | 1131 bytes | 1131 bytes |",
                    "| -7986 bytes (too few sessions to judge) |", "| findings | 0 | 0 |", "| ta-answer | 59783 | 0 |",
                    "| endless | 12 | 7.5 |"):
            self.assertIn(row, summary)

    def test_a_part_without_its_figures_is_named(self):
        for name in LOGS:
            with self.assertRaisesRegex(figures.MissingFigure, f"{name}.log: no line is like"):
                self.summary(**{name: "Killed\n"})


if __name__ == "__main__":
    unittest.main()
