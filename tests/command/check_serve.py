#!/usr/bin/env python3
"""Runs "zth4718 serve" on the simulated board: what it serves, to whom, and with which transfers.

usage: check_serve.py PROGRAM
"""

import concurrent.futures
import http.client
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

import openmetrics

PROGRAM = pathlib.Path(sys.argv[1]).absolute()
faults = []

# 5Ah - 40h and two quarters are 26.5 °C; 0410h counts of 1/90000 s are 5192 rpm; 80h of FFh is 50 %; C0h is the nominal
# 4 V of VBatt; Tmin is 72h - 40h.
KNOWN = """noise = 0
revision = 1
set-up = 0x07 0xFF 0x5D 0x72
fault at 0 register 0x8A stuck at 0x80 on usb
fault at 0 register 0x8B stuck at 0x5A on usb
fault at 0 register 0x9A stuck at 0x10 on usb
fault at 0 register 0x9B stuck at 0x04 on usb
fault at 0 register 0xAB stuck at 0x80 on usb
fault at 0 register 0x93 stuck at 0xC0 on usb
"""
EXPECTED = {("zth4718_temperature_celsius", "Remote1"): 26.5, ("zth4718_fan_speed_rpm", "Tach2"): 5192,
            ("zth4718_duty_ratio", "PWM2"): 0.5, ("zth4718_voltage_volts", "VBatt"): 4,
            ("zth4718_tmin_celsius", "Remote1"): 50}


def expect(holds: bool, what: str) -> None:
    if not holds:
        faults.append(what)


class Server:
    """A serve of its own, with its board's settings."""

    def __init__(self, folder: str, name: str, settings: str, *options: str, listen: str = "127.0.0.1:0"):
        file = pathlib.Path(folder, name + ".conf")
        file.write_text(settings)
        environment = os.environ | {"HOME": folder, "ZTH4718_SIMULATOR": str(file)}
        self.process = subprocess.Popen([PROGRAM, "--board", "simulated", *options, "serve", "--listen", listen],
                                        env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def ready(self) -> int:
        line = self.process.stdout.readline()
        found = re.fullmatch(r"Serving 58@usb, 2c@smbus at http://127\.0\.0\.1:(\d+)/metrics\n", line)
        expect(found is not None, f"the first line is {line!r}")
        self.port = int(found.group(1)) if found else 1
        time.sleep(1.5)  # a round of the monitor
        return self.port

    def get(self, path: str = "/metrics", method: str = "GET", **headers: str):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=10)
        connection.request(method, path, body=headers.pop("body", None), headers=headers)
        answer = connection.getresponse()
        text = answer.read().decode()
        connection.close()
        return answer.status, answer.getheader("Content-Type", ""), text

    def end(self, number: int = signal.SIGTERM) -> None:
        self.process.send_signal(number)
        try:
            _, error = self.process.communicate(timeout=20)
            expect(self.process.returncode == 0, f"{number}: status {self.process.returncode}, {error}")
        except subprocess.TimeoutExpired:
            faults.append(f"{number} does not end it")
            self.process.kill()


def check_pages(server: Server) -> None:
    status, kind, text = server.get()
    expect((status, kind) == (200, "application/openmetrics-text; version=1.0.0; charset=utf-8"), f"{status} {kind}")
    samples = openmetrics.parse(text)
    for (name, sensor), value in EXPECTED.items():
        key = (name, frozenset({("device", "58@usb"), ("board", "Simulated board"), ("sensor", sensor)}))
        expect(samples.get(key) == value, f"{name} of {sensor} is {samples.get(key)}, not {value}")
    for name in ("zth4718_up", "zth4718_transfers_total", "zth4718_failed_transfers_total"):
        expect(sum(key[0] == name for key in samples) == 2, f"{name} is not there for each chip")
    status, kind, text = server.get(Accept="text/plain;version=0.0.4")
    expect(kind == "text/plain; version=0.0.4; charset=utf-8" and "# EOF" not in text, f"for text: {kind}")
    expect(server.get(Accept="application/openmetrics-text,text/plain;q=0.5")[1].startswith("application/"), "Accept")
    for path in ("/", "/healthz", "/healthz?verbose"):
        status, _, text = server.get(path)
        expect(status == 200 and "58@usb (Simulated board): answers; polled since 2" in text, f"{path}: {status} {text}")
    expect(server.get(method="HEAD")[0::2] == (200, ""), "HEAD")
    expect(server.get("/other")[0] == 404 and server.get("/metrics/")[0] == 404, "404")
    for method in ("POST", "PUT", "DELETE", "OPTIONS", "write"):
        expect(server.get(method=method, body="x" * 100000)[0] == 405, method)


def raw(port: int, text: bytes) -> bytes:
    with socket.create_connection(("127.0.0.1", port), timeout=10) as client:
        client.sendall(text)
        client.shutdown(socket.SHUT_WR)
        answer = b""
        while part := client.recv(65536):
            answer += part
        return answer


def check_broken_clients(server: Server) -> None:
    get = b"GET /healthz HTTP/1.1\r\nHost: a\r\n"
    cases = [(b"GET /metrics\r\n\r\n", 400), (b"GET / HTTP/2.0\r\nHost: a\r\n\r\n", 505), (b"\x16\x03\x01\x02\n\n", 400),
             (b"GET  / HTTP/1.1\r\nHost: a\r\n\r\n", 400), (b"GET / HTTP/1.1\r\n\r\n", 400), (get + b"no field\r\n\r\n", 400),
             (get + b" folded: x\r\n\r\n", 400), (get + b"a: \0\r\n\r\n", 400), (get + b"a: " + b"x" * 9000, 431),
             (get + b"a: b\r\n" * 3000 + b"\r\n", 431), (b"G" * 20000, 431), (get + b"\r\n", 200),
             (b"GET http://host/healthz HTTP/1.0\n\n", 200), (b"\r\n" + get + b"Accept: */*\r\n\r\n", 200)]
    for text, status in cases:
        answer = raw(server.port, text)
        expect(answer.startswith(b"HTTP/1.1 %d " % status), f"{text[:40]!r}: {answer[:40]!r} in place of {status}")
    expect(raw(server.port, b"") == b"" and raw(server.port, get) == b"", "an answer to no request")
    expect(raw(server.port, 3 * (get + b"\r\n")).count(b"HTTP/1.1 200 OK") == 3, "three requests in one go")


def check_crowd(server: Server) -> None:
    """Clients that say nothing, or a letter now and then, or read nothing keep nobody else waiting."""
    crowd = [socket.create_connection(("127.0.0.1", server.port)) for _ in range(200)]
    began = time.monotonic()
    for number, client in enumerate(crowd):
        try:
            client.settimeout(0.2)
            client.sendall((b"", b"GET /met", b"GET /metrics HTTP/1.1\r\nHost: a\r\n\r\n" * 50)[number % 3])
        except OSError:
            pass  # pushed out already
    slowest = 0.0
    while time.monotonic() - began < 7:
        for client in crowd[1::3]:
            try:
                client.sendall(b"r")
            except OSError:
                pass
        start = time.monotonic()
        expect(server.get("/healthz")[0] == 200, "no answer in a crowd")
        slowest = max(slowest, time.monotonic() - start)
        time.sleep(0.2)
    expect(slowest < 2, f"an answer in a crowd took {slowest:.1f} s")
    expect(files(server) < 100, f"{files(server)} files are open in a crowd")
    for client in crowd:
        client.close()
    # One that is silent, and one that never ends its request, are sent away, however busy the latter is.
    silent = socket.create_connection(("127.0.0.1", server.port), timeout=20)
    slow = socket.create_connection(("127.0.0.1", server.port), timeout=20)
    began = time.monotonic()
    try:
        while time.monotonic() - began < 20:
            slow.sendall(b"G")
            time.sleep(0.2)
    except OSError:
        pass
    expect(4 < time.monotonic() - began < 15, f"a slow client stayed for {time.monotonic() - began:.1f} s")
    expect(silent.recv(1) == b"", "a silent client stayed")
    expect(files(server) < 40, f"{files(server)} files are open after the crowd")


def files(server: Server) -> int:
    return len(os.listdir(f"/proc/{server.process.pid}/fd"))


def transfers(file: str) -> list[str]:
    """The monitor's calls, without times and results."""
    lines = pathlib.Path(file).read_text().splitlines()
    return [re.sub(r"^\S+\s+", "", line).split("->")[0].strip() for line in lines if "monitor" in line]


def chip_of(call: str) -> tuple[str, str]:
    """Its bus and address."""
    words = call.split()
    return words[0], words[2]


def check_scrapes(folder: str, quiet: Server, busy: Server) -> None:
    answers = []
    ends = threading.Event()

    def scrape() -> None:
        connection = http.client.HTTPConnection("127.0.0.1", busy.port, timeout=10)
        while not ends.wait(0.01):
            connection.request("GET", "/metrics")
            answer = connection.getresponse()
            answers.append((answer.status, answer.read()))
        connection.close()

    clients = [threading.Thread(target=scrape) for _ in range(2)]
    for client in clients:
        client.start()
    time.sleep(5)
    ends.set()
    for client in clients:
        client.join()
    for server in (quiet, busy):
        server.end(signal.SIGINT)
    expect(len(answers) > 250 and all(status == 200 for status, _ in answers), f"{len(answers)} answers in 5 s")
    alone, scraped = transfers(f"{folder}/quiet.txt"), transfers(f"{folder}/busy.txt")
    print(f"{len(alone)} transfers without a scrape, {len(scraped)} with {len(answers)}")
    # On a busy machine ticks are late, and then the two chips' turns may come in another order: each is looked at alone.
    for chip in sorted({chip_of(call) for call in alone + scraped}):
        ones, others = ([call for call in calls if chip_of(call) == chip] for calls in (alone, scraped))
        common = min(len(ones), len(others))
        expect(common > 50 and ones[:common] == others[:common], f"scrapes change the transfers of {chip}")
    expect(len(scraped) <= 1.2 * len(alone) + 20, f"{len(scraped)} transfers with scrapes, {len(alone)} without")


def check_failing(server: Server) -> None:
    """Its adapter is unplugged ten seconds after the start."""
    end = time.monotonic() + 20
    while server.get("/healthz")[0] == 200 and time.monotonic() < end:
        time.sleep(0.2)
    status, _, text = server.get("/")
    expect(status == 503 and "58@usb (Simulated board): does not answer" in text, f"unplugged: {status} {text}")
    expect("2c@smbus (Simulated board): answers" in text, text)
    devices = {name: {value for key in openmetrics.parse(server.get()[2]) if key[0] == name for label, value in key[1]
                      if label == "device"} for name in ("zth4718_temperature_celsius", "zth4718_up")}
    expect(devices["zth4718_temperature_celsius"] == {"2c@smbus"}, f"readings of {devices}")
    expect(devices["zth4718_up"] == {"58@usb", "2c@smbus"}, f"up of {devices}")


def check_port_in_use(folder: str, server: Server) -> None:
    second = Server(folder, "second", KNOWN, listen=f"127.0.0.1:{server.port}")
    out, error = second.process.communicate(timeout=20)
    expect(second.process.returncode == 2 and out == "" and error.count("\n") == 1 and "in use" in error,
           f"a port in use: {second.process.returncode} {error}")


def main() -> int:
    faults.extend(openmetrics.self_test())
    with tempfile.TemporaryDirectory() as folder:
        known = Server(folder, "known", KNOWN)
        quiet = Server(folder, "quiet", "noise = 0\n", "--record", f"{folder}/quiet.txt")
        busy = Server(folder, "busy", "noise = 0\n", "--record", f"{folder}/busy.txt")
        failing = Server(folder, "failing", "fault at 10 adapter unplugged\n")
        with concurrent.futures.ThreadPoolExecutor() as pool:
            list(pool.map(Server.ready, (known, quiet, busy, failing)))
        check_scrapes(folder, quiet, busy)
        check_pages(known)
        check_broken_clients(known)
        check_port_in_use(folder, known)
        check_failing(failing)
        check_crowd(known)
        check_pages(known)
        known.end()
        failing.end()
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
