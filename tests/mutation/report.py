"""Prints, for each room, how many variants there were and how many were noticed, and then those that were not.

Usage: report.py RESULTS...
"""
import json
import sys
from collections import Counter
from pathlib import Path

from variants import ROOMS, room_of


def main():
    rows = [json.loads(line) for path in sys.argv[1:] for line in Path(path).read_text().splitlines()]
    built = [row for row in rows if row["caught_by"] is not None]
    missed = [row for row in built if not row["caught_by"]]
    tried_in = Counter(room_of(row["file"]) for row in built)
    missed_in = Counter(room_of(row["file"]) for row in missed)
    for room in ROOMS:
        print(f"{room:10} {tried_in[room] - missed_in[room]:4} of {tried_in[room]:4} caught")
    share = 100 * (len(built) - len(missed)) / max(1, len(built))
    print(f"{'all':10} {len(built) - len(missed):4} of {len(built):4} caught ({share:.1f} %); "
          f"{len(rows) - len(built)} more did not build")
    for row in sorted(missed, key=lambda row: (row["file"], row["line"])):
        print(f"\n{row['file']}:{row['line']} ({row['kind']})\n- {row['before'].strip()}\n+ {row['after'].strip()}")


main()
