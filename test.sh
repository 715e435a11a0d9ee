#!/usr/bin/env bash
# The one test command: installs what is missing, builds, and runs every test. Closes with one line,
# "N passed, N failed"; the exit status is 0 only when nothing failed.
#
#   ./test.sh              everything
#   ./test.sh STEP ...     some steps: format house native asan tidy fuzz e2e page package windows
set -uo pipefail
cd "$(dirname "$0")"

fuzz_seconds=${FUZZ_SECONDS:-10}
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
passed=0
failed=0
skipped=0
built=()  # the builds of this run, each up to date

heading() { printf '\n== %s\n' "$1"; }

# One check by its exit status.
check() {
  local name=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED: $name"
  fi
}

# Adds up the cases of every test program from the reports that they wrote; a program that died counts as
# one failed case.
run_tests() {
  local preset=$1 reports=$results/$1
  mkdir -p "$reports"
  GTEST_OUTPUT="xml:$reports/" GTEST_BRIEF=1 ctest --test-dir "build/$preset" -j "$(nproc)" --output-on-failure \
    --output-junit "$reports/ctest.junit" || true
  local good bad left_out
  read -r good bad left_out < <(python3 tests/count.py "$reports")
  echo "$preset: $good passed, $bad failed, $left_out skipped"
  passed=$((passed + good))
  failed=$((failed + bad))
  skipped=$((skipped + left_out))
}

# Runs a script that prints "ok NAME", "not ok NAME" or "MACHINE: left out, WHY" for each case and counts them; one that
# breaks off without having said so, or has no case, counts as one failed case.
cases() {
  local script=$1 said status good bad left_out
  shift
  said=$(mktemp "$results/cases.XXXXXX")
  $script "$@" 2>&1 | tee "$said"
  status=${PIPESTATUS[0]}
  good=$(grep -c '^ok ' "$said")
  bad=$(grep -c '^not ok ' "$said")
  left_out=$(grep -c '^[a-z0-9_-]*: left out, ' "$said")
  if [ "$bad" -eq 0 ] && { [ "$status" -ne 0 ] || [ $((good + left_out)) -eq 0 ]; }; then
    echo "FAILED: $script $* ends with status $status after $good cases"
    bad=1
  fi
  passed=$((passed + good))
  failed=$((failed + bad))
  skipped=$((skipped + left_out))
}

build() {
  local headers=()
  # Some builds parse the common headers once. The others hold every source to include what it uses.
  case $1 in asan | windows-*) headers=(-DVEX_PCH=ON) ;; esac
  cmake --preset "$1" "${headers[@]}" >"$results/$1.configure" 2>&1 && cmake --build --preset "$1" || { cat "$results/$1.configure"; return 1; }
  [[ " ${built[*]} " == *" build/$1 "* ]] || built+=("build/$1")
}


step_format() {
  heading "format"
  check "clang-format" bash -c 'git ls-files "*.h" "*.cpp" | xargs clang-format-14 --dry-run -Werror'
}

step_house() {
  heading "house rules"
  python3 tests/house/house.py >"$results/house" 2>&1
  cat "$results/house"
  passed=$((passed + $(grep -c '^ok ' "$results/house")))
  failed=$((failed + $(grep -c '^not ok ' "$results/house")))
}

step_native() {
  heading "native tests (GCC)"
  if build dev; then run_tests dev; else check "build dev" false; fi
}

step_asan() {
  heading "the same under address and undefined-behaviour sanitizers (Clang)"
  if build asan; then run_tests asan; else check "build asan" false; fi
}

step_tidy() {
  heading "clang-tidy"
  build dev >/dev/null
  check "clang-tidy" bash -c 'git ls-files "basic/*.cpp" "host/*.cpp" ":!*/win32/*" ":!components/com" "settings/*.cpp" "show/*.cpp" "time/*.cpp" \
    "schedule/*.cpp" "player/*.cpp" "monitor/*.cpp" "components/*.cpp" "tools/*.cpp" "tray/*.cpp" "programs/*.cpp" "demo/*.cpp" |
    xargs -P "$(nproc)" -n 4 clang-tidy-14 -p build/dev --quiet --extra-arg=-Wno-unknown-warning-option 2>/dev/null'
}

# One fuzzer; its lines and its exit status go to files, so that several can run at once.
try_fuzzer() {
  local fuzzer=$1 name
  name=$(basename "$fuzzer")
  mkdir -p "$results/$name"
  "$fuzzer" -max_total_time="$fuzz_seconds" -timeout=10 -rss_limit_mb=4096 -print_final_stats=0 -verbosity=0 \
    -artifact_prefix="$results/" "$results/$name" "fuzz/corpus/$name" >"$results/$name.log" 2>&1
  echo $? >"$results/$name.status"
}

step_fuzz() {
  heading "fuzzers, $fuzz_seconds s each, $(nproc) at once"
  if ! build fuzz; then check "build fuzz" false; return; fi
  local fuzzer name
  for fuzzer in build/fuzz/fuzz/*Fuzz; do
    while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do wait -n; done
    try_fuzzer "$fuzzer" &
  done
  wait
  for fuzzer in build/fuzz/fuzz/*Fuzz; do
    name=$(basename "$fuzzer")
    cat "$results/$name.log"
    check "$name" [ "$(cat "$results/$name.status")" = 0 ]
  done
}

step_e2e() {
  heading "end to end"
  [ -e tests/e2e/run.py ] || return 0
  if ! build release; then check "build release" false; return; fi
  cases "python3 tests/e2e/run.py" build/release
  local programs=() each
  for each in "${built[@]}"; do [ ! -x "$each/bin/vexctl" ] || programs+=("$each"); done
  [ ${#programs[@]} -lt 2 ] || check "the same evening to the byte from ${programs[*]}" \
    python3 tests/e2e/same_bytes.py "${programs[@]}"
}

step_page() {
  heading "the tray's page in a browser"
  if ! build dev; then check "build dev" false; return; fi
  check "packages of the page's tests" npm --prefix tests/page ci --ignore-scripts --silent
  cases "node tests/page/run.js" build/dev
  cases "python3 tests/page/real.py" build/dev
}

step_package() {
  heading "Debian package"
  if ! build release; then check "build release" false; return; fi
  local as_root=""
  [ "$(id -u)" -eq 0 ] || as_root="sudo "
  cases "${as_root}tests/package/run.sh" build/release
}

# All tests of one width; what they say and how many they were goes to files, so that the next width can be built
# meanwhile.
try_windows() {
  local architecture=$1 script good bad left_out
  passed=0 failed=0 skipped=0
  if read -r good bad left_out < <(python3 tests/windows/run.py "$architecture"); then
    passed=$good failed=$bad skipped=$left_out
    check "programs of windows-$architecture stand alone" python3 tests/windows/imports.py "$architecture" \
      "build/windows-$architecture/bin"
    for script in programs commands codepages network harm package boxes video; do
      cases "python3 tests/windows/$script.py" "$architecture"
    done
    cases "python3 tests/windows/evening.py" "$architecture" build/release/bin
  else
    check "tests of windows-$architecture" false
  fi
  echo "$passed $failed $skipped" >"$results/windows-$architecture.counts"
}

add_windows() {
  local architecture=$1 good bad left_out
  cat "$results/windows-$architecture.log"
  read -r good bad left_out <"$results/windows-$architecture.counts" || { good=0 bad=1 left_out=0; }
  passed=$((passed + good))
  failed=$((failed + bad))
  skipped=$((skipped + left_out))
}

# One width is tried while the next is built; never two at once, since they share this machine's addresses.
step_windows() {
  heading "the same for Windows (mingw-w64), under Wine"
  check "packages for Windows" cmake/install-packages.sh windows
  check "32-bit Wine" cmake/windows/install-wine32.sh
  check "build release, to be compared with" build release
  local architecture tried=()
  for architecture in x86_64 i686; do
    if ! build "windows-$architecture"; then check "build windows-$architecture" false; continue; fi
    wait
    (try_windows "$architecture") >"$results/windows-$architecture.log" 2>&1 &
    tried+=("$architecture")
  done
  wait
  for architecture in "${tried[@]}"; do add_windows "$architecture"; done
}

steps=("$@")
[ ${#steps[@]} -gt 0 ] || steps=(format house native asan tidy fuzz e2e page package windows)
for step in "${steps[@]}"; do
  declare -F "step_$step" >/dev/null || { echo "no step \"$step\"; there are format house native asan tidy fuzz e2e page package windows" >&2; exit 2; }
done

cmake/install-packages.sh test || exit 1
command -v ccache >/dev/null && export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_SLOPPINESS=pch_defines,time_macros
for step in "${steps[@]}"; do
  began=$SECONDS
  "step_$step"
  echo "$step: $((SECONDS - began)) s"
done
printf '\n%d passed, %d failed' "$passed" "$failed"
[ "$skipped" -eq 0 ] || printf ', %d skipped' "$skipped"
printf '\n'
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
