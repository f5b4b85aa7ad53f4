#!/bin/sh
# Summarises a coverage build's counters: line and branch coverage per folder of src/,
# and an HTML report beside them. Usage: scripts/coverage-report.sh build-coverage
set -e
cd "$(dirname "$0")/.."
B=${1:-build-coverage}
mkdir -p "$B/html"
gcovr -r . --object-directory "$B" --filter 'src/' --exclude-throw-branches \
      --json-summary "$B/summary.json" --html-details "$B/html/index.html" >/dev/null
python3 - "$B/summary.json" <<'PY'
import json, sys, collections
files = json.load(open(sys.argv[1]))["files"]
agg = collections.defaultdict(lambda: [0, 0, 0, 0])
for f in files:
    d = f["filename"].split("/")[1] if f["filename"].startswith("src/") else "?"
    a = agg[d]
    a[0] += f["line_covered"]; a[1] += f["line_total"]
    a[2] += f["branch_covered"]; a[3] += f["branch_total"]
pct = lambda c, t: 100.0 * c / t if t else 100.0
print("%-10s %8s %8s" % ("folder", "lines", "branches"))
tot = [0, 0, 0, 0]
for d in sorted(agg):
    a = agg[d]
    tot = [x + y for x, y in zip(tot, a)]
    print("%-10s %7.1f%% %7.1f%%" % ("src/" + d, pct(a[0], a[1]), pct(a[2], a[3])))
print("%-10s %7.1f%% %7.1f%%" % ("all", pct(tot[0], tot[1]), pct(tot[2], tot[3])))
PY
echo "HTML report: $B/html/index.html"
