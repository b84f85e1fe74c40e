# bash completion for quillmark. Stands alone: needs the functions of no other package.

# Offers those of the words that start as the word in hand does.
_quillmark_words() {
    mapfile -t COMPREPLY < <(compgen -W "$*" -- "$cur")
}

# Offers files with one of these extensions, in any case, and the folders on the way to them.
_quillmark_files() {
    local file word=$cur
    # The word stands here as it is typed, with its backslashes or an open quote.
    [[ $word != [\"\']* ]] && word=${word//\\/} || word=${word:1}
    compopt -o filenames
    while IFS= read -r file; do
        if [[ -d ${file/#'~'/$HOME} || ${file,,} == *.@($1) ]]; then COMPREPLY+=("$file"); fi
    done < <(compgen -f -- "$word")
}

# Offers the fields that the list in hand does not name yet.
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
    local fields=(album album-artist artist artwork bpm comment composer conductor copyright disc-number disc-total
        encoded-by file-owner genre grouping initial-key lyricist lyrics publisher subtitle title track-number
        track-total year)
    local writing=(--dry-run --diff --backup --paths --files0-from --lossless --notes --help)
    local options
    COMPREPLY=()
    if [[ $COMP_CWORD -eq 1 ]]; then
        _quillmark_words read copy paste apply set fields help
        return
    fi
    case ${COMP_WORDS[1]} in
        read) options=(--json --no-artwork --keep-going --files0-from --lossless --notes --help) ;;
        copy) options=(--no-desktop --lossless --notes --help) ;;
        paste) options=(--all --fields "${writing[@]}") ;;
        apply) options=(--from --all --fields "${writing[@]}") ;;
        set) options=("${fields[@]/#/--}" --clear "${writing[@]}") ;;
        *) return ;;
    esac
    # Behind the name of an option, its value.
    if [[ " ${options[*]} " == *" $previous "* ]]; then
        case $previous in
            --fields | --clear) _quillmark_fields "${fields[@]}"; return ;;
            --from) _quillmark_files mp3; return ;;
            --files0-from) _quillmark_files '*'; return ;;
            --artwork) _quillmark_files 'jpg|jpeg|png'; return ;;
            *) [[ " ${fields[*]/#/--} " != *" $previous "* ]] || return ;;
        esac
    fi
    if [[ $cur == -* ]]; then _quillmark_words "${options[@]}"; else _quillmark_files mp3; fi
}

complete -F _quillmark quillmark
