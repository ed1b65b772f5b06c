"""Runs the law of repetition in several processes, whose memory is laid out in different ways, and compares what they
print of the bytes they made."""
import os
import subprocess
import sys

# What the allocator fills memory with, and from where it takes it: large blocks come from ever lower addresses.
LAYOUTS = [{}, {}, {"MALLOC_PERTURB_": "165"}, {"MALLOC_MMAP_THRESHOLD_": "64"}]


def digest(program, layout):
    run = subprocess.run([program, "--gtest_filter=laws.of_repetition_hold_in_all_histories"],
                         env={**os.environ, "KELM_RANDOM_RUNS": "150", **layout},
                         capture_output=True, text=True, check=False)
    found = [line for line in run.stdout.splitlines() if line.startswith("[ digest")]
    if run.returncode != 0 or len(found) != 1:
        sys.exit(f"with {layout} the law does not hold or has not been run:\n{run.stdout}{run.stderr}")
    return found[0]


digests = [digest(sys.argv[1], layout) for layout in LAYOUTS]
for layout, each in zip(LAYOUTS, digests):
    print(layout, each)
if len(set(digests)) != 1:
    sys.exit("the same calls made different bytes")
