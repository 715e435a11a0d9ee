#!/usr/bin/env bash
# The one test command: installs what is missing, builds, and runs every test. Closes with one line,
# "N passed, N failed"; the exit status is 0 only when nothing failed.
#
#   ./test.sh              everything
#   ./test.sh STEP ...     some steps: format house native asan tidy fuzz e2e page package windows
#
# What computes runs beside what mostly waits and has precedence: see the lanes at the end.
set -uo pipefail
cd "$(dirname "$0")"

fuzz_seconds=${FUZZ_SECONDS:-10}
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
passed=0
failed=0
skipped=0
own_network=()  # runs a command in a network of its own, where the machine can give it one
! unshare --net true 2>/dev/null || own_network=(unshare --net python3 tests/loopback.py)

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

# The builds that a step wants.
builds_of() {
  case $1 in
    native | page | tidy) echo dev ;;
    asan | fuzz) echo "$1" ;;
    e2e | package) echo release ;;
    windows) echo release windows-x86_64 windows-i686 ;;
  esac
}

# Makes a build; how it ended goes to a file.
make_build() {
  local preset=$1 options=() targets=() status began=$SECONDS
  # Some builds parse the common headers once. The others hold every source to include what it uses.
  case $preset in asan | fuzz | windows-*) options=(-DVEX_PCH=ON) ;; esac
  case $preset in
    fuzz) targets=(--target fuzzers vexctl) ;;
    # Benchmarks are to build. Optimised as a whole with the rooms, each would take as long as a program.
    dev) options+=(-DVEX_BENCH=ON) ;;
    release) options+=(-DVEX_BENCH=OFF) ;;
  esac
  cmake --preset "$preset" "${options[@]}" >"$results/$preset.made" 2>&1 && cmake --build --preset "$preset" "${targets[@]}" >>"$results/$preset.made" 2>&1
  status=$?
  [ $status -eq 0 ] || tail -n 100 "$results/$preset.made"
  tell_time "build $preset" "$began"
  echo $status >"$results/$preset.ended"
}

# Waits until what another lane makes has ended; its status.
made() {
  until [ -s "$results/$1.ended" ]; do sleep 0.2; done
  [ "$(cat "$results/$1.ended")" = 0 ]
}

# Brings what is missing, while what needs none of it is built.
prepare() {
  cmake/install-packages.sh test
  echo $? >"$results/packages.ended"
  [[ " ${steps[*]} " == *" windows "* ]] || return
  cmake/install-packages.sh windows
  echo $? >"$results/windows-packages.ended"
  cmake/windows/install-wine32.sh
  echo $? >"$results/windows-wine32.ended"
}

# How long something has taken since this shell's second $2, and the processor time of all that this shell has waited for.
tell_time() {
  times >"$results/$1.times"
  tr 'ms' '  ' <"$results/$1.times" |
    awk -v what="$1" -v took=$((SECONDS - $2)) 'NR == 2 { printf "%s: %d s, %d s of processor time\n", what, took, 60 * ($1 + $3) + $2 + $4 }'
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
  if made dev; then run_tests dev; else check "build dev" false; fi
}

step_asan() {
  heading "the same under address and undefined-behaviour sanitizers (Clang)"
  if made asan; then run_tests asan; else check "build asan" false; fi
}

step_tidy() {
  heading "clang-tidy"
  if ! made dev; then check "build dev" false; return; fi
  check "clang-tidy" bash -c 'git ls-files "basic/*.cpp" "host/*.cpp" ":!*/win32/*" ":!components/com" "settings/*.cpp" "show/*.cpp" "time/*.cpp" \
    "schedule/*.cpp" "player/*.cpp" "monitor/*.cpp" "components/*.cpp" "tools/*.cpp" "tray/*.cpp" "programs/*.cpp" "demo/*.cpp" |
    xargs ls -S | xargs -P "$(nproc)" -n 1 clang-tidy-14 -p build/dev --quiet --extra-arg=-Wno-unknown-warning-option 2>/dev/null'
}

# The sources that only Windows has, as Clang reads them with GCC's headers. The machine hands pointers over as numbers.
tidy_windows() {
  local gcc=/usr/lib/gcc/x86_64-w64-mingw32/12-posix/include/c++ folder words=()
  for folder in "$gcc" "$gcc/x86_64-w64-mingw32" "$gcc/backward" /usr/x86_64-w64-mingw32/include; do
    words+=("--extra-arg=-isystem$folder")
  done
  git ls-files "host/win32/*.cpp" "components/com/*.cpp" "components/*/win32/*.cpp" "components/*/plain/*.cpp" |
    xargs ls -S | xargs -P "$(nproc)" -n 1 nice -n 10 clang-tidy-14 -p build/windows-x86_64 --quiet --checks=-performance-no-int-to-ptr \
      --extra-arg=--target=x86_64-w64-mingw32 "${words[@]}" --extra-arg=-Wno-unknown-warning-option 2>/dev/null
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
  if ! made fuzz; then check "build fuzz" false; return; fi
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
  if ! made release; then check "build release" false; return; fi
  cases "python3 tests/e2e/run.py" build/release
}

# The builds of this run that have the programs.
compare_builds() {
  local programs=() each
  for each in "$results"/*.made; do
    each=build/$(basename "$each" .made)
    [ ! -x "$each/bin/vexctl" ] || programs+=("$each")
  done
  [ ${#programs[@]} -lt 2 ] || check "the same evening to the byte from ${programs[*]}" \
    python3 tests/e2e/same_bytes.py "${programs[@]}"
}

step_page() {
  heading "the tray's page in a browser"
  if ! made dev; then check "build dev" false; return; fi
  check "packages of the page's tests" npm --prefix tests/page ci --ignore-scripts --silent
  cases "node tests/page/run.js" build/dev
  cases "python3 tests/page/real.py" build/dev
}

step_package() {
  heading "Debian package"
  if ! made release; then check "build release" false; return; fi
  local as_root=""
  [ "$(id -u)" -eq 0 ] || as_root="sudo "
  cases "${as_root}tests/package/run.sh" build/release
}

# All tests of one width; what they say and how many they were goes to files, so that the next width can be built
# meanwhile.
try_windows() {
  local architecture=$1 script good bad left_out
  passed=0 failed=0 skipped=0
  if read -r good bad left_out < <("${own_network[@]}" python3 tests/windows/run.py "$architecture"); then
    passed=$good failed=$bad skipped=$left_out
    check "programs of windows-$architecture stand alone" python3 tests/windows/imports.py "$architecture" \
      "build/windows-$architecture/bin"
    for script in programs commands codepages network harm package boxes video; do
      cases "${own_network[*]} python3 tests/windows/$script.py" "$architecture"
    done
    cases "${own_network[*]} python3 tests/windows/evening.py" "$architecture" build/release/bin
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

# One width is tried while the next is built; never two at once where they share this machine's addresses.
step_windows() {
  heading "the same for Windows (mingw-w64), under Wine"
  check "packages for Windows" made windows-packages
  check "32-bit Wine" made windows-wine32
  check "build release, to be compared with" made release
  local architecture tried=()
  for architecture in x86_64 i686; do
    if ! made "windows-$architecture"; then check "build windows-$architecture" false; continue; fi
    [ ${#own_network[@]} -gt 0 ] || wait
    (try_windows "$architecture") >"$results/windows-$architecture.log" 2>&1 &
    tried+=("$architecture")
    [ "$architecture" = i686 ] || check "clang-tidy of what only Windows has" tidy_windows
  done
  wait
  for architecture in "${tried[@]}"; do add_windows "$architecture"; done
}

known=(format house native asan tidy fuzz e2e page package windows)
steps=("$@")
[ ${#steps[@]} -gt 0 ] || steps=("${known[@]}")
for step in "${steps[@]}"; do
  [[ " ${known[*]} " == *" $step "* ]] || { echo "no step \"$step\"; there are ${known[*]}" >&2; exit 2; }
done

# Runs those of the steps named that were asked for, one after another. What a step says is shown when it has ended,
# what it counted goes to a file.
in_turn() {
  local step build
  for step in "$@"; do
    [[ " ${steps[*]} " == *" $step "* ]] || continue
    (
      made packages || check "packages for the tests" false
      read -r build _ <<<"$(builds_of "$step")"
      [ -z "$build" ] || made "$build"
      began=$SECONDS
      "step_$step"
      tell_time "$step" "$began"
      echo "$passed $failed $skipped" >"$results/$step.counts"
    ) >"$results/$step.log" 2>&1
    flock "$results" cat "$results/$step.log"
  done
}

# Makes those of the builds named that the steps want, each as soon as what it needs has been installed.
make_builds() {
  local preset wanted
  wanted=" $(for step in "${steps[@]}"; do builds_of "$step"; done | tr '\n' ' ') "
  for preset in "$@"; do
    [[ $wanted == *" $preset "* ]] || continue
    case $preset in
      release) ;;
      windows-*) made windows-packages ;;
      *) made packages ;;
    esac
    (make_build "$preset")
  done
}

# The lane that computes: it steps back wherever a program that plays in real time wants a processor.
compute() {
  renice -n 10 "$BASHPID" >/dev/null
  export GLIBC_TUNABLES=glibc.malloc.hugetlb=1  # Clang takes a twelfth less time
  make_builds release
  in_turn format house
  make_builds windows-x86_64 dev windows-i686 asan fuzz
  in_turn fuzz tidy
}

stop() {
  local job
  for job in $(jobs -p); do kill -INT -- "-$job" 2>/dev/null; done
  sleep 5
  for job in $(jobs -p); do kill -TERM -- "-$job" 2>/dev/null; done
  exit 130
}

cmake/install-packages.sh || exit 1
command -v ccache >/dev/null && export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_SLOPPINESS=pch_defines,time_macros
set -m  # each lane a group of its own, to be stopped whole
trap stop INT TERM
prepare </dev/null &
compute </dev/null &
# The lanes that play: one program at a time has this machine's addresses.
plays=(e2e native page package asan)
if [ ${#own_network[@]} -gt 0 ]; then in_turn windows </dev/null & else plays+=(windows); fi
in_turn "${plays[@]}" </dev/null &
wait
set +m

for step in "${steps[@]}"; do
  read -r good bad left_out <"$results/$step.counts" || { good=0 bad=1 left_out=0; echo "FAILED: $step breaks off"; }
  passed=$((passed + good))
  failed=$((failed + bad))
  skipped=$((skipped + left_out))
done
[[ " ${steps[*]} " != *" e2e "* ]] || compare_builds
printf '\n%d passed, %d failed' "$passed" "$failed"
[ "$skipped" -eq 0 ] || printf ', %d skipped' "$skipped"
printf '\n'
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
