#!/usr/bin/env python3
"""Drives a wall from another program: lumen-wall is started with --control, and lines of JSON go in and out.

usage: control.py LUMEN_WALL [SOURCE...]

Plays the sources (a test picture without any), waits for the first pictures, records the first window for three seconds,
writes a screenshot and ends.
"""

import json
import subprocess
import sys
import time


class Wall:
    def __init__(self, program, windows):
        side = next(side for side in (1, 2, 3, 4) if side * side >= windows)
        self.process = subprocess.Popen([program, "--control", "--grid", str(side)], text=True, bufsize=1,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.next_id = 0
        self.events = []

    def lines(self):
        for line in self.process.stdout:
            yield json.loads(line)

    def ask(self, **request):
        """Sends a line and waits for its answer; the events that come before it are kept."""
        self.next_id += 1
        print(json.dumps({"id": self.next_id, **request}), file=self.process.stdin)
        for line in self.lines():
            if "event" in line:
                self.events.append(line)
            elif line.get("id") == self.next_id:
                return line["result"] if "result" in line else sys.exit(line["error"])
        sys.exit("the wall has ended")

    def call(self, function, **args):
        """The function's document; an error document ends the program."""
        result = self.ask(call=function, args=args)
        if isinstance(result, dict) and result.get("errorCode", 0) != 0:
            sys.exit(f"{function}: {result.get('errorMessage', result)}")
        return result

    def wait_for(self, window, code):
        """Until a stream event with that code has come for that window."""
        def matches(line):
            document = line.get("document", {})
            return line.get("event") == 3 and (document["wndIndex"], document["eventType"]) == (window, code)

        if not any(map(matches, self.events)) and not any(map(matches, self.lines())):
            sys.exit("the wall has ended")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    sources = sys.argv[2:] or ["test:pattern?size=704x576&rate=25"]
    wall = Wall(sys.argv[1], len(sources))
    for window, source in enumerate(sources):
        wall.call("LD_Play", wndIndex=window, url=source, auth="")
        wall.wait_for(window, 1)
        print(f"window {window} shows {source}")
    wall.call("LD_StartSave", wndIndex=0, fileName="sample")
    time.sleep(3)
    wall.call("LD_StopSave", wndIndex=0)
    wall.ask(screenshot="wall.png")
    settings = wall.call("LD_GetLocalConfig")["localConfig"]
    print(f"wall.png is written, the recording lies below {settings['playbackFilePath']}")
    wall.ask(quit=True)
    sys.exit(wall.process.wait())


if __name__ == "__main__":
    main()
