#!/usr/bin/python3
"""A pyftpdlib server on loopback for the repository tests, with faults a real site shows.

Usage: ftp_server.py ROOT [--port N] [--user U --password P] [FAULT ...]
Prints the port it listens on as one line, then serves until it is killed. One thread per connection, so
that clients really meet on the site at the same time. GLOB is matched against the file's name, or against
its whole path on the site (from "/") when it holds a "/".

--drop-retr GLOB        closes the connection whenever such a file is downloaded, as a server that dies mid-transfer
--drop-first-retr GLOB  the same for the first download of such a file only (a site restarted under the client)
--stall-retr GLOB       starts the download of such a file and then sends nothing, as a hung server
--fail-first-stor GLOB  answers the first upload of such a file with 451
--refuse-stor GLOB      answers every upload of such a file with 550
--cut-stor GLOB         keeps the first 10 bytes of an upload of such a file, then breaks the transfer off
--slow-retr GLOB        waits 0.3 s before it answers a download of such a file (widens races)
--endless-retr GLOB     gives no SIZE for such a file and sends 64 MiB when it is downloaded
--slow-rename GLOB      waits 0.3 s before it answers RNFR of such a file (widens races)
--refuse-rename         answers every RNTO with 550
--no-mlsd               knows no MLSD, as older servers: listings need LIST
--fail-lists N          answers the first N MLSD and LIST commands with 451
--refuse-pasv           knows no passive mode (PASV, EPSV): only active transfers work
--lie-list TYPE:NAME    adds an entry NAME (TYPE "file" or "dir") to every listing
--relay-lock GLOB       such a lock file passes from one other host to the next every 4 downloads (three
                        hosts), then is gone: a lock that is never abandoned, only handed on
"""
import argparse
import fnmatch
import logging
import os
import sys
import threading
import time
import warnings

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.filesystems import AbstractedFS
from pyftpdlib.handlers import FileProducer, FTPHandler
from pyftpdlib.servers import ThreadedFTPServer


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root")
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--user", default="")
    parser.add_argument("--password", default="")
    for glob_option in ("drop-retr", "drop-first-retr", "stall-retr", "fail-first-stor", "refuse-stor",
                        "cut-stor", "slow-retr", "endless-retr", "slow-rename", "relay-lock"):
        parser.add_argument("--" + glob_option, default="")
    parser.add_argument("--refuse-rename", action="store_true")
    parser.add_argument("--no-mlsd", action="store_true")
    parser.add_argument("--fail-lists", type=int, default=0)
    parser.add_argument("--refuse-pasv", action="store_true")
    parser.add_argument("--lie-list", action="append", default=[])
    args = parser.parse_args()

    warnings.simplefilter("ignore")
    authorizer = DummyAuthorizer()
    if args.user:
        authorizer.add_user(args.user, args.password, args.root, perm="elradfmwMT")
    else:
        authorizer.add_anonymous(args.root, perm="elradfmwMT")

    lock = threading.Lock()
    firsts_taken = set()
    lists_failed = [0]
    relay_reads = [0]
    relay_holders, relay_reads_each = 3, 4

    def matches(glob, fs, path):
        if not glob:
            return False
        virtual = fs.fs2ftp(path)
        return fnmatch.fnmatchcase(virtual if "/" in glob else virtual.rsplit("/", 1)[-1], glob)

    def first_time(kind, path):
        with lock:
            if (kind, path) in firsts_taken:
                return False
            firsts_taken.add((kind, path))
            return True

    class CutFile:
        """A file open for writing that keeps 10 bytes and then fails, as an upload broken off."""

        def __init__(self, inner):
            self.inner = inner
            self.name = inner.name
            self.closed = False

        def write(self, data):
            self.inner.write(data[:10])
            self.inner.flush()
            raise OSError("transfer broken off")

        def close(self):
            self.closed = True
            self.inner.close()

    class Fs(AbstractedFS):
        def open(self, filename, mode):
            handle = super().open(filename, mode)
            if "w" in mode and matches(args.cut_stor, self, filename):
                return CutFile(handle)
            return handle

        def format_mlsx(self, basedir, listing, perms, facts, ignore_err=True):
            yield from super().format_mlsx(basedir, listing, perms, facts, ignore_err)
            for lie in args.lie_list:
                kind, name = lie.split(":", 1)
                yield ("type=%s;size=3; %s\r\n" % (kind, name)).encode("utf8")

        def format_list(self, basedir, listing, ignore_err=True):
            yield from super().format_list(basedir, listing, ignore_err)
            for lie in args.lie_list:
                kind, name = lie.split(":", 1)
                yield ("%s 1 owner group 3 Jan 01 2020 %s\r\n" % (
                    "drwxr-xr-x" if kind == "dir" else "-rw-r--r--", name)).encode("utf8")

    class Endless:
        """Sixty-four MiB of bytes, far beyond what SIZE told."""

        def __init__(self):
            self.left = 64 * 1024 * 1024
            self.name = "endless"
            self.closed = False

        def read(self, size=65536):
            size = min(size, self.left)
            self.left -= size
            return b"x" * size

        def seek(self, *unused):
            return 0

        def close(self):
            self.closed = True

    class Handler(FTPHandler):
        def ftp_RETR(self, file):
            if matches(args.drop_retr, self.fs, file) or (
                    matches(args.drop_first_retr, self.fs, file) and first_time("retr", file)):
                self.respond("150 File status okay. About to open data connection.")
                self.close()
                return
            if matches(args.stall_retr, self.fs, file):
                self.respond("150 File status okay. About to open data connection.")
                return
            if matches(args.slow_retr, self.fs, file):
                time.sleep(0.3)
            if matches(args.relay_lock, self.fs, file):
                with lock:
                    holder = relay_reads[0] // relay_reads_each
                    relay_reads[0] += 1
                    if holder < relay_holders:
                        with open(file, "wb") as lock_file:
                            lock_file.write(b"10.9.9.%d(relay)\r\n" % holder)
                    elif holder == relay_holders:
                        try:
                            os.remove(file)
                        except FileNotFoundError:
                            pass
            if matches(args.endless_retr, self.fs, file):
                endless = Endless()
                self.push_dtp_data(FileProducer(endless, "i"), isproducer=True, file=endless, cmd="RETR")
                return
            return super().ftp_RETR(file)

        def ftp_SIZE(self, path):
            if matches(args.endless_retr, self.fs, path):
                self.respond("502 SIZE not implemented.")
                return
            return super().ftp_SIZE(path)

        def ftp_STOR(self, file, mode="w"):
            if matches(args.refuse_stor, self.fs, file):
                self.respond("550 Upload refused.")
                return
            if matches(args.fail_first_stor, self.fs, file) and first_time("stor", file):
                self.respond("451 Local error in processing.")
                return
            return super().ftp_STOR(file, mode)

        def ftp_RNFR(self, path):
            if matches(args.slow_rename, self.fs, path):
                time.sleep(0.3)
            return super().ftp_RNFR(path)

        def ftp_RNTO(self, path):
            if args.refuse_rename:
                self.respond("550 Rename refused.")
                return
            return super().ftp_RNTO(path)

        def listing_fails(self):
            with lock:
                if lists_failed[0] < args.fail_lists:
                    lists_failed[0] += 1
                    return True
            return False

        def ftp_MLSD(self, path):
            if args.no_mlsd:
                self.respond("500 Command \"MLSD\" not understood.")
                return
            if self.listing_fails():
                self.respond("451 Listing failed.")
                return
            return super().ftp_MLSD(path)

        def ftp_LIST(self, path):
            if self.listing_fails():
                self.respond("451 Listing failed.")
                return
            return super().ftp_LIST(path)

        def ftp_PASV(self, line):
            if args.refuse_pasv:
                self.respond("500 Command \"PASV\" not understood.")
                return
            return super().ftp_PASV(line)

        def ftp_EPSV(self, line):
            if args.refuse_pasv:
                self.respond("500 Command \"EPSV\" not understood.")
                return
            return super().ftp_EPSV(line)

    Handler.authorizer = authorizer
    Handler.abstracted_fs = Fs
    Handler.auth_failed_timeout = 0.1  # a refused login answers at once
    Handler.use_encoding = "utf8"
    logging.basicConfig(level=logging.CRITICAL, stream=sys.stderr)
    server = ThreadedFTPServer(("127.0.0.1", args.port), Handler)
    print(server.socket.getsockname()[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    main()
