# Completion of vxattr for bash.

_vxattr() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="convert show inspect get diff stat package seal open verify rekey check"
    local command=${COMP_WORDS[1]}
    local read="--from --package --max-size --strict"
    local write="--to --indent --sorted --plain-names --wrap"
    local trace="--no-types --bare-scalars --visible --max-elements --max-string --multiline-from
        --max-dump --dump-line --line-prefix --indent-text --null-error"
    local key="--key-file --key-format --data-key --name"
    local sealing="--cipher --annotation --category --key-id"
    local options=""

    case $previous in
    --from) COMPREPLY=($(compgen -W "json binary text" -- "$current")); return ;;
    --to)
        local forms="json binary text trace"
        [ "$command" != get ] || forms="plain json trace"
        [ "$command" != diff ] || forms="json-patch"
        COMPREPLY=($(compgen -W "$forms" -- "$current")); return ;;
    --cipher) COMPREPLY=($(compgen -W "EAX_AES128 EAX_AES256" -- "$current")); return ;;
    --key-format) COMPREPLY=($(compgen -W "raw hex auto" -- "$current")); return ;;
    esac
    if [ "$COMP_CWORD" -eq 1 ]; then
        COMPREPLY=($(compgen -W "$commands --help --version" -- "$current"))
        return
    fi
    if [ "$command" = package ] && [ "$COMP_CWORD" -eq 2 ]; then
        COMPREPLY=($(compgen -W "make show --help" -- "$current"))
        return
    fi
    case $command in
    convert) options="$read $write --time" ;;
    show) options="$read $trace" ;;
    inspect) options="--package --max-size" ;;
    get) options="$read $trace --to" ;;
    diff) options="$read --quiet --brief --stat --to" ;;
    stat) options="$read" ;;
    package) [ "${COMP_WORDS[2]}" = show ] || options="$read --stream" ;;
    seal) options="$read $write $key $sealing --as-key --new-data-key" ;;
    open) options="$read $write $trace $key --show --as-key" ;;
    verify) options="$read $key" ;;
    rekey) options="$read $write $key $sealing --new-key-file --new-data-key" ;;
    check) options="$read --names --optional" ;;
    esac
    case $current in
    -*) COMPREPLY=($(compgen -W "$options --help" -- "$current")) ;;
    *) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;; # names may hold blanks
    esac
}
complete -o filenames -F _vxattr vxattr
