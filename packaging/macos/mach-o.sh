# shellcheck shell=bash
# What the scripts beside this file ask of the programs and libraries of Quiverly.app, once sourced.

# The files of the application that are code, a line each.
code_files() { # APPLICATION
  local file
  find "$1/Contents/MacOS" "$1/Contents/Frameworks" "$1/Contents/PlugIns" -type f |
    while IFS= read -r file; do
      case $(od -An -tx1 -N4 "$file" | tr -d ' \n') in
        cffaedfe | cafebabe) printf '%s\n' "$file" ;; # of one processor, or of several
      esac
    done
}

# Where a file looks for the libraries that it names by @rpath, a line each.
rpaths_of() { # FILE
  otool -l "$1" | awk '
    $1 == "cmd" { inside = $2 == "LC_RPATH" }
    inside && $1 == "path" { sub(/^ *path /, ""); sub(/ \(offset [0-9]+\)$/, ""); print }'
}
