# SPDX-License-Identifier: MIT
"""The recipe for several machines: two hosts that are this one, each reached through an SSH server of the test."""
import os
import shutil
import socket
import subprocess
import time
import unittest

from launcher import posix_only
from test_recipes import FYRNSUM, RecipeCase

SERVER = shutil.which("sshd", path="/usr/sbin:/usr/bin")


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


@posix_only
@unittest.skipUnless(SERVER and shutil.which("ssh") and shutil.which("parallel"), "needs GNU parallel and OpenSSH")
@unittest.skipUnless(os.geteuid() == 0, "needs to be root, as whom the servers let themselves be reached")
class SeveralMachines(RecipeCase):
    def setUp(self):
        super().setUp()
        os.makedirs("/run/sshd", exist_ok=True)
        self.keys = self.path(".keys")
        os.mkdir(self.keys, 0o700)
        for name in ("host", "user"):
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", f"{self.keys}/{name}"], check=True)
        shutil.copy(f"{self.keys}/user.pub", f"{self.keys}/authorized")
        self.hosts = {name: free_port() for name in ("alpha", "beta")}
        for name, port in self.hosts.items():
            self.start_server(name, port)
        self.write_client()

    def start_server(self, name, port):
        """A server whose sessions find a fyrnsum of their own, which notes that it was used."""
        tools = self.path(f".{name}")
        os.mkdir(tools)
        with open(f"{tools}/fyrnsum", "w", encoding="utf-8") as script:
            script.write(f'#!/bin/sh\necho run >> "{tools}/used"\nexec "{FYRNSUM}" "$@"\n')
        os.chmod(f"{tools}/fyrnsum", 0o755)
        options = (f"Port={port}", "ListenAddress=127.0.0.1", f"HostKey={self.keys}/host", "StrictModes=no",
                   f"AuthorizedKeysFile={self.keys}/authorized", "PidFile=none", "UsePAM=no", "PermitRootLogin=yes",
                   "PasswordAuthentication=no", f"SetEnv=PATH={tools}:/usr/bin:/bin")
        server = subprocess.Popen([SERVER, "-D", "-e", "-f", "/dev/null", *(f"-o{option}" for option in options)],
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)

    def write_client(self):
        hosts = "".join(f"Host {name}\n  Port {port}\n" for name, port in self.hosts.items())
        self.write(".keys/config", f"{hosts}Host *\n  HostName 127.0.0.1\n  User root\n  IdentityFile {self.keys}/user\n"
                                   "  IdentitiesOnly yes\n  StrictHostKeyChecking no\n  BatchMode yes\n  LogLevel ERROR\n"
                                   f"  UserKnownHostsFile {self.keys}/known\n".encode())
        self.write(".tools/ssh", f'#!/bin/sh\nexec /usr/bin/ssh -F {self.keys}/config "$@"\n'.encode())
        os.chmod(self.path(".tools/ssh"), 0o755)

    def wait_for_servers(self):
        for name in self.hosts:
            for _ in range(100):
                if subprocess.run([self.path(".tools/ssh"), name, "true"], check=False, capture_output=True,
                                  stdin=subprocess.DEVNULL).returncode == 0:
                    break
                time.sleep(0.1)
            else:
                self.fail(f"the server {name} does not answer")

    def test_two_machines_make_the_same_list(self):
        for number in range(40):
            self.write(f"photos/many/{number:02}.jpg", b"%d" % number)
        self.make_list()
        self.wait_for_servers()
        self.assertEqual(self.cook("Use several machines"), "the same\n")
        for name in self.hosts:
            self.assertTrue(os.path.exists(self.path(f".{name}", "used")), f"{name} did nothing")


if __name__ == "__main__":
    unittest.main()
