"""Builds each variant in a checkout of its own, runs the tests, and writes down which of them noticed.

Usage: run_variants.py CHECKOUT RESULTS FIRST STEP COUNT SEED

Takes the variants FIRST, FIRST + STEP, ... of the draw, so that several runs share the work. A variant that does not
compile is no variant: the draw has spares. RESULTS is one JSON object a line; what stands there is not done again.
"""
import json
import os
import signal
import subprocess
import sys
import time
from pathlib import Path

from variants import ROOMS, draw, room_of

BUILD_LIMIT_S = 300
# A program that a variant keeps waiting is as good as a failed one.
TEST_LIMIT_S = 120

# The quick tests of each folder, nearest first; a variant that they miss meets the programs of the whole product too.
NEAREST = {
    "module": ["module_unit_tests", "module_frame_tests", "registration_tests", "module_registration_tests"],
    "module/registration": ["registration_tests", "module_registration_tests"],
    "shell": ["shell_tests", "module_menus_tests"],
    "namespace": ["namespace_unit_tests", "namespace_module_tests", "namespace_lock_tests"],
    "service": ["service_tests", "service_calls_tests", "service_no_memory_tests", "service_driver_absent_tests"],
    "ovufc": ["json_tests", "service_tests"],
    "ovufc/cert": ["ovufc_signer_check_tests"],
    "ovufc/com": ["namespace_unit_tests", "shell_tests", "module_frame_tests"],
    "ovufc/i18n": ["ovufc_language_choice_tests", "ovufc_rosetta_stone_tests", "orvres_message_table_tests"],
    "ovufc/ipc/drvport": ["drvport_tests", "driver_port_tests"],
    "ovufc/runtime": ["ovufc_exceptions_tests", "module_frame_tests", "module_load_tests", "module_exit_tests"],
    "ovufc/time": ["ovufc_time_tests"],
    "ovufc/win": ["ovufc_win_tests"],
}
WHOLE = ["drvport_tests", "json_tests", "service_tests", "shell_tests", "namespace_unit_tests",
         "registration_tests", "namespace_module_tests", "module_menus_tests", "service_calls_tests", "driver_port_tests"]


def programs_for(path):
    folder = os.path.dirname(path)
    while folder not in NEAREST:
        folder = os.path.dirname(folder)
    nearest = NEAREST[folder]
    return nearest + [name for name in WHOLE if name not in nearest]


def run(command, checkout, limit_s, log):
    """The exit code, or None when the time ran out."""
    process = subprocess.Popen(command, cwd=checkout, stdout=log, stderr=log, start_new_session=True)
    try:
        return process.wait(limit_s)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return None


def build(checkout, target, log):
    return run(["ninja", "-C", "build/x64-release", target], checkout, BUILD_LIMIT_S, log) == 0


def passes(checkout, program, log):
    command = ["ctest", "--test-dir", "build/x64-release", "-R", f"^{program}$"]
    if run(command, checkout, TEST_LIMIT_S, log) == 0:
        return True
    # What a variant left running or broken must not be held against the next.
    run(["scripts/prefix.sh", "down"], checkout, TEST_LIMIT_S, log)
    return False


def notices(checkout, program, log):
    """Twice, so that a machine that was too busy for a moment does not count as a test that noticed."""
    return not passes(checkout, program, log) and not passes(checkout, program, log)


def try_variant(checkout, variant, log):
    """Which program noticed the variant; "" when none did, None when it does not build."""
    for program in programs_for(variant.file):
        if not build(checkout, program, log):
            return None
        if notices(checkout, program, log):
            return program
    return ""


def apply_and_try(checkout, variant, log):
    path = checkout / variant.file
    text = path.read_text(encoding="utf-8")
    lines = text.split("\n")
    assert lines[variant.line - 1] == variant.before
    lines[variant.line - 1] = variant.after
    path.write_text("\n".join(lines), encoding="utf-8")
    try:
        return try_variant(checkout, variant, log)
    finally:
        path.write_text(text, encoding="utf-8")


def main():
    checkout, results = Path(sys.argv[1]), Path(sys.argv[2])
    first, step, count, seed = map(int, sys.argv[3:7])
    files = subprocess.run(["git", "ls-files", "*.cpp", "*.h"], cwd=checkout, check=True, capture_output=True,
                           text=True).stdout.split()
    product = [path for path in files if room_of(path) in ROOMS]
    mine = draw(checkout, product, count, seed)[first::step]
    done = [json.loads(line) for line in results.read_text().splitlines()] if results.exists() else []
    known = {(row["file"], row["line"], row["after"]) for row in done}
    built = sum(1 for row in done if row["caught_by"] is not None)
    wanted = len(range(first, count, step))
    with results.open("a") as out, (results.with_suffix(".log")).open("a") as log:
        for variant in mine:
            if built >= wanted:
                break
            if (variant.file, variant.line, variant.after) in known:
                continue
            start = time.monotonic()
            caught_by = apply_and_try(checkout, variant, log)
            built += caught_by is not None
            row = variant.as_dict() | {"caught_by": caught_by, "seconds": round(time.monotonic() - start, 1)}
            out.write(json.dumps(row) + "\n")
            out.flush()


main()
