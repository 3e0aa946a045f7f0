#!/bin/sh
# Fails when a file below src/ includes one of a floor above its own, or reaches a file by any path but the one from src/.
# The floors from the ground up, one line each; folders that share a line share a floor.
#   floors.sh [source folder]
set -u
cd "${1:-$(dirname "$0")/../../src}" || exit 2

floors='store
platform
actions config favorites history ui
browser/strip browser/page browser/downloads
browser/engine
browser/tabs
annotations content groups popups search security services user_scripts
chrome
app'

find . -name '*.cpp' -o -name '*.h' | sed 's|^\./||' | sort | tr '\n' '\0' |
  xargs -0 -r grep -nHE '^[[:space:]]*#[[:space:]]*include[[:space:]]*["<]' |
  FLOORS=$floors awk '
    function floor_of(path,   parts) {
      split(path, parts, "/")
      if (parts[1] in floor) return floor[parts[1]]
      if ((parts[1] "/" parts[2]) in floor) return floor[parts[1] "/" parts[2]]
      return 0
    }
    function complain(text) { print "src/" $0 "\n    " text; faults++ }
    BEGIN {
      lines = split(ENVIRON["FLOORS"], line, "\n")
      for (i = 1; i <= lines; i++) {
        folders = split(line[i], folder, " ")
        for (j = 1; j <= folders; j++) floor[folder[j]] = i
      }
    }
    {
      count++
      file = $0
      sub(/:.*/, "", file)
      own = floor_of(file)
      included = $0
      sub(/^[^"<]*/, "", included)
      quoted = substr(included, 1, 1) == "\""
      included = substr(included, 2)
      sub(/[">].*/, "", included)
      other = floor_of(included)
      if (own == 0) complain("this folder has no floor; give it one in tests/lint/floors.sh")
      else if (other > own) complain("includes a floor above its own")
      else if (quoted && other == 0 && included !~ /^ui_[a-z0-9_]*\.h$/ && included !~ /\.moc$/)
        complain("own headers are named by their path from src/")
    }
    END {
      if (count == 0) { print "no include found at all; is this the source folder?"; exit 1 }
      exit faults > 0
    }'
