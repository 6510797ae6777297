# shellcheck shell=sh
# What every stand-in begins with: there is a board, and the call goes into its trace.

fail() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit 1
}

[ -d "${VXBOARD-}" ] || fail 'no board: VXBOARD must name one'
if [ -e "$VXBOARD/trace" ]; then
    printf '%s %s run %s\n' "$(date +%s.%6N)" "$$" "${0##*/}${*:+ $*}" >>"$VXBOARD/trace"
fi

# Enters the board's directory $1 and waits for its lock, which the end of the process gives back.
enter() {
    cd "$VXBOARD/$1" 2>/dev/null || fail "the board has no $1"
    exec 9<.
    flock 9 || fail "cannot lock $1"
}

# Sets the attribute $1 of the current directory to $2, in a single step.
put() {
    printf '%s\n' "$2" >".$1.new" || fail "cannot write $1"
    mv -f ".$1.new" "$1" || fail "cannot write $1"
}
