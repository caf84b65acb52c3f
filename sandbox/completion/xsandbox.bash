# Completion of xsandbox for bash. Source it; in the repository it completes "./dev sandbox" too.
# What is offered is read out of the help of the xsandbox that is called, so none of it is listed
# here.

# First words of the entries under a title of the help.
_xsandbox_entries() {
    sed -n "/^$1:\$/,/^\$/s/^  \([^ :]*\).*/\1/p" <<<"$2"
}

_xsandbox_options() {
    grep -oE '^  (-[a-z],)?--[a-z-]+' <<<"$1" | grep -oE -- '--[a-z-]+'
}

# What an option or argument takes, as the help writes it: FOLDER, N, ...
_xsandbox_kind() {
    [[ $1 =~ ^[A-Za-z-]+$ ]] || return 0
    sed -nE "s/^  (-[a-z],)?$1 ([A-Z]+[A-Z=,.]*).*/\2/p" <<<"$2"
}

# The words that the help lists behind "$1: ", with commas between.
_xsandbox_listed() {
    tr -s ' \n' ' ' <<<"$2" | sed -nE "s/.*$1: ([a-z]+(, [a-z]+)*).*/\1/p" | tr -d ,
}

# The two words that a key of "set" may have.
_xsandbox_values() {
    sed -nE "s/^  $1: (\w+) or (\w+).*/\1 \2/p" <<<"$2"
}

_xsandbox_faults() {
    "$program" faults --json 2>/dev/null | grep -oE '"fault":"[^"]*"' | cut -d '"' -f 4
}

# Offers words that begin as the last one does; what stands before $2 stays.
_xsandbox_words() {
    local word
    while read -r word; do
        [ -n "$word" ] && COMPREPLY+=("${2:-}$word")
    done < <(compgen -W "$1" -- "${current#"${2:-}"}")
}

# Files with that ending, and folders on the way.
_xsandbox_files() {
    local file
    while IFS= read -r file; do
        if [ -d "$file" ] || [[ $file == *"$1" ]]; then
            COMPREPLY+=("$file")
        fi
    done < <(compgen -f -- "$current")
    compopt -o filenames 2>/dev/null
}

_xsandbox_folders() {
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
    compopt -o filenames 2>/dev/null
}

_xsandbox_change() {
    local key=${current%%=*}
    if [ "$key" = "$current" ]; then
        _xsandbox_words "$(_xsandbox_entries 'Known keys' "$help" | sed 's/$/=/')"
        compopt -o nospace 2>/dev/null
    else
        _xsandbox_words "$(_xsandbox_values "$key" "$help")" "$key="
    fi
}

# One more of the words $1 behind those that stand there, with commas between.
_xsandbox_one_more() {
    local before=""
    [[ $current == *,* ]] && before=${current%,*},
    _xsandbox_words "$1" "$before"
    compopt -o nospace 2>/dev/null
}

# Offers what is of the kind $1, for the option or argument $2.
_xsandbox_of_kind() {
    case $1 in
        FOLDER) _xsandbox_folders ;;
        FILE | PATH) _xsandbox_files "$([ "$2" = scenario ] && echo .json)" ;;
        FAULT) _xsandbox_words "$(_xsandbox_faults)" ;;
        WORD*) _xsandbox_one_more "$(_xsandbox_entries Words "$help")" ;;
        PART*) _xsandbox_one_more "$(_xsandbox_listed 'Further parts' "$help")" ;;
        WHEN) _xsandbox_words 'auto always never' ;;
        KEY=*) _xsandbox_change ;;
    esac
}

# The value of "--option=value"; what is offered has the option in front.
_xsandbox_value() {
    local option=${current%%=*} i
    current=${current#*=}
    _xsandbox_of_kind "$(_xsandbox_kind "$option" "$help")" "$option"
    for i in "${!COMPREPLY[@]}"; do
        COMPREPLY[i]=$option=${COMPREPLY[i]}
    done
}

# Completes the words that stand behind the name of the program $1.
_xsandbox_reply() {
    local program=${1/#\~/$HOME} current=${words[-1]} previous="" help kind argument
    if [ "${#words[@]}" -eq 1 ]; then
        help=$("$program" --help 2>/dev/null)
        _xsandbox_words "$(_xsandbox_entries Verbs "$help") $(_xsandbox_options "$help")"
        return
    fi
    help=$("$program" "${words[0]}" --help 2>/dev/null)
    # The help behind a wrong verb is that of xsandbox.
    grep -q "^Usage: xsandbox ${words[0]} " <<<"$help" || return
    previous=${words[-2]} kind=""
    [[ $previous == --* ]] && kind=$(_xsandbox_kind "$previous" "$help")
    if [ -n "$kind" ]; then
        _xsandbox_of_kind "$kind" "$previous"
    elif [[ $current == --*=* ]]; then
        _xsandbox_value
    elif [[ $current == -* ]]; then
        _xsandbox_words "$(_xsandbox_options "$help")"
    else
        argument=$(_xsandbox_entries Arguments "$help" | tail -n 1)
        _xsandbox_of_kind "$(_xsandbox_kind "$argument" "$help")" "$argument"
    fi
}

# The words of the line $1 as the shell reads them, the last of which may be open or empty.
_xsandbox_split() {
    local line=$1 word="" begun="" quote="" char i
    words=()
    for ((i = 0; i < ${#line}; i++)); do
        char=${line:i:1}
        if [[ $char == '\' && $quote != "'" ]]; then
            i=$((i + 1)) begun=1
            word+=${line:i:1}
        elif [ -n "$quote" ]; then
            if [ "$char" = "$quote" ]; then quote=""; else word+=$char; fi
        elif [[ $char == [\"\'] ]]; then
            quote=$char begun=1
        elif [[ $char == [[:blank:]] ]]; then
            [ -n "$begun" ] && words+=("$word")
            word="" begun=""
        else
            word+=$char begun=1
        fi
    done
    words+=("$word")
}

# The words up to the cursor: bash parts them at "=" too, the shell of the user does not.
_xsandbox() {
    local words i
    _xsandbox_split "${COMP_LINE:0:COMP_POINT}"
    COMPREPLY=()
    if [[ $1 == */dev || $1 == dev ]]; then
        [ "${words[1]:-}" = sandbox ] && [ "${#words[@]}" -gt 2 ] || return
        words=("${words[@]:2}")
        _xsandbox_reply "${1%dev}build/linux/xsandbox"
    else
        words=("${words[@]:1}")
        _xsandbox_reply "$1"
    fi
    if [[ ${words[-1]} == *=* && $COMP_WORDBREAKS == *=* ]]; then
        for i in "${!COMPREPLY[@]}"; do
            COMPREPLY[i]=${COMPREPLY[i]#"${words[-1]%=*}="}
        done
    fi
}

complete -o default -F _xsandbox xsandbox ./dev
