"""What executes the documents' blocks finds what is wrong with them."""
import os
import unittest

from execution import ACTIONS
from markdown import blocks_of
from sandbox import Sandbox


def problems(info, text, sandbox=None):
    block = blocks_of("a.md", f"```{info}\n{text}\n```\n")[0]
    return ACTIONS[block.language](block, sandbox)


class Execution(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sandbox = Sandbox(os.environ["VAULTPAD_BUILD"])
        cls.addClassCleanup(cls.sandbox.__exit__)

    def test_commands_run_in_a_copy_of_the_sources_and_fail_with_their_first_failure(self):
        self.assertEqual([], problems("sh", "test -f README.md && test ! -e .git && touch new", self.sandbox))
        self.assertRegex(problems("sh", "false\ntrue", self.sandbox)[0], "ends with 1")
        self.assertRegex(problems("sh", "false | true", self.sandbox)[0], "ends with 1")

    def test_what_a_command_writes_is_compared(self):
        self.assertEqual([], problems("console", "$ echo one\none\n$ echo t w o\nt...o", self.sandbox))
        self.assertEqual(1, len(problems("console", "$ echo one\none\n$ echo two\nthree", self.sandbox)))
        self.assertEqual(1, len(problems("console", "$ echo one >&2; false\none", self.sandbox)))

    def test_programs_have_to_compile(self):
        self.assertEqual([], problems("c", "#include <vaultpad/vaultpad.h>\nint f(void) { return CsapiVPADclose(); }"))
        self.assertEqual(1, len(problems("c", "int f(void) { return CsapiVPADclose(); }")))

    def test_the_host_platform_has_to_take_key_files(self):
        self.assertEqual([], problems("ini", "[sound]\nvolume=3", self.sandbox))
        self.assertRegex(problems("ini", "[sound]\nvolume=300", self.sandbox)[0], "must be 0..100")

    def test_elements_have_to_stand_in_the_resources(self):
        self.assertEqual([], problems("xml", '<item id="main.key.a" text="a"/>'))
        self.assertEqual(1, len(problems("xml", '<item id="main.key.a" text="b"/>')))

    def test_commands_do_not_pass_for_text(self):
        self.assertEqual([], problems("text", "id = page"))
        self.assertEqual(1, len(problems("text", "./run")))
        self.assertEqual(1, len(problems("text", "$ ls")))


if __name__ == "__main__":
    unittest.main()
