"""A client of the emulated trusted application: sends blocks as they are, and reads what comes back."""
import fcntl
import os
import socket
import struct
import subprocess

MAGIC = 0x56504348
VERSION = 1
OPEN, INVOKE = 1, 2
BLOCKS_MAX = 4
SEALS = 0x0002 | 0x0004  # against shrinking and growing
TIMEOUT = 60  # seconds


class TaClient:
    def __init__(self, program):
        ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.channel = ours
        self.channel.settimeout(TIMEOUT)
        # The leak check attaches to the process like a debugger, which the program does not allow its own user.
        environment = os.environ if os.geteuid() == 0 else {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}
        self.process = subprocess.Popen([program, "--channel", str(theirs.fileno()), "--log", "none"],
                                        pass_fds=[theirs.fileno()], env=environment)
        theirs.close()

    def close(self):
        self.channel.close()
        self.process.wait(TIMEOUT)

    def open(self, uuid):
        return self._exchange(OPEN, 0, uuid, [], [])

    def invoke(self, event, content, sizes):
        """Sends blocks of these sizes, the first of which holds the content. Returns the result and the last block."""
        blocks = [self._block(size) for size in sizes]
        try:
            os.pwrite(blocks[0], content, 0)
            written = [len(content)] + [0] * (len(sizes) - 1)
            result = self._exchange(INVOKE, event, bytes(16), list(zip(sizes, written)), blocks)
            return result, os.pread(blocks[-1], sizes[-1], 0)
        finally:
            for block in blocks:
                os.close(block)

    @staticmethod
    def _block(size):
        block = os.memfd_create("block", os.MFD_CLOEXEC | os.MFD_ALLOW_SEALING)
        os.ftruncate(block, size)
        fcntl.fcntl(block, fcntl.F_ADD_SEALS, SEALS)
        return block

    def _exchange(self, kind, event, uuid, blocks, descriptors):
        words = [number for block in blocks for number in block]
        words += [0] * (2 * BLOCKS_MAX - len(words))
        request = struct.pack("=4I16sI", MAGIC, VERSION, kind, event, uuid, len(blocks)) + struct.pack("=8I", *words)
        socket.send_fds(self.channel, [request], descriptors)
        magic, _, result = struct.unpack("=IIi", self.channel.recv(12))
        if magic != MAGIC:
            raise RuntimeError("the reply is none of the channel's")
        return result
