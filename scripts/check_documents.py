#!/usr/bin/env python3
"""Holds the journals that the tests write against the schemas of docs/schema.

usage: check_documents.py JOURNAL_FOLDER

Answers, errors and events always fit. Requests fit unless the call has failed; a line without "request" comes from a test
of leniency. The examples in the schemas are checked too.
"""

import json
import sys
from collections import Counter
from pathlib import Path

from jsonschema import Draft202012Validator
from jsonschema.exceptions import best_match

from schemas import documents, functions, load, resolved

SHOWN = 40


def has_failed(answer):
    return isinstance(answer, dict) and answer.get("errorCode", 0) != 0


class Checker:
    def __init__(self):
        files = load()
        self.validators = {}
        self.faults = Counter()
        self.instances = {}
        self.checked = Counter()
        self.seen = set()
        for file, name, schema in documents(files):
            whole = resolved(files, file, schema)
            Draft202012Validator.check_schema(whole)
            name = file + " " + name if file == "control.json" else name
            self.validators[name] = Draft202012Validator(whole)
            for example in self.examples(whole):
                self.check(name, example, "example")
        self.events = {schema["x-type"]: name for name, schema in files["events.json"]["$defs"].items()
                       if "x-type" in schema}

    def examples(self, schema):
        return schema.get("examples", []) or [e for part in schema.get("allOf", []) for e in self.examples(part)]

    def check(self, name, document, where):
        text = json.dumps(document, sort_keys=True)
        if (name, text) in self.seen:
            return
        self.seen.add((name, text))
        self.checked[name] += 1
        validator = self.validators.get(name)
        error = best_match(validator.iter_errors(document)) if validator else None
        if error or not validator:
            what = f"{error.json_path}: {error.message[:160]}" if error else "no such document"
            self.faults[f"{where}: {name}: {what}"] += 1
            self.instances.setdefault(f"{where}: {name}: {what}", text[:300])

    def check_line(self, line, where):
        if "call" in line:
            answer = line["answer"]
            if has_failed(answer) and "json_string" in answer:
                answer = {**answer, "json_string": ""}
            self.check(line["call"] + ".answer", answer, where)
            takes_one = line["call"] + ".request" in self.validators
            if "request" in line and takes_one and not has_failed(answer):
                self.check(line["call"] + ".request", line["request"], where)
        elif "event" in line:
            self.check(self.events.get(line["event"], f"event {line['event']}"), line["document"], where)
        else:
            kind = next(iter(line))
            self.check("control.json " + kind, line[kind], where)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    checker = Checker()
    journals = sorted(Path(sys.argv[1]).glob("*.jsonl"))
    for journal in journals:
        with journal.open() as lines:
            for line in lines:
                checker.check_line(json.loads(line), journal.stem)
    for fault, times in list(checker.faults.items())[:SHOWN]:
        print(f"{fault} ({times})\n    {checker.instances[fault]}")
    called = [name for name, _, _ in functions() if checker.checked[name + ".answer"]]
    sent = [name for name in checker.events.values() if checker.checked[name]]
    print(f"{sum(checker.checked.values())} different documents of {len(called)} functions and {len(sent)} kinds of events "
          f"in {len(journals)} journals, {sum(checker.faults.values())} do not fit")
    sys.exit(1 if checker.faults or not journals else 0)


if __name__ == "__main__":
    main()
