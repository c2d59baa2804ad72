# Runs the tests of a build folder and counts test cases over all programs.
# shellcheck shell=bash

# Reads the verbose output of ctest; prints what the failing programs said, then the totals.
# A program that ends badly without naming a failed case (a crash, a timeout, a leak report) counts as one failure.
count_cases() {
  awk '
    /^[ ]*[0-9]+\/[0-9]+ Test +#[0-9]+: / {
      id = $0; sub(/^[^#]*#/, "", id); sub(/:.*/, "", id)
      verdict[id] = $0; order[++programs] = id
      next
    }
    /^[0-9]+: / {
      id = $0; sub(/:.*/, "", id)
      text = $0; sub(/^[0-9]+: ?/, "", text)
      said[id] = said[id] text "\n"
      # What a filter leaves out of a second run has run in the first.
      if (text ~ /^Test command:.*--(source-file|test-case)/) filtered[id] = 1
      if (text ~ /\[doctest\] test cases:/) {
        fields = split(text, part, "|")
        for (i = 2; i <= fields; i++) {
          split(part[i], word, " ")
          if (word[2] != "skipped" || !filtered[id]) total[id, word[2]] += word[1]
        }
      }
    }
    END {
      for (i = 1; i <= programs; i++) {
        id = order[i]
        failed_here = total[id, "failed"]
        if (verdict[id] !~ / Passed /) {
          printf "%s\n%s\n", verdict[id], said[id]
          if (failed_here == 0) failed_here = 1
        } else if (total[id, "passed"] + failed_here + total[id, "skipped"] == 0) {
          printf "%s\nran no test case\n", verdict[id]
          failed_here = 1
        }
        passed += total[id, "passed"]; failed += failed_here; skipped += total[id, "skipped"]
      }
      printf "%d test cases in %d programs\n", passed + failed + skipped, programs
      printf "%d passed, %d failed, %d skipped\n", passed, failed, skipped
      exit failed > 0 || passed == 0
    }'
}

# run_tests FOLDER : all tests of a build folder, quiet when well; fails when one failed or none ran.
run_tests() {
  local log=$1/tests.log status=0
  ctest --test-dir "$1" -V -j "$JOBS" --timeout 600 >"$log" 2>&1 </dev/null || status=$?
  count_cases <"$log" || return 1
  if [ "$status" -ne 0 ]; then
    tail -5 "$log" >&2
    return "$status"
  fi
}
