# Variables that a stand-in keeps: files of lines NAME=VALUE.
# shellcheck shell=sh

# print_variables FILE [NAME...]: the lines of the names, or all lines.
print_variables() {
    file=$1
    shift
    if [ $# -eq 0 ]; then
        cat "$file"
        return
    fi
    for name; do
        grep "^$name=" "$file" || refuse "## Error: \"$name\" not defined"
    done
}

# set_variable FILE NAME [VALUE]: sets a variable, or removes it where no value is given. The file
# changes in one moment.
set_variable() {
    case $2 in
    '' | *[!A-Za-z0-9_]*) refuse "\"$2\" is no name" ;;
    esac
    {
        [ ! -e "$1" ] || grep -v "^$2=" "$1" || true
        [ -z "$3" ] || printf '%s\n' "$2=$3"
    } >"$1.$$"
    mv "$1.$$" "$1"
}
