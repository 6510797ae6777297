# shellcheck shell=bash
# vxboard trace: the file BOARD/trace, to which the libraries append if it exists. Switched off, its lines are kept
# beside it.
# shellcheck disable=SC2154 # what vxboard sets: $board $bin

usage_trace() {
    cat <<'END'
usage: vxboard trace DIR [show]
       vxboard trace DIR on
       vxboard trace DIR off
       vxboard trace DIR clear

Shows the trace of the board DIR; switches it on and off; forgets what was traced. What was traced stays when the
trace is switched off, and grows when it is switched on again.

"show" has a line for each bus transfer, wait, library call and program: the time since the first line, the gap since
the line before, and what happened. Registers 0x80 and above of the device A2 (0x51) belong to the table in the
column "table", which follows the writes and reads of register 0x7f; "?" until there was one. A pause is a gap of 1 ms
or more that no traced wait explains: a wait by the real clock, or work. Then come sums. The time on the bus is
counted in bits; a transfer of N bytes has these, and one that never got to the bus none:

  write             1 + 9 + 9 + 9 N + 1           start, device, register, bytes, stop
  read              1 + 9 + 9 + 1 + 9 + 9 N + 1   start, device, register, start, device, bytes, stop
  not acknowledged  1 + 9 + 1                     start, device, stop

Lines that make no sense are shown as they are, marked with "?", and end in exit status 2.
END
}

# Puts what the file $1 holds behind the file $2.
append() {
    cat -- "$1" >>"$2"
}

vxboard_trace() {
    local word=${2-show}
    (($# == 1 || $# == 2)) || fail 'trace takes a board and a word: vxboard trace DIR [show | on | off | clear]'
    case $word in
        show | on | off | clear) ;;
        *) fail "trace does not know \"$word\": vxboard trace DIR [show | on | off | clear]" ;;
    esac
    open_board "$1"
    local on=$board/trace kept=$board/trace.off file
    for file in "$on" "$kept"; do
        [[ ! -L $file && ( ! -e $file || -f $file ) ]] || fail "$file is no plain file: remove it"
    done
    case $word in
        show)
            [[ -f $on ]] || on=$kept
            [[ -f $on ]] || fail "nothing was traced on $1: switch the trace on with \"vxboard trace $1 on\""
            exec "$bin/vxtrace" "$on"
            ;;
        on)
            if [[ ! -f $on && -f $kept ]]; then
                try "cannot switch the trace of $1 on" mv -T -- "$kept" "$on"
            else
                try "cannot switch the trace of $1 on" append /dev/null "$on"
            fi
            ;;
        off)
            if [[ -f $on && -f $kept ]]; then # switched on by hand meanwhile
                try "cannot keep the trace of $1" append "$on" "$kept"
                try "cannot switch the trace of $1 off" rm -f -- "$on"
            elif [[ -f $on ]]; then
                try "cannot switch the trace of $1 off" mv -T -- "$on" "$kept"
            fi
            ;;
        clear)
            try "cannot clear the trace of $1" rm -f -- "$kept"
            [[ ! -f $on ]] || try "cannot clear the trace of $1" truncate -s 0 -- "$on"
            ;;
    esac
}
