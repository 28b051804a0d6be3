"""An FTP server on a folder, on loopback: prints its port once it listens, then serves until killed.

    file_server.py FOLDER USER PASSWORD [--paper FILE] [--old-tls] [--clear-data] [--speed BYTES]

A paper (key and certificate) makes it require TLS, asked for before the log-in. With --old-tls it
speaks no newer one than 1.1; with --clear-data it protects the log-in and refuses to protect data.
With --speed it sends so much a second, unprotected, as over a poor line. Listings are sorted.
"""
import argparse
import logging

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.filesystems import AbstractedFS
from pyftpdlib.handlers import FTPHandler, ThrottledDTPHandler
from pyftpdlib.servers import FTPServer


class SortedFiles(AbstractedFS):
    def listdir(self, path):
        return sorted(super().listdir(path))


def protecting_handler(arguments):
    from OpenSSL import SSL
    from pyftpdlib.handlers import TLS_FTPHandler

    class Handler(TLS_FTPHandler):
        certfile = arguments.paper
        tls_control_required = True
        tls_data_required = not arguments.clear_data

        if arguments.clear_data:
            def ftp_PROT(self, line):
                self.respond("536 Data is never protected here.")

    if arguments.old_tls:
        context = SSL.Context(SSL.TLS_METHOD)
        context.set_min_proto_version(SSL.TLS1_1_VERSION)
        context.set_max_proto_version(SSL.TLS1_1_VERSION)
        context.set_cipher_list(b"ALL:@SECLEVEL=0")
        context.use_certificate_chain_file(arguments.paper)
        context.use_privatekey_file(arguments.paper)
        Handler.ssl_context = context
    return Handler


def main():
    parser = argparse.ArgumentParser()
    for name in ("folder", "user", "password"):
        parser.add_argument(name)
    parser.add_argument("--paper")
    parser.add_argument("--old-tls", action="store_true")
    parser.add_argument("--clear-data", action="store_true")
    parser.add_argument("--speed", type=int)
    arguments = parser.parse_args()

    logging.basicConfig(level=logging.CRITICAL)
    handler = protecting_handler(arguments) if arguments.paper else FTPHandler
    handler.authorizer = DummyAuthorizer()
    handler.authorizer.add_user(arguments.user, arguments.password, arguments.folder, "elrd")
    handler.auth_failed_timeout = 0
    handler.abstracted_fs = SortedFiles
    if arguments.speed:
        ThrottledDTPHandler.write_limit = arguments.speed
        handler.dtp_handler = ThrottledDTPHandler
    server = FTPServer(("127.0.0.1", 0), handler)
    print(server.socket.getsockname()[1], flush=True)
    server.serve_forever(handle_exit=False)


if __name__ == "__main__":
    main()
