#!/usr/bin/env python3
"""How long it takes from a program's start to its first picture: lumen-wall and mpv on the same file, in turns; and
from LD_Play of an RTSP source on this machine to its picture.

    bench/peers/start.py [--rounds 10]     needs a display without a window manager, mpv, ffmpeg, build/default, build/bench
"""
import argparse
import ctypes
import json
import os
import pathlib
import random
import statistics
import subprocess
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BIN = ROOT / "build/default/bin"
WIDTH, HEIGHT = 800, 600
SEES_LATER = 0.05  # seconds: the other client may see a key frame a little after the wall has shown it
BRIGHT = 0x60  # of green: neither program's own colours reach it


class Screen:
    """Looks at one point of the display."""

    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        for name in ("XOpenDisplay", "XGetImage"):
            getattr(self.x11, name).restype = ctypes.c_void_p
        self.x11.XGetPixel.restype = ctypes.c_ulong
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        self.root = self.x11.XDefaultRootWindow(self.display)

    def green(self, x, y):
        image = ctypes.c_void_p(self.x11.XGetImage(self.display, ctypes.c_ulong(self.root), x, y, 1, 1,
                                                   ctypes.c_ulong(0xFFFFFF), 2))
        pixel = self.x11.XGetPixel(image, 0, 0)
        self.x11.XFree(image)
        return pixel >> 8 & 0xFF, pixel

    def shows_green(self, x, y):
        green, pixel = self.green(x, y)
        return green > BRIGHT and (pixel >> 16 & 0xFF) < BRIGHT and (pixel & 0xFF) < BRIGHT


def make_clip(folder):
    clip = folder / "green.mp4"
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=green:size=1920x1080:rate=25:duration=20",
                    "-f", "lavfi", "-i", "sine=duration=20", "-c:v", "libx264", "-g", "50", "-c:a", "aac", clip], check=True)
    return clip


def seconds_to_picture(screen, command, folder):
    while screen.shows_green(WIDTH // 2, HEIGHT // 2):
        time.sleep(0.01)
    begin = time.monotonic()
    program = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=folder,
                               env={**os.environ, "PWD": str(folder)})
    try:
        while not screen.shows_green(WIDTH // 2, HEIGHT // 2):
            if time.monotonic() - begin > 20:
                raise RuntimeError(f"{command[0]} shows nothing")
            time.sleep(0.002)
        return time.monotonic() - begin
    finally:
        program.terminate()
        program.wait()


def compare_starts(folder, rounds):
    clip = make_clip(folder)
    screen = Screen()
    commands = {
        "lumen-wall": [BIN / "lumen-wall", "--size", f"{WIDTH}x{HEIGHT}", clip],
        "mpv": ["mpv", "--no-config", "--no-terminal", "--no-border", f"--geometry={WIDTH}x{HEIGHT}+0+0", clip],
    }
    seconds = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            seconds[name].append(seconds_to_picture(screen, command, folder))
    for name, found in seconds.items():
        print(f"{name}, from its start to the first picture: {1000 * statistics.median(found):.0f} ms "
              f"({1000 * min(found):.0f} to {1000 * max(found):.0f})")
    print(f"ratio of the medians: {statistics.median(seconds['lumen-wall']) / statistics.median(seconds['mpv']):.2f}")


class ControlledWall:
    def __init__(self, folder):
        self.process = subprocess.Popen([BIN / "lumen-wall", "--control"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True, cwd=folder,
                                        env={**os.environ, "PWD": str(folder)})

    def send(self, **message):
        self.process.stdin.write(json.dumps(message) + "\n")
        self.process.stdin.flush()

    def wait(self, is_meant):
        for text in self.process.stdout:
            if is_meant(json.loads(text)):
                return time.monotonic()
        raise RuntimeError("lumen-wall has ended")

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def is_picture(line):
    return line.get("event") == 3 and line["document"]["eventType"] == 1


class KeyFrames:
    """When key frames of a stream come in, as another client sees them."""

    def __init__(self, url):
        self.times = []
        self.process = subprocess.Popen(["ffmpeg", "-v", "error", "-rtsp_transport", "tcp", "-i", url, "-map", "0:v",
                                         "-c", "copy", "-flush_packets", "1", "-f", "framecrc", "-"],
                                        stdout=subprocess.PIPE, text=True)
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.process.stdout:
            if not line.startswith("#") and "F=0x" not in line:  # only packets that are not key frames have flags
                self.times.append(time.monotonic())

    def last_before(self, moment):
        return max(found for found in self.times if found <= moment)


def measure_rtsp(folder, rounds):
    port = 8600
    url = f"rtsp://127.0.0.1:{port}/live"
    server = subprocess.Popen([BIN / "rtsp_test_server", str(port), "600"], stdout=subprocess.PIPE, text=True)
    server.stdout.readline()  # "ready"
    keys = KeyFrames(url)
    time.sleep(3)
    wall = ControlledWall(folder)
    places = random.Random(1)
    past_key, past_call = [], []
    for number in range(2 * rounds):
        time.sleep(places.uniform(0.2, 1.2))  # anywhere in the group
        called = time.monotonic()
        wall.send(call="LD_Play", args={"wndIndex": 0, "url": url, "auth": ""})
        shown = wall.wait(is_picture)
        past_call.append(shown - called)
        time.sleep(SEES_LATER)
        past_key.append(max(0.0, shown - keys.last_before(shown + SEES_LATER)))
        wall.send(id=number, call="LD_Stop", args={"wndIndex": 0})
        wall.wait(lambda line, asked=number: line.get("id") == asked)
    wall.end()
    keys.process.kill()
    server.kill()
    print(f"RTSP, groups of a second: the picture is there {1000 * statistics.median(past_key):.0f} ms after its key frame "
          f"(most {1000 * max(past_key):.0f}), {1000 * statistics.median(past_call):.0f} ms after LD_Play "
          f"(most {1000 * max(past_call):.0f})")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=10)
    rounds = parser.parse_args().rounds
    with tempfile.TemporaryDirectory() as name:
        compare_starts(pathlib.Path(name), rounds)
        measure_rtsp(pathlib.Path(name), rounds)


if __name__ == "__main__":
    main()
