#!/usr/bin/env bash
# Sends prompts to the service, ends it with SIGTERM after the last one, and compares its output.
# usage: check.sh COMMAND [ARGUMENT...]
set -euo pipefail

coproc service { exec "$@" 2>/dev/null; }
exec 3<&"${service[0]}" 4>&"${service[1]}"
printf '%s\n' 'Wir sind gleich am Ziel.' \
    '<text language="de_DE">Das ist der erste Satz hier. Und das ist nun der zweite!</text>' \
    '<audio path="chime.wav"/>' '<text language="x">welcome</text>' >&4
output=
while read -r line <&3; do
    output+=$line$'\n'
    # The last prompt: a sound of the brand in the settings.
    [ "$line" != 'play: examples/sounds/abc/welcome.mp3' ] || kill -TERM "$service_PID"
done
diff <(printf %s "$output") - <<'END'
audio is there
dialog is there
say: Wir sind gleich am Ziel.
say: Das ist der erste Satz hier.
say: Und das ist nun der zweite!
play: chime.wav
play: examples/sounds/abc/welcome.mp3
the event loop has ended
dialog is gone
audio is gone
END
