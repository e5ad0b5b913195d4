# SPDX-License-Identifier: MIT
"""Applies plausible one-line faults to the sources, one at a time, and tells which are caught.

Each entry of a mutation list (default: every scripts/mutations/*.txt, one list per area) is one
line of five fields separated by " @@ ":

    source file @@ text to replace @@ replacement @@ targets to build @@ ctest pattern

The text must occur exactly once in the file. For each entry the script applies the change,
builds the named targets in the build folder (default build/), runs the matching tests, prints
KILLED (a test failed), SURVIVED (all passed) or BROKEN (the fault does not compile), and puts
the file back as it was, also when interrupted. Lines starting with "#" are comments.

    python3 scripts/mutation-pass.py [list...] [--build DIR] [--only SUBSTRING]

Backslash escapes in the texts are decoded ("\\n" is a line break).
"""
import argparse
import os
import pathlib
import signal
import subprocess
import sys

top = pathlib.Path(__file__).resolve().parent.parent


def run(command, cwd, timeout):
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    try:
        return subprocess.run(command, cwd=cwd, env=env, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=timeout).returncode
    except subprocess.TimeoutExpired:
        return -1


def interrupted(*_):
    raise KeyboardInterrupt


def main():
    # Also when started in the background: the file under change is always put back.
    signal.signal(signal.SIGINT, interrupted)
    signal.signal(signal.SIGTERM, interrupted)
    parser = argparse.ArgumentParser()
    parser.add_argument("lists", nargs="*",
                        default=sorted(str(p) for p in (top / "scripts" / "mutations").glob("*.txt")))
    parser.add_argument("--build", default=str(top / "build"))
    parser.add_argument("--only", default="")
    args = parser.parse_args()

    entries = []
    for listPath in args.lists:
        for number, line in enumerate(pathlib.Path(listPath).read_text().splitlines(), 1):
            if not line.strip() or line.lstrip().startswith("#"):
                continue
            fields = [f.strip() for f in line.split(" @@ ")]
            if len(fields) != 5:
                sys.exit(f"{listPath}:{number}: five fields expected")
            if args.only in line:
                entries.append((number, *fields))

    survivors = 0
    for number, source, old, new, targets, pattern in entries:
        path = top / source
        original = path.read_text()
        old = old.encode().decode("unicode_escape")
        new = new.encode().decode("unicode_escape")
        if original.count(old) != 1:
            print(f"{number:4} SKIPPED  {source}: text found {original.count(old)} times: {old}")
            continue
        try:
            path.write_text(original.replace(old, new))
            built = run(["cmake", "--build", args.build, "--parallel", "2", "--target",
                         *targets.split()], top, 900)
            if built != 0:
                verdict = "BROKEN"
            else:
                failed = run(["ctest", "-R", pattern, "--timeout", "120"], args.build, 900)
                verdict = "KILLED" if failed else "SURVIVED"
        finally:
            path.write_text(original)
        survivors += verdict == "SURVIVED"
        print(f"{number:4} {verdict:8} {source}: {old!r} -> {new!r}", flush=True)
    # Leave the build matching the sources again.
    run(["cmake", "--build", args.build, "--parallel", "2", "--target", "Vantor"], top, 900)
    print(f"{survivors} survived of {len(entries)}")


if __name__ == "__main__":
    main()
