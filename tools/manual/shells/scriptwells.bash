# Completion of scriptwells for bash. It needs no other package, and runs no command that calls a server.
# shellcheck shell=bash

# Sets `words` to the words up to the cursor, as the program would get them: bash splits them at "=" and ":", too.
_scriptwells_split() {
    local rest=${COMP_LINE:0:COMP_POINT} word blanks
    words=()
    for word in "${COMP_WORDS[@]:0:COMP_CWORD + 1}"; do
        blanks=${rest%%[![:space:]]*}
        rest=${rest#"$blanks"}
        ((${#word} <= ${#rest})) || word=$rest
        if [[ -n $blanks || ${#words[@]} -eq 0 ]]; then
            words+=("$word")
        else
            words[-1]+=$word
        fi
        rest=${rest#"$word"}
    done
}

# Offers those arguments that begin with the word at the cursor. Of a word with "=" or ":" bash replaces the part after
# the last of them only.
_scriptwells_offer() {
    local breaks=${COMP_WORDBREAKS//[^=:]/} kept='' one
    [[ -z $breaks ]] || kept=${current%"${current##*["$breaks"]}"}
    for one; do
        one=$prefix$one
        [[ $one != "$current"* ]] || COMPREPLY+=("${one#"$kept"}")
    done
}

# bash itself completes files and directories, with the quotes that they need.
_scriptwells_option() {
    compopt -o "$1" 2> /dev/null
}

# name=type:value
_scriptwells_offer_parameter() {
    local value=${current#"$prefix"} types
    [[ $value == *=* ]] || return
    if [[ ${value#*=} == file:* ]]; then
        _scriptwells_option default
        return
    fi
    _scriptwells_types
    types=("${types[@]/#/"${value%%=*}="}")
    _scriptwells_option nospace
    _scriptwells_offer "${types[@]/%/:}"
}

_scriptwells_offer_profiles() {
    local names
    mapfile -t names < <("${COMP_WORDS[0]/#\~/$HOME}" config profiles 2> /dev/null < /dev/null)
    _scriptwells_offer "${names[@]}"
}

# Objects, and after a point their members.
_scriptwells_offer_objects() {
    local objects members
    _scriptwells_objects
    if [[ $current == *.* ]]; then
        _scriptwells_offer "${members[@]}"
    else
        _scriptwells_offer "${objects[@]}"
    fi
}

# The words of a command, for `help`.
_scriptwells_offer_topics() {
    local commands options
    _scriptwells_command "scriptwells${arguments[*]:+ ${arguments[*]}}" && _scriptwells_offer "${commands[@]}"
}

_scriptwells_offer_values() {
    case $kind in
        file) _scriptwells_option default ;;
        directory) _scriptwells_option dirnames ;;
        parameter) _scriptwells_offer_parameter ;;
        profile) _scriptwells_offer_profiles ;;
        object) _scriptwells_offer_objects ;;
        topic) _scriptwells_offer_topics ;;
        words) _scriptwells_offer "${choices[@]}" ;;
    esac
}

# Sets `command`, `arguments`, `plain` (after "--") and `option`, whose value is at the cursor, from the words before it.
_scriptwells_read() {
    local word kind choices commands options
    for word in "${words[@]:1:${#words[@]} - 2}"; do
        if [[ -n $option ]]; then
            option=''
        elif [[ -z $plain && $word == -- ]]; then
            plain=yes
        elif [[ -z $plain && $word == -* ]]; then
            ! _scriptwells_value "$command $word" || option=$word
        elif [[ ${#arguments[@]} -eq 0 ]] && _scriptwells_command "$command $word"; then
            command+=" $word"
        else
            arguments+=("$word")
        fi
    done
}

_scriptwells() {
    local words command=scriptwells arguments=() plain='' option=''
    local current prefix='' kind choices commands options
    COMPREPLY=()
    _scriptwells_split
    current=${words[-1]}
    _scriptwells_read
    _scriptwells_command "$command"
    if [[ -n $option ]]; then
        _scriptwells_value "$command $option"
        _scriptwells_offer_values
    elif [[ -z $plain && $current == --*=* ]]; then
        prefix=${current%%=*}=
        ! _scriptwells_value "$command ${current%%=*}" || _scriptwells_offer_values
    elif [[ -z $plain && $current == -* ]]; then
        _scriptwells_offer "${options[@]}"
    elif [[ ${#arguments[@]} -eq 0 && ${#commands[@]} -gt 0 ]]; then
        _scriptwells_offer "${commands[@]}"
    elif _scriptwells_value "$command $((${#arguments[@]} + 1))"; then
        _scriptwells_offer_values
    fi
}

complete -F _scriptwells scriptwells

# What follows is made from the options of the program.
