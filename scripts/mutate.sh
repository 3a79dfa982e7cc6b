#!/usr/bin/env bash
# How much of the core the tests really check: applies a fixed sample of
# small mutations to src/core, one at a time (a comparison flipped, a bound
# off by one, "and" and "or" swapped, a statement dropped, true for false),
# rebuilds, runs the tests, and counts the mutants the tests kill.
#
#   scripts/mutate.sh [COUNT]          run COUNT mutants (default 64)
#   scripts/mutate.sh --list [COUNT]   print the sample only
#
# The sample is spread evenly over every place in the committed core sources
# (git HEAD) where one of those mutations applies, so one commit always gives
# the same mutants. It runs on a copy of HEAD under build-mutate/, never in
# the checkout. The core's own tests run first; a mutant they miss is given
# to cwreport's tests too. A mutant that does not build is not counted.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
list_only=false
if [ "${1:-}" = --list ]; then list_only=true; shift; fi
count=${1:-64}
work=${CW_MUTATE_DIR:-$root/build-mutate}
src=$work/src
build=$work/build

# A copy of HEAD, made again only when HEAD has moved, so that an unchanged
# copy keeps its build.
head=$(git -C "$root" rev-parse HEAD)
if [ "$(cat "$work/head" 2>/dev/null)" != "$head" ]; then
  rm -rf "$src"
  mkdir -p "$src"
  git -C "$root" archive HEAD | tar -x -C "$src"
  echo "$head" >"$work/head"
fi

# The core's test programs, one for each folder of tests/core.
core_tests=()
for folder in "$src"/tests/core/*/; do
  ls "$folder"*.cpp >/dev/null 2>&1 && core_tests+=("cw_$(basename "$folder")_tests")
done

# Every mutation site, one per line: KIND FILE LINE COLUMN FROM TO, split by
# the unit separator (a tab would fold the empty FROM away); COLUMN counted
# from 0, FROM empty and TO "{}" to drop the line's statement.
sep=$'\x1f'
sites() {
  (cd "$src" && find src/core -name '*.cpp' | LC_ALL=C sort) | while read -r file; do
    perl -ne '
      BEGIN { %flip = ("<=" => "<", "<" => "<=", ">=" => ">", ">" => ">=", "==" => "!=",
                       "!=" => "==", "&&" => "||", "||" => "&&"); $file = shift @ARGV;
              $, = "\x1f"; $\ = "\n" }
      chomp; my $line = $_;
      next if $line =~ m{^\s*(//|#|\*)} || $line =~ /["\x27]/;
      $line =~ s{\s*//.*$}{};
      while ($line =~ / (<=|<|>=|>|==|!=|&&|\|\|) /g) {
        my ($op, $column) = ($1, $-[1]);
        print $op eq "&&" || $op eq "||" ? "and-or" : "compare", $file, $., $column, $op, $flip{$op};
      }
      while ($line =~ / ([+-] 1)\b/g) { print "bound", $file, $., $-[0], " $1", "" }
      if ($line =~ /\breturn (true|false);/) {
        print "truth", $file, $., $-[1], $1, $1 eq "true" ? "false" : "true";
      }
      # An assignment to a name already declared, a call, an increment.
      if ($line =~ /^\s+([\w.\[\]]+|[\w]+->\w+) (=|\+=|-=|\|=) .*;$/ ||
          $line =~ /^\s+[\w:.>\-]+\(.*\);$/ && $line !~ /^\s+(return|throw|delete)\b/ ||
          $line =~ /^\s+(\+\+|--)\w+;$/) {
        print "drop", $file, $., 0, "", "{}";
      }
    ' "$file" "$src/$file"
  done
}

# The same share of the sample for each kind of mutation, spread evenly over
# that kind's sites; a kind with too few sites gives its share to the others.
mapfile -t all < <(sites)
total=${#all[@]}
kinds=(compare bound and-or truth drop)
sample=()
left=$count
for ((k = 0; k < ${#kinds[@]}; ++k)); do
  mapfile -t these < <(printf '%s\n' "${all[@]}" | grep "^${kinds[k]}$sep" || true)
  share=$((left / (${#kinds[@]} - k)))
  [ "${#these[@]}" -lt "$share" ] && share=${#these[@]}
  for ((i = 0; i < share; ++i)); do sample+=("${these[i * ${#these[@]} / share]}"); done
  left=$((left - share))
done
count=${#sample[@]}

describe() {  # SITE
  IFS=$sep read -r kind file line column from to <<<"$1"
  if [ -z "$from" ]; then
    echo "$file:$line: drop \"$(sed -n "${line}p" "$src/$file" | sed 's/^ *//')\""
  else
    echo "$file:$line: \"$from\" -> \"$to\""
  fi
}

if $list_only; then
  echo "$count of $total mutation sites in src/core at ${head:0:12}:"
  for site in "${sample[@]}"; do describe "$site"; done
  exit 0
fi

launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S "$src" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCW_BUILD_BENCH=OFF "${launcher[@]}" >/dev/null
echo "mutate: building the unchanged copy of ${head:0:12}"
cmake --build "$build" --target "${core_tests[@]}" cwreport cw_cli_tests >/dev/null

# The tests must pass before any mutant is judged by them.
run_tests() {  # which: core | cli; prints the first test program that failed
  local programs=("${core_tests[@]}")
  [ "$1" = cli ] && programs=(cw_cli_tests)
  for program in "${programs[@]}"; do
    # A mutant that loops while it allocates must fail here, not take the
    # machine's memory: 4 GB is far above what any test program needs.
    if ! (cd "$build" && ulimit -v 4194304 &&
          QT_QPA_PLATFORM=offscreen timeout 300 "tests/$program" --gtest_brief=1 >/dev/null 2>&1); then
      echo "$program"
      return
    fi
  done
}
for which in core cli; do
  failing=$(run_tests "$which")
  if [ -n "$failing" ]; then echo "mutate: $failing fails without any mutant; fix that first" >&2; exit 1; fi
done

current=""
restore() { [ -n "$current" ] && cp "$work/original" "$src/$current"; current=""; }
trap restore EXIT

killed=0 judged=0 unbuilt=0
survivors=()
for site in "${sample[@]}"; do
  IFS=$sep read -r kind file line column from to <<<"$site"
  what=$(describe "$site")
  cp "$src/$file" "$work/original"
  current=$file
  LINE=$line COLUMN=$column FROM=$from TO=$to perl -i -pe '
    if ($. == $ENV{LINE}) {
      if ($ENV{FROM} eq "") { s/^(\s*).*$/$1$ENV{TO}/ }
      else { substr($_, $ENV{COLUMN}, length $ENV{FROM}) = $ENV{TO} }
    }' "$src/$file"
  if ! cmake --build "$build" --target "${core_tests[@]}" >/dev/null 2>&1; then
    unbuilt=$((unbuilt + 1))
    echo "does not build  $what"
    restore
    continue
  fi
  judged=$((judged + 1))
  by=$(run_tests core)
  if [ -z "$by" ] && cmake --build "$build" --target cwreport cw_cli_tests >/dev/null 2>&1; then by=$(run_tests cli); fi
  if [ -n "$by" ]; then
    killed=$((killed + 1))
    echo "killed          $what  ($by)"
  else
    survivors+=("$what")
    echo "SURVIVED        $what"
  fi
  restore
done
# The copy's programs back as they were, for the next run.
cmake --build "$build" --target "${core_tests[@]}" cwreport cw_cli_tests >/dev/null 2>&1 || true

echo
echo "mutate: ${killed} of ${judged} mutants killed ($((judged ? 100 * killed / judged : 0))%), ${unbuilt} did not build; sample of ${count} from ${total} sites at ${head:0:12}"
for survivor in "${survivors[@]}"; do echo "  survived: $survivor"; done
