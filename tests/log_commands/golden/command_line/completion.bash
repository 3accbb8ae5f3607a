# Completion of zeltctl for bash; read it with: source <(zeltctl completion bash)
_zeltctl()
{
    local current=${COMP_WORDS[COMP_CWORD]} command= words= i
    for ((i = 1; i < COMP_CWORD && i < 3; ++i)); do
        [[ ${COMP_WORDS[i]} == -* ]] || command+=${command:+ }${COMP_WORDS[i]}
    done
    case ${COMP_WORDS[COMP_CWORD - 1]} in
    --direction) COMPREPLY=($(compgen -W 'in out' -- "$current")); return ;;
    --result) COMPREPLY=($(compgen -W 'ok failed violation warning' -- "$current")); return ;;
    --sort) COMPREPLY=($(compgen -W 'calls failures warnings violations queries name' -- "$current")); return ;;
    esac
    case $command in
    '') words='log recording help completion manual --help --version' ;;
    'completion'*) words='bash powershell' ;;
    'log') words='show errors list why stats export check diff redact follow' ;;
    'log check') words='--ignore --queries --json -o --help' ;;
    'log diff') words='--tolerance --json -o --help' ;;
    'log errors') words='--object --interface --method --direction --no-warnings --all --context --queries --json -o --help' ;;
    'log export') words='--html --json --csv --sqlite --queries -o --help' ;;
    'log follow') words='--object --interface --method --direction --calls --queries --new --idle -o --help' ;;
    'log list') words='--json -o --help' ;;
    'log redact') words='--keep-errors -o --help' ;;
    'log show') words='--object --interface --method --direction --result --calls --nested --at -o --help' ;;
    'log stats') words='--object --interface --method --direction --sort --top --queries --json -o --help' ;;
    'log why') words='-o --help' ;;
    'recording') words='info profile diff redact trim' ;;
    'recording diff') words='--tolerance --json -o --help' ;;
    'recording info') words='--json --help' ;;
    'recording profile') words='--slowest --objects --trace-events --inputs --help' ;;
    'recording redact') words='--keep-errors -o --help' ;;
    'recording trim') words='--calls --failure -o --help' ;;
    esac
    # Unless an option is being typed, a word that is not a command is a file.
    [[ $current == -* || $words != -* ]] || words=
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o bashdefault -o default -F _zeltctl zeltctl
