#!/usr/bin/env bash
# check.sh BUILD [LINT]: checks what compiler and tests do not. BUILD is a build directory, configured to compile each
# source on its own. LINT "no" skips clang-tidy, which takes longer than all the rest. Prints the findings, and fails if
# there are any.
set -uo pipefail
cd "$(dirname "$0")/.." || exit
git ls-files --error-unmatch Makefile > /dev/null || exit  # without git nothing would be found
build=$1
lint=${2:-yes}
format_version=14  # versions of clang-format disagree, so the one of Debian 12 decides
failed=0

# report WHAT: reports the findings on standard input, if any.
report() {
  local findings
  findings=$(cat)
  [ -n "$findings" ] || return 0
  printf '== %s\n%s\n' "$1" "$findings"
  failed=1
}

# Within the plug-in, includes go bridge -> schema -> net -> clipboard, host -> core. Only the entry point and the
# function table may include everything.
upward_includes() {
  git grep -n '^#include "' -- plugin ':!plugin/core/VarnixPlugin.cpp' ':!plugin/core/FunctionTable.cpp' |
    awk -F: 'BEGIN { level["core"] = 0; level["clipboard"] = level["host"] = 1; level["net"] = 2; level["schema"] = 3
                     level["bridge"] = 4 }
             { split($1, path, "/"); split($3, parts, "[\"/]"); from = path[2]; to = parts[2] }
             from != to && to in level && level[to] >= level[from]'
}

# The other programs must not include headers of the plug-in.
includes_of_the_plugin() {
  git grep -n '^#include "' -- sim service solution text | while IFS=: read -r file line include; do
    path=${include#*\"}
    [ ! -e "plugin/${path%\"*}" ] || echo "$file:$line:$include"
  done
}

long_files() {
  git ls-files -- '*.cpp' '*.h' '*.mm' '*.js' '*.mjs' '*.css' '*.html' '*.py' '*.sh' '*.cmake' '*CMakeLists.txt' Makefile |
    xargs wc -l | awk '$2 != "total" && $1 > 400 { print $2 ": " $1 " lines" }'
}

# A function begins at the left margin and ends with a brace there. clang-tidy checks those within classes.
long_functions() {
  # shellcheck disable=SC2016 # awk's own variables
  git ls-files -- '*.cpp' '*.h' '*.mm' '*.js' '*.mjs' '*.sh' .ci/run | xargs awk '
    FNR == 1 { inside = 0; start = "" }
    !inside && /^[-+A-Za-z_~:]/ { start = $0; first = FNR }
    !inside && /\{$/ && start !~ /^(export )?(namespace|extern "C"|class|struct|enum|union)/ { inside = 1 }
    inside && /^}$/ && FNR - first >= 60 { print FILENAME ":" first ": " FNR - first + 1 " lines" }
    /^}/ { inside = 0 }'
}

unformatted_files() {
  git ls-files -z -- '*.cpp' '*.h' '*.mm' | xargs -0 "$1" --dry-run 2>&1 | grep 'warning:'
}

shell_findings() {
  git ls-files -z -- '*.sh' .ci/run | xargs -0 shellcheck --format=gcc
}

# The programs that users run. The tests would take three times as long.
tidy_findings() {
  sed -n 's/^ *"file": "\(.*\)".*/\1/p' "$build/compile_commands.json" | LC_ALL=C sort -u |
    grep -E "^$PWD/(plugin|sim|service|solution|text)/" | grep -v '_mac\.cpp$' |
    xargs -P "$(getconf _NPROCESSORS_ONLN)" -I '{}' clang-tidy -p "$build" --quiet '{}' 2>/dev/null
}

# The value of a variable of the configured build.
configured() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }

# The units for macOS, for both processors: compiler warnings, also about what macOS 11 lacks, and what Clang's static
# analyzer finds. MACOS_SDK names an SDK from Apple to use instead of the tests' stand-in.
mac_findings() {
  local clang sdk=${MACOS_SDK:-} options
  clang=$(configured VARNIX_CLANG)
  options=(-std=c++20 -fno-objc-arc -O1 -Wall -Wextra -Wunguarded-availability -Iplugin -Isdk -Iservice -Isim
    -Itext "-I$build/plugin/generated")
  if [ -z "$sdk" ]; then
    sdk=$build/MacOSX.sdk
    sh tests/bundle/make-sdk.sh "$sdk" "$clang" "$(configured GNUSTEP_INCLUDE)" 2>&1
  fi
  options+=(-stdlib++-isystem "$sdk/usr/include/c++/v1")  # not the one that may be installed with clang
  for arch in arm64 x86_64; do
    for mode in -fsyntax-only "--analyze --analyzer-output text -Xclang -analyzer-checker=core,osx,nullability"; do
      # shellcheck disable=SC2086 # a list of options
      git ls-files -- '*_mac.cpp' '*_mac.mm' |
        xargs -P "$(getconf _NPROCESSORS_ONLN)" -I '{}' "$clang" -target $arch-apple-macos11 -isysroot "$sdk" \
          "${options[@]}" $mode '{}' 2>&1
    done
  done
}

report "upward includes" < <(upward_includes)
report "includes of the plug-in in another program" < <(includes_of_the_plugin)
report "files of more than 400 lines" < <(long_files)
report "functions of more than 60 lines" < <(long_functions)
report "shellcheck" < <(shell_findings)
format=$(command -v clang-format-$format_version || command -v clang-format)
if "$format" --version | grep -q " version $format_version\."; then
  report "not formatted" < <(unformatted_files "$format")
else
  echo "NOT CHECKED: the format, because clang-format $format_version is missing"
fi
report "units for macOS" < <(mac_findings)
if [ "$lint" = no ]; then
  echo "NOT CHECKED: clang-tidy's rules, because of LINT=no"
else
  report "clang-tidy" < <(tidy_findings)
fi
exit $failed
