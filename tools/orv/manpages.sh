#!/usr/bin/env bash
# Writes the manual pages of orv and its commands from the program's help, and that of the file formats from the guide.
# usage: manpages.sh ORV VERSION FORMATS_PAGE FOLDER
set -euo pipefail

usage='usage: manpages.sh ORV VERSION FORMATS_PAGE FOLDER'
orv=${1:?$usage}
version=${2:?$usage}
formats=${3:?$usage}
folder=${4:?$usage}
PATH=$(dirname "$orv"):$PATH

# page WORDS SUMMARY SEE_ALSO: the page of "orv" or of "orv COMMAND"
page() {
    local name=${1// /-}
    printf '[see also]\n%s\n' "$3" >"$folder/include"
    help2man --no-info --locale=C.UTF-8 --name="$2" --source="orv $version" \
        --version-string="$name $version" --include="$folder/include" --output="$folder/man1/$name.1" "$1"
    # The program's own lists become sections; the synopsis names the command in bold; each example has its own line.
    sed -i -e 's/^\.SS "\(Commands\|Actions\|Kinds\|Rules\|Arguments\|Examples\):"$/.SH \U\1/' \
        -e 's/^\.SS "Exit codes:"$/.SH "EXIT STATUS"/' -e '/^\.SH EXAMPLES$/,$s/^orv .*/&\n.br/' \
        -e "s/^\.B orv\$/.B $1/; s/^\\\\fI\\\\,${1#orv } \\\\\\/\\\\fR//" "$folder/man1/$name.1"
    gzip -9n "$folder/man1/$name.1"
    rm "$folder/include"
}

rm -rf "$folder"
mkdir -p "$folder/man1" "$folder/man5"
seeAlso='.BR orv-formats (5)'
while read -r command summary; do
    page "orv $command" "$summary" $'.BR orv (1),\n.BR orv-formats (5)'
    seeAlso+=$',\n'".BR orv-$command (1)"
done < <(orv --help | sed -n '/^Commands:$/,/^$/s/^  //p')
[[ $seeAlso == *orv-check* ]] || { echo "manpages: orv --help lists no commands" >&2; exit 1; }
page orv "speech core library from the command line" "$seeAlso"

# All headings are sections, and links lose their targets.
{
    printf '%s\n' "'\\\" t" ".TH ORV-FORMATS 5 \"\" \"orv $version\"" '.SH NAME' \
        'orv-formats \- the file formats of the speech core library' '.SH DESCRIPTION'
    sed -e 1d -e 's/^##* /# /' -e 's/\[\([^]]*\)\]([^)]*)/\1/g' "$formats" | lowdown -Tman
} | gzip -9n >"$folder/man5/orv-formats.5.gz"
