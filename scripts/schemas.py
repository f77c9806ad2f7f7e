"""The schemas of docs/schema and the table of exported functions, for the other scripts."""

import json
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SCHEMAS = ROOT / "docs" / "schema"
TABLE = ROOT / "include" / "lumen_deck" / "functions.def"


def functions():
    """(name, shape, route) of each exported function, in the order of the table."""
    rows = re.findall(r"^LUMEN_DECK_([A-Z]+)\((LD_\w+), (\w+)\)", TABLE.read_text(), re.M)
    return [(name, shape, route) for shape, name, route in rows]


def load():
    """All files of the folder, by name."""
    return {path.name: json.loads(path.read_text()) for path in sorted(SCHEMAS.glob("*.json"))}


def target(files, home, reference):
    """The file and the schema that a "$ref" in the file `home` leads to."""
    file, _, name = reference.partition("#/$defs/")
    file = file or home
    if name not in files.get(file, {}).get("$defs", {}):
        raise SystemExit(f"{home}: {reference} leads nowhere")
    return file, files[file]["$defs"][name]


def resolved(files, home, schema):
    """A schema that stands by itself: what "$ref" leads to takes its place."""
    if isinstance(schema, list):
        return [resolved(files, home, entry) for entry in schema]
    if not isinstance(schema, dict):
        return schema
    own = {key: value if key in ("examples", "default", "const", "enum") else resolved(files, home, value)
           for key, value in schema.items() if key != "$ref"}
    if "$ref" not in schema:
        return own
    there = resolved(files, *target(files, home, schema["$ref"]))
    return {**own, "allOf": own.get("allOf", []) + [there]} if own else there


def documents(files):
    """(file, name, schema) of everything that is a document, and no shared piece."""
    for file, content in files.items():
        for name, schema in content["$defs"].items():
            if re.fullmatch(r"LD_\w+\.(request|answer)|LD_EVENT_\w+", name) or file == "control.json":
                yield file, name, schema
