# shellcheck shell=bash
# vxboard faults: the rules in BOARD/faults, which make calls of library operations fail. The library passes over lines
# that make no sense; here they are told.
# shellcheck disable=SC2154 # what vxboard sets: $board $parts

usage_faults() {
    cat <<'END'
usage: vxboard faults DIR
       vxboard faults DIR add RULE...
       vxboard faults DIR clear
       vxboard faults --list

Lists the faults that are armed on the board DIR; arms more; disarms all. A rule that is used up disappears.
A RULE is the name of an operation and then any of these words:

  dev=0x51 reg=0x7f  only bus transfers with this device, with this first register
  skip=N             so many matching calls succeed first (0)
  times=N            so many fail then (1); times=always: all that follow
  result=N           what they return (6)

  --list             list the operations that can be made to fail

Examples: the third select of a table fails; saving the calibration always fails.

  vxboard faults DIR add libvx_ponApi_i2cWrite dev=0x51 reg=0x7f skip=2
  vxboard faults DIR add libvx_sys_saveBob times=always
END
}

# What the library takes: a longer file or line it passes over whole.
readonly faults_max=8191 fault_line_max=255 number_max=2147483647

# Sets $operations to the names of the calls that can be made to fail.
load_operations() {
    local list=${parts%/*}/operations
    [[ -s $list ]] || fail "no $list: run the vxboard of a build tree or of an installation"
    mapfile -t operations <"$list"
}

# Sets $hint to the operation most like $1, with words around it: nothing if none is like it. Alike is what begins and
# ends the same, so a letter too few, too many or wrong does not matter.
find_alike() {
    local word=${1,,} name other best=0 head tail least
    hint=
    ((${#word} >= 5)) || return 0 # a few letters are in every name
    for name in "${operations[@]}"; do
        other=${name,,}
        least=$((${#word} < ${#other} ? ${#word} : ${#other}))
        for ((head = 0; head < least; head++)); do
            [[ ${word:head:1} == "${other:head:1}" ]] || break
        done
        for ((tail = 0; tail < least - head; tail++)); do
            [[ ${word: -1-tail:1} == "${other: -1-tail:1}" ]] || break
        done
        # Three quarters of the word have to be in it.
        if ((head + tail > best && 4 * (head + tail) >= 3 * ${#word})); then
            best=$((head + tail))
            hint="; did you mean $name?"
        fi
    done
}

# Sets $number to the number $1, as C reads it. False if it is none from 0 to $number_max.
read_number() {
    number=
    [[ $1 =~ ^\+?(0[xX][0-9a-fA-F]{1,15}|0[0-7]{0,15}|[1-9][0-9]{0,15})$ ]] || return
    number=$(($1))
    ((number <= number_max))
}

# Sets $wrong to what is wrong with the rule, empty if nothing is. A rule without words is a comment.
check_rule() {
    local operation=${1-} word number
    wrong=
    (($# > 0)) || return
    shift
    if [[ " ${operations[*]} " != *" $operation "* ]]; then
        find_alike "$operation"
        wrong="no operation \"$operation\"${hint:-; see \"vxboard faults --list\"}"
        return
    fi
    for word in "$@"; do
        case $word in
            times=always) continue ;;
            dev=* | reg=*)
                if [[ $operation != libvx_ponApi_i2c* ]]; then
                    wrong="$word goes with libvx_ponApi_i2cRead and libvx_ponApi_i2cWrite only"
                    return
                fi
                ;;
            skip=* | times=* | result=*) ;;
            *)
                wrong="no word \"$word\" in a rule; there are dev= reg= skip= times= result="
                return
                ;;
        esac
        if ! read_number "${word#*=}"; then
            wrong="$word: ${word%%=*} takes a number from 0 to $number_max"
        elif [[ $word == times=* ]] && ((number == 0)); then
            wrong="$word: such a rule never strikes; leave it out, or say times=1"
        elif [[ $word == reg=* ]] && ((number > 255)); then
            wrong="$word: registers are 0 to 0xff"
        elif [[ $word == dev=* ]] && ((number > 127)); then
            wrong="$word: devices are 0 to 0x7f, the transceiver's are 0x50 and 0x51"
        fi
        [[ -z $wrong ]] || return
    done
}

# Takes the lock under which the library counts its rules; it ends with this process. Refuses what is no plain file.
lock_faults() {
    local lock
    faults=$board/faults
    [[ ! -L $faults && (! -e $faults || -f $faults) ]] || fail "$faults is no plain file: remove it"
    { exec {lock}<"$board"; } 2>/dev/null || fail "cannot open $board"
    try "cannot lock $board" flock "$lock"
}

# Sets $armed to the lines of the file.
read_armed() {
    armed=()
    if [[ -e $faults ]]; then
        { mapfile -t armed <"$faults"; } 2>/dev/null || fail "cannot read $faults"
    fi
}

list_faults() {
    local line words wrong hint operations armed
    load_operations
    read_armed
    for line in "${armed[@]}"; do
        read -ra words <<<"${line%%#*}"
        check_rule "${words[@]}"
        ((${#line} <= fault_line_max)) || wrong="longer than $fault_line_max characters"
        line+=${wrong:+"   <- never strikes: $wrong"}
        printf '%s\n' "${line//[![:print:]]/?}"
    done
    [[ ${#armed[@]} -gt 0 ]] || echo 'no faults'
}

# Puts the words together to rules, each beginning with a word without "=", and arms them all, or none.
add_faults() {
    local word operations wrong hint rules=() armed text words
    load_operations
    read -ra words <<<"${*//[$'\n\t']/ }"
    for word in "${words[@]}"; do
        if [[ $word != *=* ]]; then
            rules+=("$word")
        else
            ((${#rules[@]} > 0)) || fail "a rule begins with the name of an operation, not with $word"
            rules[-1]+=" $word"
        fi
    done
    ((${#rules[@]} > 0)) || fail 'faults add takes a rule: vxboard faults DIR add OPERATION [WORD...]'
    for word in "${rules[@]}"; do
        read -ra words <<<"$word"
        check_rule "${words[@]}"
        [[ -z $wrong ]] || fail "$wrong"
        ((${#word} <= fault_line_max)) || fail "a rule has at most $fault_line_max characters: $word"
    done
    lock_faults
    read_armed
    printf -v text '%s\n' "${armed[@]}" "${rules[@]}"
    ((${#text} <= faults_max)) || fail "$faults would be too long for the library: clear it first"
    try "cannot write $faults" replace_faults "$text"
}

replace_faults() {
    printf '%s' "$1" >"$board/.faults.new" && mv -T -- "$board/.faults.new" "$faults"
}

vxboard_faults() {
    local faults operations
    if [[ $# -eq 1 && $1 == --list ]]; then
        load_operations
        show printf '%s\n' "${operations[@]}"
        return
    fi
    [[ ${1--} != -* ]] || fail 'faults takes a board: vxboard faults DIR [add RULE... | clear]'
    local directory=$1 word=${2-}
    shift $(($# > 1 ? 2 : 1))
    open_board "$directory"
    local LC_ALL=C # lengths are bytes
    case $word in
        '')
            (($# == 0)) || fail 'faults takes "add" or "clear": vxboard faults DIR [add RULE... | clear]'
            lock_faults
            show list_faults
            ;;
        add) add_faults "$@" ;;
        clear)
            (($# == 0)) || fail "faults clear disarms all and takes no words: vxboard faults DIR clear"
            lock_faults
            try "cannot remove $faults" rm -f -- "$faults"
            ;;
        *) fail "faults does not know \"$word\": vxboard faults DIR [add RULE... | clear]" ;;
    esac
}
