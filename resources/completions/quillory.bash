# Completes the arguments of quillory and quillory-cli in bash.

_quillory() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    COMPREPLY=()
    case $previous in
    --line) return ;;
    --print-to) compopt -o default && return ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W \
            "--line --wait --new-instance --print-to --line-numbers --colours --help --version" -- "$current")
    else
        compopt -o default
    fi
}

# Fills COMPREPLY with those of the words in $1 that begin with $2. Names may hold spaces.
_quillory_words() {
    local word
    COMPREPLY=()
    while IFS= read -r word; do
        [[ $word == "$2"* ]] && COMPREPLY+=("$(printf %q "$word")")
    done <<<"$1"
}

_quillory_cli() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local command=${COMP_WORDS[1]} options=
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W \
            "info convert transform print preview definitions highlight find functions statistics sniff --help --version" \
            -- "$current")
        return
    fi
    case $previous in
    --format)
        if [[ $command == highlight ]]; then
            _quillory_words $'ansi\nhtml\njson' "$current"
        else
            _quillory_words $'text\njson' "$current"
        fi
        return
        ;;
    --line-breaks) _quillory_words $'unix\nmac\nwindows' "$current" && return ;;
    --as) _quillory_words $'text\narchive' "$current" && return ;;
    --range | --default | --from | --encoding | --base) return ;;
    esac
    case $command in
    info | definitions | sniff) options="--format" ;;
    convert) options="--from --encoding --line-breaks --as" ;;
    print) options="--line-numbers --colours" ;;
    preview) options="--definition --base" ;;
    highlight) options="--definition --theme --range --default --format" ;;
    find) options="--regex --match-case --whole-words --format" ;;
    functions) options="--definition --format" ;;
    statistics) options="--range --format" ;;
    transform)
        if ((COMP_CWORD == 2)); then
            _quillory_words $'trim\nzap\nunwrap\nreformat' "$current"
            return
        fi
        ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    else
        compopt -o default
    fi
}

complete -F _quillory quillory
complete -F _quillory_cli quillory-cli
