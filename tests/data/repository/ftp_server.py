#!/usr/bin/python3
"""A pyftpdlib server on loopback for the repository tests.

Usage: ftp_server.py ROOT [--port N] [--user U --password P] [--drop-retr NAME] [--refuse-rename]
Prints the port it listens on as one line, then serves until it is killed.
--drop-retr NAME   closes the connection after a few bytes whenever a file called NAME is downloaded
--refuse-rename    answers every RNTO with 550
--stall-retr NAME  starts the download of a file called NAME and then sends nothing, as a hung server
"""
import argparse
import logging
import warnings
import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root")
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--user", default="")
    parser.add_argument("--password", default="")
    parser.add_argument("--drop-retr", default="")
    parser.add_argument("--refuse-rename", action="store_true")
    parser.add_argument("--stall-retr", default="")
    args = parser.parse_args()

    warnings.simplefilter("ignore")
    authorizer = DummyAuthorizer()
    if args.user:
        authorizer.add_user(args.user, args.password, args.root, perm="elradfmwMT")
    else:
        authorizer.add_anonymous(args.root, perm="elradfmwMT")

    class Handler(FTPHandler):
        def ftp_RETR(self, file):
            if args.drop_retr and file.replace("\\", "/").rsplit("/", 1)[-1] == args.drop_retr:
                # As a server that dies mid-transfer: the reply starts, then the connection is gone.
                self.respond("150 File status okay. About to open data connection.")
                self.close()
                return
            if args.stall_retr and file.replace("\\", "/").rsplit("/", 1)[-1] == args.stall_retr:
                self.respond("150 File status okay. About to open data connection.")
                return
            return super().ftp_RETR(file)

        def ftp_RNTO(self, path):
            if args.refuse_rename:
                self.respond("550 Rename refused.")
                return
            return super().ftp_RNTO(path)

    Handler.authorizer = authorizer
    Handler.auth_failed_timeout = 0.1  # a refused login answers at once
    Handler.use_encoding = "utf8"
    logging.basicConfig(level=logging.WARNING, stream=sys.stderr)
    server = FTPServer(("127.0.0.1", args.port), Handler)
    print(server.socket.getsockname()[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    main()
