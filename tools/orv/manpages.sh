#!/usr/bin/env bash
# Writes the manual pages of orv and of each of its commands, made from what the program says of itself.
# usage: manpages.sh ORV VERSION FOLDER
set -euo pipefail

orv=${1:?usage: manpages.sh ORV VERSION FOLDER}
version=${2:?usage: manpages.sh ORV VERSION FOLDER}
folder=${3:?usage: manpages.sh ORV VERSION FOLDER}
PATH=$(dirname "$orv"):$PATH

# page WORDS SUMMARY SEE_ALSO: the page of "orv" or of "orv COMMAND"
page() {
    local name=${1// /-}
    printf '[see also]\n%s\n' "$3" >"$folder/include"
    help2man --no-info --locale=C.UTF-8 --name="$2" --source="orv $version" \
        --version-string="$name $version" --include="$folder/include" --output="$folder/$name.1" "$1"
    # The program's own lists are sections, as its options are; the synopsis names the command in bold, and each
    # example has a line of its own.
    sed -i -e 's/^\.SS "\(Commands\|Actions\|Kinds\|Arguments\|Examples\):"$/.SH \U\1/' \
        -e 's/^\.SS "Exit codes:"$/.SH "EXIT STATUS"/' -e '/^\.SH EXAMPLES$/,$s/^orv .*/&\n.br/' \
        -e "s/^\.B orv\$/.B $1/; s/^\\\\fI\\\\,${1#orv } \\\\\\/\\\\fR//" "$folder/$name.1"
    gzip -9n "$folder/$name.1"
    rm "$folder/include"
}

rm -rf "$folder"
mkdir -p "$folder"
seeAlso=
while read -r command summary; do
    page "orv $command" "$summary" ".BR orv (1)"
    seeAlso+=${seeAlso:+,$'\n'}".BR orv-$command (1)"
done < <(orv --help | sed -n '/^Commands:$/,/^$/s/^  //p')
[ -n "$seeAlso" ] || { echo "manpages: orv --help lists no commands" >&2; exit 1; }
page orv "speech core library from the command line" "$seeAlso"
