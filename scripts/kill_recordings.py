#!/usr/bin/env python3
"""Kills lumen-wall (kill -9) at random moments of a recording and plays what it has left.

    scripts/kill_recordings.py [TIMES]     200 times if left out; needs a display, ffmpeg and build/default

Fails when a file does not play without an error, or lacks more than the pictures before its first and after its last group.
"""
import json
import os
import pathlib
import random
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WALL = ROOT / "build/default/bin/lumen-wall"
RATE, GROUP = 25, 10
SOURCE = f"test:pattern?size=320x240&rate={RATE}&gop={GROUP}&sound=440"
MOST_LOST = 2 * GROUP / RATE + 0.5  # seconds: it begins with a key picture and ends with a group; a picture on its way


class Wall:
    def __init__(self, folder):
        self.process = subprocess.Popen(
            [WALL, "--control", "--size", "400x300"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True, cwd=folder, env={**os.environ, "PWD": str(folder)})

    def call(self, function, **args):
        self.process.stdin.write(json.dumps({"id": function, "call": function, "args": args}) + "\n")
        self.process.stdin.flush()
        answer = self.wait(lambda line: line.get("id") == function)
        assert answer["result"] is None, answer

    def wait(self, is_meant):
        for text in self.process.stdout:
            line = json.loads(text)
            if is_meant(line):
                return line
        raise RuntimeError("lumen-wall has ended")

    def kill(self):
        self.process.kill()
        self.process.wait()


def record_and_kill(folder, seconds):
    """How long was recorded until the kill."""
    wall = Wall(folder)
    wall.call("LD_Play", wndIndex=0, url=SOURCE, auth="")
    wall.wait(lambda line: line.get("event") == 3 and line["document"]["eventType"] == 1)
    wall.call("LD_StartSave", wndIndex=0, fileName="killed")
    begin = time.monotonic()
    time.sleep(seconds)
    wall.kill()
    return time.monotonic() - begin


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def seconds_played(file):
    """Decodes the whole file; an error of the decoder is an error here."""
    complaint = subprocess.run(["ffmpeg", "-v", "error", "-i", file, "-f", "null", "-"], capture_output=True, text=True)
    if complaint.returncode or complaint.stderr:
        raise RuntimeError(f"{file}: {complaint.stderr}")
    frames = output_of("ffprobe", "-v", "error", "-select_streams", "v", "-count_packets", "-show_entries",
                       "stream=nb_read_packets", "-of", "csv=p=0", file)
    return int(frames.strip().strip(",").replace("N/A", "0")) / RATE


def lost(round_number, moment):
    """Seconds of the recording that the file lacks; None where no group had been finished yet."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        recorded = record_and_kill(folder, moment)
        files = [file for file in folder.rglob("killed*") if file.stat().st_size > 0]
        played = seconds_played(files[0]) if files else 0
        if recorded - played > MOST_LOST:
            raise RuntimeError(f"round {round_number}: {recorded - played:.2f} of {recorded:.2f} s lost")
        return recorded - played if played else None


def main():
    times = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    moments = random.Random(4)
    losses, early = [], 0
    for number in range(times):
        loss = lost(number, moments.uniform(0, 4))
        if loss is None:
            early += 1
        else:
            losses.append(loss)
    print(f"{times} kills: {len(losses)} files play to their last group, {early} had none yet; "
          f"recorded but not in the file: {statistics.median(losses):.2f} s (median), {max(losses):.2f} s (most) with groups of {GROUP / RATE:.1f} s")


if __name__ == "__main__":
    main()
