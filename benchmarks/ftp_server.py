"""An FTP server on loopback over one folder: ftp_server.py FOLDER USER PASSWORD

Prints its port once it can be reached. Debian's Python has the server's library."""

import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.log import config_logging
from pyftpdlib.servers import FTPServer


def main():
    folder, user, password = sys.argv[1:]
    config_logging(level=40)
    users = DummyAuthorizer()
    users.add_user(user, password, folder, perm="elrd")
    FTPHandler.authorizer = users
    server = FTPServer(("127.0.0.1", 0), FTPHandler)
    print(server.socket.getsockname()[1], flush=True)
    server.serve_forever()


main()
