"""A copy of the sources, beside the build that is tested, in which a document's commands may write what they like."""
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from markdown import ROOT

TIMEOUT = 900  # seconds; a command may find something to build


class Sandbox:
    def __init__(self, build):
        self.holder = tempfile.mkdtemp(prefix="vaultpad-documents-")
        self.root = Path(self.holder) / "sources"
        shutil.copytree(ROOT, self.root, symlinks=True, ignore=self._left_out)
        (self.root / "build").mkdir()
        (self.root / "build/dev").symlink_to(build)
        for folder in ("home", "runtime"):
            (Path(self.holder) / folder).mkdir(mode=0o700)

    @staticmethod
    def _left_out(folder, names):
        return [name for name in names if name in (".git", "__pycache__")
                or (Path(folder) == ROOT and name in ("build", "frames"))]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.holder)

    def environment(self):
        kept = {name: value for name, value in os.environ.items()
                if not name.startswith(("VAULTPAD_", "LC_", "LANG"))}
        return {**kept, "HOME": f"{self.holder}/home", "XDG_RUNTIME_DIR": f"{self.holder}/runtime", "LC_ALL": "C.UTF-8",
                "PATH": f"{self.root}/build/dev/bin:{os.environ['PATH']}"}

    def run(self, command):
        """Runs a command of Bash without a terminal. Returns its exit code and all that it wrote."""
        result = subprocess.run(["bash", "-eu", "-o", "pipefail", "-c", command], cwd=self.root, timeout=TIMEOUT,
                                env=self.environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, text=True)
        return result.returncode, result.stdout
