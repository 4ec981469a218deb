#!/usr/bin/python3
"""Reads every kind of table the engine writes with dbfread, an independent reader, and checks
that it finds the same record count, deleted flags, field names and values as the engine."""
import datetime
import json
import subprocess
import sys
import tempfile

import dbfread


def same(engine, other):
    if engine is None:
        return other is None or other == ""
    if isinstance(engine, bool):
        return other is engine
    if isinstance(engine, float):
        return other is not None and abs(float(other) - engine) < 1e-9
    if isinstance(other, datetime.date):
        return other.isoformat() == engine
    return other == engine


def check(table):
    failures = []
    name = table["file"]
    dbf = dbfread.DBF(name, encoding=table["encoding"], char_decode_errors="strict")
    if dbf.header.numrecords != table["count"]:
        failures.append(f"{name}: record count {dbf.header.numrecords} != {table['count']}")
    if dbf.field_names != table["fields"]:
        failures.append(f"{name}: fields {dbf.field_names} != {table['fields']}")
    live = [r for r in table["records"] if not r["deleted"]]
    dead = [r for r in table["records"] if r["deleted"]]
    for kind, expected, found in (("live", live, list(dbf)), ("deleted", dead, list(dbf.deleted))):
        if len(found) != len(expected):
            failures.append(f"{name}: {len(found)} {kind} records, engine has {len(expected)}")
            continue
        for i, (mine, theirs) in enumerate(zip(expected, found)):
            for field, value in zip(table["fields"], mine["values"]):
                if not same(value, theirs[field]):
                    failures.append(f"{name}: {kind} record {i} field {field}: "
                                    f"engine {value!r}, dbfread {theirs[field]!r}")
    return failures


def main():
    with tempfile.TemporaryDirectory() as directory:
        output = subprocess.run([sys.argv[1], directory], check=True, capture_output=True,
                                text=True).stdout
        tables = json.loads(output)
        failures = [f for table in tables for f in check(table)]
    for failure in failures:
        print(failure)
    print(f"{len(tables)} tables compared, {len(failures)} differences")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
