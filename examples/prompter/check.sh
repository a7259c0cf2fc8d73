#!/usr/bin/env bash
# Lets the prompter speak into files, measures them, and checks what it renders again and what it refuses.
# usage: check.sh PROMPTER, in the root of the tree
set -euo pipefail

prompter=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export XDG_CACHE_HOME=$folder
fail() { echo "prompter: $*" >&2; exit 1; }

# speak NAME OPTION...: speaks the prompts on standard input into NAME.wav; the messages go to NAME.text
speak() { "$prompter" --language en_GB --wav "$folder/$1.wav" "${@:2}" >"$folder/$1.text" 2>&1; }

# loudness NAME EFFECT...: prints the loudness of NAME.wav after these effects of sox
loudness() { sox "$folder/$1.wav" -n "${@:2}" stat 2>&1 | sed -n 's/^RMS .*amplitude: *//p'; }

# holds EXPRESSION: fails unless it is true; the numbers may be decimal
holds() { awk "BEGIN { exit !($1) }" || fail "not so: $1"; }

said() { grep -qxF "$2" "$folder/$1.text" || { cat "$folder/$1.text"; fail "$1: does not say: $2"; }; }

first='Turn left after the next three hundred metres.'
second='Then follow the main road for about two miles.'
echo "$first $second" | speak plain
echo "$first \\!\\vol=50\\ $second" | speak quiet
echo "$first \\!\\vol=50\\ $second \\!\\rst\\ $first" | speak reset
echo "\\!\\rate=50\\ $first" | speak slow
echo "\\!\\lang=de\\ $first" | speak german
echo "$first" | speak one
said plain '2 of 2 spoken, 2 rendered'
said quiet '2 of 2 spoken, 1 rendered' # the first sentence is the same
said one '1 of 1 spoken, 0 rendered'

length() { soxi -D "$folder/$1.wav"; }
holds "$(length plain) > 4 && $(length plain) < 8"
holds "$(length quiet) > 0.95 * $(length plain) && $(length quiet) < 1.05 * $(length plain)"
holds "$(length slow) > 1.5 * $(length one)"
cmp -s "$folder/german.wav" "$folder/one.wav" && fail "a German voice speaks like an English one"
echo "prompter: two sentences of $(length quiet) s; loudness $(loudness plain trim -2), with vol=50 $(loudness quiet trim -2)"
holds "$(loudness quiet trim 0 2) == $(loudness plain trim 0 2)"
holds "$(loudness quiet trim -2) > 0.4 * $(loudness plain trim -2)"
holds "$(loudness quiet trim -2) < 0.6 * $(loudness plain trim -2)"
holds "$(loudness reset trim -2) > 0.9 * $(loudness one trim -2)" # no longer in force

# A sound file and the same file as a brand sound are rendered once; damaged and missing files are rendered again.
printf '%s\n' '<audio path="examples/sounds/tyx/welcome.mp3"/>' "$first" \
    '<text language="en_GB">welcome</text>' >"$folder/prompts"
speak sounds "$folder/prompts"
said sounds '3 of 3 spoken, 1 rendered'
holds "$(length sounds) > 0.4 + $(length one)"
for file in "$folder"/prompter/*.wav; do echo x >>"$file"; done
speak sounds "$folder/prompts"
said sounds '3 of 3 spoken, 2 rendered'
rm "$folder"/prompter/*.wav
speak sounds "$folder/prompts"
said sounds '3 of 3 spoken, 2 rendered'

# The second sentence is rendered while the first is played: the player waits for the second, espeak-ng for the player.
rm "$folder"/prompter/*.wav
mkdir "$folder/bin"
cat >"$folder/bin/wait-for" <<'T'
#!/bin/sh
for _ in $(seq 100); do
    [ ! -e "$1" ] || exit 0
    sleep 0.1
done
exit 1
T
cat >"$folder/bin/play" <<'T'
#!/bin/sh
[ "$(head -c 1 | wc -c)" = 1 ] && >"$XDG_CACHE_HOME/playing"
wait-for "$XDG_CACHE_HOME/second" && exec cat >/dev/null
T
cat >"$folder/bin/espeak-ng" <<T
#!/bin/sh
[ ! -e "$folder/first" ] || wait-for "$folder/playing" || exit 1
$(type -P espeak-ng) "\$@" || exit 1
case "\$*" in *.wav) mv "$folder/first" "$folder/second" 2>/dev/null || >"$folder/first" ;; esac
T
chmod +x "$folder"/bin/*
said_by_player=$(echo "$first $second" | PATH="$folder/bin:$PATH" "$prompter" 2>&1)
[ "$said_by_player" = '2 of 2 spoken, 2 rendered' ] || fail "played: $said_by_player"

# A signal ends the player, and the next run reuses the rendered files.
rm "$folder"/prompter/*.wav "$folder/playing" "$folder/bin/espeak-ng"
printf '#!/bin/sh\n[ "$(head -c 1 | wc -c)" = 1 ] && >"$XDG_CACHE_HOME/playing"\nexec sleep 60\n' >"$folder/bin/play"
echo "$first" | PATH="$folder/bin:$PATH" "$prompter" >"$folder/signal.text" 2>&1 &
until [ -e "$folder/playing" ]; do sleep 0.1; done
SECONDS=0
kill -TERM $!
wait $! && fail 'a signal looks like success'
[ "$SECONDS" -lt 20 ] || fail "a signal takes $SECONDS s"
said signal '0 of 1 spoken, 1 rendered'
echo "$first" | speak one
said one '1 of 1 spoken, 0 rendered'

# Mistakes are reported, and the rest is spoken.
printf '%s\n' '<audio path="no-such.wav"/>' "\\!\\vol=loud\\ $first" '<file path="no-such.xml"/>' |
    speak mistakes && fail 'mistakes look like success'
said mistakes 'prompter: line 1: sox failed'
said mistakes 'prompter: line 2: ignored: \!\vol=loud\'
said mistakes 'prompter: line 3: no markup in no-such.xml'
said mistakes '1 of 1 spoken, 0 rendered'
speak usage --language xx_XX && fail 'xx_XX looks like a language'
said usage 'prompter: xx_XX: unknown here, or espeak-ng is not installed'
