# lib.sh - what the scripts share; sourced by them with bash. root is the checkout, and the current folder from here on.

root=$(CDPATH='' cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd) || exit 1
cd "$root" || exit 1
me=$(basename -- "$0")

Say() { printf '%s: %s\n' "$me" "$*"; }

Die() {
  printf '%s: %s\n' "$me" "$*" >&2
  exit 1
}

# The comment at the top of the running script, as its help.
PrintHelp() { sed -n '2,/^[^#]/ { /^#/ s/^# \{0,1\}//p }' "$0"; }

# A folder that all checkouts of this user share; inside build/ where there is no home to write to.
PrintCacheFolder() {
  local folder=${XDG_CACHE_HOME:-${HOME:+$HOME/.cache}}
  if [ -n "$folder" ] && mkdir -p "$folder/qxv" 2>/dev/null && [ -w "$folder/qxv" ]; then
    printf '%s\n' "$folder/qxv"
  else
    mkdir -p "$root/build/cache"
    printf '%s\n' "$root/build/cache"
  fi
}
