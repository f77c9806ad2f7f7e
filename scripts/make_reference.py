#!/usr/bin/env python3
"""Makes docs/reference.md from functions.def, the comments of lumen_deck.h and the schemas of docs/schema.

usage: make_reference.py [--check]

With --check nothing is written: the exit code tells whether the page is what would be made. A function without a comment
or a schema, a key that the header does not name, and a version text that is not its numbers are errors either way.
"""

import json
import re
import sys
import textwrap
from pathlib import Path

from schemas import ROOT, functions, load, target

PAGE = ROOT / "docs" / "reference.md"
HEADER = ROOT / "include" / "lumen_deck" / "lumen_deck.h"
SECTION = re.compile(r"(in|out|errors)(?: of each|, [^:]*)?: *")
TITLE = re.compile(r"/\* (?:====|----) (.*?) (?:=*|-*)(?: \*/)?$")
THREADS = """## Threads

| | Who may call | Where it runs |
|---|---|---|
| Queued | any thread | on the main widget's thread, in the order of the calls; the caller waits |
| Direct | the main widget's thread; any for functions that take no widget | on the caller's thread |
| Unmoved | any thread | on the caller's thread |
| DirectThenQueued | any thread | its first half on the caller's thread, the rest as Queued |"""


# ---- the header ----

class Comment:
    """The text of a comment in its sections: prose, in, out and errors."""

    def __init__(self, lines):
        self.sections = {"prose": [], "in": [], "out": [], "errors": []}
        section = "prose"
        for line in lines:
            start = SECTION.match(line)
            if start:
                section = start.group(1)
                line = line[start.end():]
            elif not line.startswith(" "):
                section = "prose"
            self.sections[section].append(line)

    def prose(self):
        return markdown(self.sections["prose"])

    def errors(self):
        """A list where each error has a line of its own, else one text."""
        items = []
        for line in map(str.strip, self.sections["errors"]):
            if items and not re.match(r"\d{3}|engine ", line):
                items[-1] += " " + line
            elif line:
                items.append(line)
        return " " + items[0] if len(items) == 1 else "".join("\n- " + item for item in items)


class Header:
    """Families with their comments, functions with theirs, and the comments of the events."""

    def __init__(self):
        self.families = []   # (title, Comment, [names])
        self.functions = {}  # name: (declaration, Comment, names that share it)
        self.events = {}     # name: (number, Comment)
        self.opening = None
        self.read(HEADER.read_text().splitlines())

    def read(self, lines):
        comment, sharing, at = None, [], 0
        while at < len(lines):
            line = lines[at].strip()
            if line.startswith("/*"):
                taken = self.comment_lines(lines, at)
                at += len(taken)
                comment, sharing = self.enter(taken), []
                continue
            declaration, length = self.declaration(lines, at)
            event = re.match(r"(LD_EVENT_\w+) *= *(\d+)", line)
            if declaration:
                name = re.search(r"(LD_\w+)\(", declaration).group(1)
                sharing.append(name)
                self.functions[name] = (declaration, comment, sharing)
                self.families[-1][2].append(name)
                at += length
                continue
            if event and comment and "/*" not in line:
                self.events[event.group(1)] = (int(event.group(2)), comment)
            at += 1

    @staticmethod
    def comment_lines(lines, at):
        end = at
        while "*/" not in lines[end]:
            end += 1
        return lines[at:end + 1]

    def enter(self, taken):
        """Keeps the comment of a family; gives any other one."""
        title = TITLE.match(taken[0].strip())
        body = [re.sub(r"^\s*(/\*|\*/|\*) ?", "", line).replace("*/", "").rstrip() for line in taken]
        comment = Comment(body[1:] if title else body)
        if title:
            self.families.append((title.group(1), comment, []))
            return None
        if not self.opening:
            self.opening = comment
        return comment

    @staticmethod
    def declaration(lines, at):
        if not lines[at].startswith("LUMEN_DECK_API"):
            return None, 0
        length = 1
        while ";" not in lines[at + length - 1]:
            length += 1
        text = " ".join(line.strip() for line in lines[at:at + length])
        return re.sub(r"^LUMEN_DECK_API ", "", text.split(";")[0]) + ";" + text.split(";", 1)[1], length


def markdown(lines):
    """Prose as it stands; lines that are indented keep their form."""
    out, block = [], []
    for line in lines + [""]:
        if line.startswith("  "):
            block.append(line)
            continue
        if block:
            out += ["", "```", *textwrap.dedent("\n".join(block)).splitlines(), "```", ""]
            block = []
        out.append(line)
    return "\n".join(out).strip()


# ---- the schemas ----

class Page:
    def __init__(self):
        self.files = load()
        self.header = Header()
        self.homes = {name: file for file, content in self.files.items() for name in content["$defs"]}
        self.shared = {}  # title: (file, schema), of the pieces that tables link to
        self.faults = []

    # Types as a reader likes them

    def follow(self, home, schema):
        """A schema with what its references say laid under what it says itself."""
        merged = {key: value for key, value in schema.items() if key not in ("$ref", "allOf")}
        references = [schema] if "$ref" in schema else []
        references += [part for part in schema.get("allOf", []) if "$ref" in part]
        for part in references:
            file, there = target(self.files, home, part["$ref"])
            home, there = self.follow(file, there)
            if "properties" in there and "properties" in merged:
                merged["properties"] = {**there["properties"], **merged["properties"]}
            merged = {**there, **merged}
        return home, merged

    def named(self, home, schema):
        """Where the title of a schema stands, if it has one."""
        while schema and "title" not in schema:
            parts = [part for part in [schema, *schema.get("allOf", [])] if "$ref" in part]
            home, schema = target(self.files, home, parts[0]["$ref"]) if parts else (home, None)
        return (home, schema) if schema else None

    def type_of(self, home, schema):
        named = self.named(home, schema)
        if named:
            title = named[1]["title"]
            self.shared[title] = self.follow(*named)
            return f"[{title}](#{anchor('type ' + title)})"
        home, schema = self.follow(home, schema)
        if "const" in schema:
            return f"`{json.dumps(schema['const'])}`"
        if "enum" in schema:
            return ", ".join(f"`{json.dumps(value)}`" for value in schema["enum"])
        if "anyOf" in schema and "type" not in schema:
            return " or ".join(self.type_of(home, part) for part in schema["anyOf"])
        if "oneOf" in schema and "type" not in schema:
            return " or ".join(self.type_of(home, part) for part in schema["oneOf"])
        kind = schema.get("type", "any")
        if kind == "array":
            entries = schema.get("items", {})
            plain = self.follow(home, entries)[1]
            expanded = "properties" in plain and "title" not in plain
            of = 'objects' if expanded else self.type_of(home, entries)
            low, high = schema.get("minItems"), schema.get("maxItems")
            if low is not None and low == high:
                return f"array of {low} × {of}"
            return f"array of {of}" + (f", at least {low}" if low else "") + (f", at most {high}" if high else "")
        kind = " or ".join(kind) if isinstance(kind, list) else kind
        kind = {"boolean": "bool", "integer": "int", "string": "text"}.get(kind, kind)
        return kind + bounds(schema, "minimum", "maximum") + (f", {schema['x-unit']}" if "x-unit" in schema else "")

    # Tables

    def rows(self, home, schema, prefix=""):
        """(key, type, default, meaning) of each property, those of objects within it too."""
        home, schema = self.follow(home, schema)
        for key, given in schema.get("properties", {}).items():
            place, field = self.follow(home, given)
            default = "required" if key in schema.get("required", []) else default_of(field)
            kind = self.type_of(home, given)
            yield prefix + key, kind, default, given.get("description") or field.get("description", "")
            if "title" in field:
                continue
            if field.get("type") == "array" and "items" in field:
                place, items = self.follow(place, field["items"])
                if "title" not in items and "properties" in items:
                    yield from self.rows(place, items, prefix + key + "[].")
            elif "properties" in field:
                yield from self.rows(place, field, prefix + key + ".")

    def table(self, home, schema, answers=False):
        heading = ("Key", "Type", "", "Meaning") if answers else ("Key", "Type", "Default", "Meaning")
        lines = ["| " + " | ".join(heading) + " |", "|---|---|---|---|"]
        for key, kind, default, meaning in self.rows(home, schema):
            default = "" if answers and default == "required" else "may be missing" if answers else default
            lines.append("| " + " | ".join([f"`{key}`", kind, default, meaning]).replace("  ", " ") + " |")
        return "\n".join(lines) if len(lines) > 2 else ""

    # Functions

    def request(self, name, label):
        schema = self.files[self.homes[name]]["$defs"][name]
        home, merged = self.follow(self.homes[name], schema)
        parts = [f"**{label}**"]
        if "title" in merged:
            parts[0] += f": a {self.type_of(home, merged)}."
        elif "properties" not in merged:
            parts[0] += ": " + merged.get("description", "").replace("Not", "not", 1)
        else:
            parts.append(self.table(home, merged))
        return parts + [example(e) for e in merged.get("examples", [])]

    def answer(self, name):
        home, merged = self.follow(self.homes[name], self.files[self.homes[name]]["$defs"][name])
        alternatives = merged.get("anyOf") or merged.get("oneOf") or [merged]
        words, tables = [], []
        for part in alternatives:
            place, piece = self.follow(home, part)
            if "properties" in piece and "title" not in piece:
                words.append("a document" if not tables else "another document")
                tables.append(self.table(place, piece, answers=True))
            elif piece.get("type") == "null":
                words.append("null")
            elif piece.get("maxProperties") == 0:
                words.append("an empty document")
            elif "oneOf" in piece and "title" not in piece:
                words.append(self.type_of(place, piece))
            else:
                words.append(self.type_of(place, piece))
        text = "**Answer**: " + " or ".join(words) + "."
        if merged.get("description") and len(alternatives) > 1 and tables:
            text += " " + merged["description"]
        return [text, *tables] + [example(e) for e in merged.get("examples", [])]

    def function(self, name, shape, route):
        declaration, comment, sharing = self.header.functions[name]
        code, _, note = declaration.partition(";")
        parts = [f"### {name}", "```cpp\n" + code + ";\n```"]
        prose = comment.prose() if comment else ""
        if len(sharing) > 1 and sharing[0] != name:
            prose = f"Together with [{sharing[0]}](#{anchor(sharing[0])}), where its text stands." if prose else ""
        note = re.sub(r"/\*|\*/", "", note).strip()
        parts += [part for part in (prose, note[:1].upper() + note[1:] + "." if note else "") if part]
        own = shape == "OWN"
        parts.append("" if own else f"[{route}](#threads).")
        if name + ".request" in self.homes:
            parts += self.request(name + ".request", "Request on the control channel" if own else "Request")
        parts += self.answer(name + ".answer")
        errors = comment.errors() if comment else ""
        if errors:
            parts.append("**Errors**:" + ("\n" if errors.startswith("\n") else "") + errors)
        return "\n\n".join(part for part in parts if part)

    # What must be there

    def verify(self):
        text = HEADER.read_text()
        numbers = re.findall(r"#define LUMEN_DECK_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", text)
        if f'#define LUMEN_DECK_VERSION "{".".join(numbers)}"' not in text:
            self.faults.append("LUMEN_DECK_VERSION is not made of its numbers")
        for name, shape, _ in functions():
            if name not in self.header.functions:
                self.faults.append(f"{name} has no text in lumen_deck.h")
            wanted = [name + ".answer"] + ([name + ".request"] if shape in ("WD", "D") else [])
            self.faults += [f"{each} has no schema" for each in wanted if each not in self.homes]
            if shape in ("WD", "D") and name + ".request" in self.homes:
                home, schema = self.follow(self.homes[name + ".request"],
                                           self.files[self.homes[name + ".request"]]["$defs"][name + ".request"])
                for key, *_ in self.rows(home, schema):
                    word = key.split(".")[-1].removesuffix("[]")
                    if not re.search(rf"\b{word}\b", text):
                        self.faults.append(f"lumen_deck.h does not name the key {key} of {name}")
        names = {name for name, _, _ in functions()}
        for name in self.homes:
            if name.startswith("LD_") and "." in name and name.split(".")[0] not in names:
                self.faults.append(f"{name} is the schema of no function")
        for name in self.header.events:
            if name not in self.homes:
                self.faults.append(f"{name} has no schema")

    # The page

    def families(self):
        """(title, Comment, rows of the table): the families of the header that have functions."""
        rows = {row[0]: row for row in functions()}
        for title, comment, names in self.header.families:
            if names:
                yield title, comment, [rows[name] for name in names]

    def index(self):
        lines = ["| Family | Functions |", "|---|---|"]
        for title, _, names in self.families():
            links = ", ".join(f"[{name}](#{anchor(name)})" for name, *_ in names)
            lines.append(f"| [{title}](#{anchor(title)}) | {links} |")
        return "\n".join(lines)

    def events(self):
        parts = ["## Events", next(c.prose() for t, c, _ in self.header.families if t == "Events")]
        for name, (number, comment) in self.header.events.items():
            if name not in self.homes:
                continue
            home, schema = self.follow("events.json", self.files["events.json"]["$defs"][name])
            parts += [f"### {name}", f"Type {number}. " + comment.prose()]
            if "anyOf" in schema:
                parts.append("**Document**: " + self.type_of(home, schema) + ".")
            parts += [self.table(home, schema, answers=True)] + [example(e) for e in schema.get("examples", [])]
        return "\n\n".join(part for part in parts if part)

    def pieces(self):
        """The shared pieces, those that they lead to included."""
        parts, done = [], set()
        while set(self.shared) - done:
            for title in sorted(set(self.shared) - done):
                done.add(title)
                home, schema = self.shared[title]
                plain = {key: value for key, value in schema.items() if key != "title"}
                text = [f"### type {title}", schema.get("description", "")]
                table = self.table(home, plain, answers="reported" in title or "service" in title or home == "error.json")
                if table:
                    text.append(table)
                else:
                    text.append("Type: " + self.type_of(home, plain) + ".")
                parts.append((title, "\n\n".join(part for part in text if part)))
        return "## Shared pieces\n\n" + "\n\n".join(text for _, text in sorted(parts))

    def make(self):
        self.verify()
        if self.faults:
            return ""
        parts = [
            "# Reference",
            "<!-- Made by scripts/make_reference.py from functions.def, lumen_deck.h and docs/schema: edit those. -->",
            "Every exported function with its documents. The rules that hold for all of them stand at the top of "
            "[lumen_deck.h](../include/lumen_deck/lumen_deck.h); the same tables as JSON Schemas are in "
            "[schema/](schema/README.md). [Events](#events), [shared pieces](#shared-pieces).",
            self.index(),
            THREADS,
        ]
        for title, comment, names in self.families():
            parts += [f"## {title}", comment.prose()]
            errors = comment.errors()
            parts += [f"**Errors of each**:{errors}" if errors else ""]
            parts += [self.function(*row) for row in names]
        parts += [self.events(), self.pieces()]
        return re.sub(r"\n{3,}", "\n\n", "\n\n".join(part for part in parts if part)) + "\n"


def bounds(schema, lowest, highest):
    low, high = schema.get(lowest), schema.get(highest)
    if "exclusiveMinimum" in schema:
        return f" above {schema['exclusiveMinimum']}"
    if low is not None and high is not None:
        return f" {low} to {high}"
    if low is not None:
        return f" from {low}"
    return f" to {high}" if high is not None else ""


def default_of(schema):
    if "default" in schema:
        return f"`{json.dumps(schema['default'])}`"
    return schema.get("x-default", "")


def example(document):
    return "```json\n" + json.dumps(document, ensure_ascii=False) + "\n```"


def anchor(title):
    return re.sub(r"[^\w -]", "", title.lower()).replace(" ", "-")


def main():
    if sys.argv[1:] not in ([], ["--check"]):
        sys.exit(__doc__)
    page = Page()
    text = page.make()
    for fault in page.faults:
        print(fault)
    if page.faults:
        sys.exit(1)
    if sys.argv[1:] == []:
        PAGE.write_text(text)
    elif not PAGE.exists() or PAGE.read_text() != text:
        sys.exit("docs/reference.md is not what scripts/make_reference.py makes: run it")


if __name__ == "__main__":
    main()
