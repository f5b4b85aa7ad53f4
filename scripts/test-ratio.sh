#!/bin/sh
# Prints the size of the tests against the size of the code: non-blank lines of C++
# (.cpp and .h) under tests/ and under src/, and their ratio.
cd "$(dirname "$0")/.."
count() { find "$1" -name '*.cpp' -o -name '*.h' | xargs cat | grep -cv '^[[:space:]]*$'; }
SRC=$(count src)
TESTS=$(count tests)
echo "src:   $SRC non-blank lines"
echo "tests: $TESTS non-blank lines"
awk -v t="$TESTS" -v s="$SRC" 'BEGIN { printf "tests/src: %.1f %%\n", 100 * t / s }'
