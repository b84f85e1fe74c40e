# bash completion for quillmark. Does not use functions of other packages.

# Offers the words that start with the current word.
_quillmark_words() {
    mapfile -t COMPREPLY < <(compgen -W "$*" -- "$cur")
}

# Offers files with one of these extensions, in upper or lower case, and folders.
_quillmark_files() {
    local file word=$cur
    # The word contains backslashes or an open quote, as typed.
    [[ $word != [\"\']* ]] && word=${word//\\/} || word=${word:1}
    compopt -o filenames
    while IFS= read -r file; do
        if [[ -d ${file/#'~'/$HOME} || ${file,,} == *.@($1) ]]; then COMPREPLY+=("$file"); fi
    done < <(compgen -f -- "$word")
}

# Offers the fields that the current list does not contain yet.
_quillmark_fields() {
    local field named=
    [[ $cur != *,* ]] || named=${cur%,*},
    compopt -o nospace
    for field; do
        if [[ ,$named != *",$field,"* && $named$field == "$cur"* ]]; then COMPREPLY+=("$named$field"); fi
    done
}

_quillmark() {
    local cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # generated: options (scripts/options)
    local fields=(
        album album-artist artist artwork bpm comment composer conductor copyright disc-number disc-total
        encoded-by file-owner genre grouping initial-key lyricist lyrics publisher subtitle title track-number
        track-total year
    )
    local -A options_of=(
        [read]='
            --json --no-artwork --table --paths --fields --save-artwork --keep-going --recursive --files0-from
            --lossless --notes --strict --help
        '
        [copy]='
            --lossless --notes --strict --help --no-desktop
        '
        [paste]='
            --recursive --files0-from --lossless --notes --strict --help --all --fields --dry-run --diff
            --backup --paths --quiet
        '
        [apply]='
            --recursive --files0-from --lossless --notes --strict --help --all --fields --dry-run --diff
            --backup --paths --quiet --from --whole-tag
        '
        [set]='
            --recursive --files0-from --lossless --notes --strict --help --dry-run --diff --backup --paths
            --quiet --clear --from-json
        '
    )
    local -A suffixes_of=([--save-artwork]='*' [--files0-from]='*' [--from]='mp3' [--from-json]='json' [--artwork]='jpg|jpeg|png')
    local lists='--fields|--fields|--clear'
    # end of options
    local options
    COMPREPLY=()
    if [[ $COMP_CWORD -eq 1 ]]; then
        _quillmark_words "${!options_of[@]}" fields help
        return
    fi
    read -ra options -d '' <<<"${options_of[${COMP_WORDS[1]}]-}"
    [[ ${#options[@]} -gt 0 ]] || return
    [[ ${COMP_WORDS[1]} != set ]] || options+=("${fields[@]/#/--}")
    # Complete the value of the previous option.
    if [[ " ${options[*]} " == *" $previous "* ]]; then
        if [[ "|$lists|" == *"|$previous|"* ]]; then _quillmark_fields "${fields[@]}"; return; fi
        if [[ ${suffixes_of[$previous]-} ]]; then _quillmark_files "${suffixes_of[$previous]}"; return; fi
        [[ " ${fields[*]/#/--} " != *" $previous "* ]] || return
    fi
    if [[ $cur == -* ]]; then _quillmark_words "${options[@]}"; else _quillmark_files mp3; fi
}

complete -F _quillmark quillmark
