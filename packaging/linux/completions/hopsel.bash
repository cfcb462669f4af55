# Completion of hopsel's command line for bash.
_hopsel() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} IFS=$'\n'
    case $before in
    --select)
        COMPREPLY=($(compgen -W "$(hopsel --list-sources 2>/dev/null | sed 's/^..//; s/\t.*//')" -- "$word"))
        # A colon parts words here: what stands before it is on the line already.
        declare -F __ltrim_colon_completions >/dev/null && __ltrim_colon_completions "$word"
        return ;;
    --render-ui) COMPREPLY=($(compgen -d -- "$word")); return ;;
    esac
    COMPREPLY=($(compgen -W $'--background\n--help\n--json\n--list-sources\n--pause\n--quit\n--render-ui\n--resume\n--select\n--settings\n--status\n--toggle\n--version' -- "$word"))
}
complete -F _hopsel hopsel
