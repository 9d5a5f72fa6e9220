"""Asks the server behind `kelvar view` what it may not answer, and much at once: view_server.py KELVAR PROJECT"""

import os
import re
import signal
import socket
import subprocess
import sys
import time

CONNECTIONS = 1000
HUGE = 64 << 20
SLOW = 40


class Server:
    def __init__(self, kelvar, project):
        self.process = subprocess.Popen([kelvar, "view", project, "--no-open"], stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip()
        self.port, self.token = re.fullmatch(r"http://127\.0\.0\.1:(\d+)/\?token=([0-9a-f]{32})", self.address).groups()

    def open_files(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def connect(self):
        return socket.create_connection(("127.0.0.1", int(self.port)), timeout=60)

    def request(self, target, method="GET", host=None, **headers):
        lines = [f"{method} {target} HTTP/1.1", f"Host: {host or '127.0.0.1:' + self.port}", "Connection: close"]
        lines += [f"{name.replace('_', '-')}: {value}" for name, value in headers.items()]
        return ("\r\n".join(lines) + "\r\n\r\n").encode()

    def ask(self, data):
        with self.connect() as connection:
            connection.sendall(data)
            return received(connection)


def received(connection):
    """The status of an answer; `closed` where there is none."""
    answer = b""
    try:
        while piece := connection.recv(65536):
            answer += piece
    except ConnectionError:
        pass
    return answer.split(b" ", 2)[1].decode() if answer.startswith(b"HTTP/") else "closed"


def ask_hugely(server, start, end=b""):
    """What comes of a request of 64 MiB more than a server has to read: its status, or `closed` where it let go."""
    with server.connect() as connection:
        try:
            connection.sendall(start)
            for _ in range(HUGE >> 16):
                connection.sendall(b"x" * (1 << 16))
            connection.sendall(end)
        except ConnectionError:
            pass  # it need not read on
        return received(connection)


def memory(server):
    """MiB at most so far."""
    status = open(f"/proc/{server.process.pid}/status", encoding="ascii").read()
    return int(re.search(r"VmHWM:\s+(\d+) kB", status).group(1)) >> 10


def ask_slowly(server):
    """Requests whose headers come a byte at a time: what others get meanwhile, and whether the slow ones are let go."""
    slow = [server.connect() for _ in range(SLOW)]
    request = server.request("/data/program", X_Kelvar_Token=server.token)
    meanwhile = set()
    left = slow
    begin = time.monotonic()
    for at in range(60):
        still = []
        for connection in left:
            try:
                connection.sendall(request[at:at + 1])
                still.append(connection)
            except ConnectionError:
                pass
        left = still
        meanwhile.add(server.ask(server.request("/data/version", X_Kelvar_Token=server.token)))
        if not left:
            break
        time.sleep(0.4)
    took = time.monotonic() - begin
    for connection in slow:
        connection.close()
    return sorted(meanwhile), not left and took < 24


def main(kelvar, project):
    server = Server(kelvar, project)
    mine = {"X_Kelvar_Token": server.token}
    page = f"/?token={server.token}"
    cases = {
        "the page": server.request(page),
        "its data": server.request("/data/program", **mine),
        "no token": server.request("/data/program"),
        "another token": server.request("/?token=" + "0" * 32),
        "another host": server.request(page, host="evil.example"),
        "another origin": server.request("/data/program", Origin="http://evil.example", **mine),
        "another method": server.request("/data/program", method="DELETE", **mine),
        "a file": server.request("/etc/passwd", **mine),
        "a source outside": server.request("/data/source?file=%2Fetc%2Fpasswd", **mine),
        "a climb": server.request("/data/source?file=..%2F..%2Fetc%2Fpasswd", **mine),
        "a long header": server.request("/data/program", X_Long="x" * 100000, **mine),
        "a body": server.request("/data/program", Content_Length="5", **mine) + b"hello",
        "no request": b"\0\xff\r\n\r\n",
    }
    for name, data in cases.items():
        print(f"{name}: {server.ask(data)}")

    files = server.open_files()
    before = memory(server)
    for name, start in (("a huge header", server.request("/data/program", **mine)[:-2] + b"X-Long: "), ("a huge address", b"GET /data/rows?text="),
                        ("a huge body", server.request("/data/program", Content_Length=str(HUGE), **mine))):
        answer = ask_hugely(server, start, b"\r\n\r\n")
        print(f"{name}:", "refused" if answer in ("closed", "400", "413", "414", "431") else answer)
    print("memory:", "no more" if memory(server) - before < 16 else f"{memory(server) - before} MiB more")
    meanwhile, gone = ask_slowly(server)
    print("slow ones:", "let go" if gone else "kept", "- others meanwhile:", *meanwhile)
    connections = [server.connect() for _ in range(CONNECTIONS)]
    for connection in connections:
        try:
            connection.sendall(server.request("/data/version", **mine))
        except ConnectionError:
            pass  # one too many
    answers = [received(connection) for connection in connections]
    for connection in connections:
        connection.close()
    served = answers.count("200")
    print("at once:", "each served or let go" if served >= 100 and served + answers.count("closed") == CONNECTIONS else answers)
    print("then:", server.ask(server.request("/data/version", **mine)))
    end = time.monotonic() + 30
    while server.open_files() > files and time.monotonic() < end:
        time.sleep(0.05)
    print("files left open:", max(0, server.open_files() - files))
    server.process.send_signal(signal.SIGINT)
    print("ends with", server.process.wait(30))


main(*sys.argv[1:])
