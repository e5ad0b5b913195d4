#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A small mutation pass: applies each one-line fault from a list, rebuilds the named test
# targets, runs them and puts the file back. A fault that no test notices "survives".
#
#   bash scripts/mutate.sh LIST [BUILD_DIR]
#
# LIST holds one mutation per line, four fields separated by tabs:
#   path (from the top of the checkout) <TAB> exact text <TAB> replacement <TAB> test targets
# The exact text must occur once in the file; "<NL>" in either text stands for a line break, and
# the replacement may be empty. Test targets are space-separated CTest names (tst_cfile tst_xml).
# Empty lines and lines starting with "#" are skipped. Needs a configured build folder (default
# build/); builds with -j2. Exits nonzero when a mutation survives.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
list=$(realpath "${1:?usage: mutate.sh LIST [BUILD_DIR]}")
build=$(realpath "${2:-$top/build}")
exec python3 - "$top" "$list" "$build" <<'EOF'
import os, re, shutil, signal, subprocess, sys, tempfile

top, listPath, build = sys.argv[1:4]
env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
backupDir = tempfile.mkdtemp()
current = None  # (path, backup) while a file is mutated


def restore():
    # The original text comes back with a new time stamp, so that the build sees the change.
    global current
    if current:
        shutil.copyfile(current[1], current[0])
        os.utime(current[0])
        current = None


signal.signal(signal.SIGTERM, lambda *a: sys.exit(130))
killed = survived = skipped = 0
allTargets = set()
try:
    for number, line in enumerate(open(listPath, encoding="utf-8"), 1):
        line = line.rstrip("\n")
        if not line.strip() or line.startswith("#"):
            continue
        fields = line.split("\t")
        if len(fields) != 4:
            print(f"SKIPPED  line {number}: {len(fields)} fields, not 4")
            skipped += 1
            continue
        path, old, new, targets = fields
        old, new = old.replace("<NL>", "\n"), new.replace("<NL>", "\n")
        targets = targets.split()
        label = f"line {number} {path}: {old.strip()!r} -> {new.strip()!r}"
        file = os.path.join(top, path)
        text = open(file, encoding="utf-8").read()
        if text.count(old) != 1:
            print(f"SKIPPED  {label} (the text occurs {text.count(old)} times)")
            skipped += 1
            continue
        allTargets.update(targets)
        backup = os.path.join(backupDir, "file")
        shutil.copyfile(file, backup)
        current = (file, backup)
        open(file, "w", encoding="utf-8").write(text.replace(old, new, 1))
        built = subprocess.run(["cmake", "--build", build, "-j2", "--target", *targets],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if built.returncode != 0:
            result = "KILLED   (does not build)"
        else:
            regex = "^(" + "|".join(targets) + ")$"
            run = subprocess.run(["ctest", "-R", regex], cwd=build, env=env,
                                 capture_output=True, text=True)
            if run.returncode == 0:
                result = "SURVIVED"
            else:
                failed = re.findall(r"\d+ - (\S+) \(", run.stdout)
                result = "KILLED   by " + " ".join(failed)
        restore()
        if result.startswith("SURVIVED"):
            survived += 1
        else:
            killed += 1
        print(f"{result} {label}", flush=True)
finally:
    restore()
    shutil.rmtree(backupDir, ignore_errors=True)

print(f"killed {killed}, survived {survived}, skipped {skipped}")
if allTargets:  # leave the build folder matching the sources again
    subprocess.run(["cmake", "--build", build, "-j2", "--target", *sorted(allTargets)],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
sys.exit(1 if survived else 0)
EOF
