#!/usr/bin/env bash
# Shows the mixer at work: two real players on two devices of a private audio server, both tapped by
# one session, their volumes ridden over time, both devices and both taps recorded. What came out is
# measured against what was played and drawn. Needs no sound hardware and touches no audio server but
# its own.
#
# usage: demo.sh BUILD_DIRECTORY RESULT_DIRECTORY
set -euo pipefail

scripts=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
cli=$1/cli/AudioMixerCLI
sounds=$1/scripts/demo/orvanta_demo_sounds
mkdir -p "$2"
results=$(cd -- "$2" && pwd)

# Seconds: how long the players play alone, are mixed, and play alone again.
before=4
tapped=12
after=3

session=$(mktemp -d "${TMPDIR:-/tmp}/orvanta-run-XXXXXX")
started=()

# Everything that was started ends, last first, however this script ends.
clean_up() {
    local pid last_first=()
    for pid in "${started[@]}"; do
        last_first=("$pid" "${last_first[@]}")
    done
    started=()
    for pid in "${last_first[@]}"; do
        kill -TERM "$pid" 2>/dev/null || true
        wait_for_end "$pid" || kill -KILL "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    rm -rf -- "$session"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

wait_for_end() {
    local tries
    for ((tries = 0; tries < 50; ++tries)); do
        kill -0 "$1" 2>/dev/null || return 0
        sleep 0.1
    done
    return 1
}

# start NAME COMMAND...: in the background, with its words in a log; ends even if this script is
# killed in a way that it cannot notice.
start() {
    local name=$1
    shift
    setpriv --pdeathsig TERM "$@" </dev/null >"$session/$name.log" 2>&1 &
    started+=($!)
}

# finish PID: waits for a program that ends by itself.
finish() {
    local index
    wait "$1"
    # Its id may be somebody else's from now on.
    for index in "${!started[@]}"; do
        [[ ${started[index]} != "$1" ]] || unset "started[index]"
    done
}

# until_so WHAT COMMAND...: tries for 20 seconds.
until_so() {
    local what=$1 tries
    shift
    for ((tries = 0; tries < 200; ++tries)); do
        if "$@" >/dev/null 2>&1; then
            return
        fi
        sleep 0.1
    done
    echo "In vain waited until $what. The last words of everything:" >&2
    tail -n 5 "$session"/*.log >&2
    exit 1
}

use_private_session() {
    export XDG_RUNTIME_DIR=$session PIPEWIRE_RUNTIME_DIR=$session
    export HOME=$session/home XDG_CONFIG_HOME=$session/config XDG_STATE_HOME=$session/state
    export PULSE_SERVER=unix:$session/pulse/native
    export DBUS_SESSION_BUS_ADDRESS=disabled: DBUS_SYSTEM_BUS_ADDRESS=disabled:
    unset PIPEWIRE_REMOTE PULSE_SINK
    mkdir -p "$HOME" "$XDG_STATE_HOME" "$XDG_CONFIG_HOME"/wireplumber/{main,bluetooth}.lua.d
    # Without D-Bus and hardware the session manager does without what needs them.
    cat >"$XDG_CONFIG_HOME/wireplumber/main.lua.d/51-headless.lua" <<'LUA'
alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
default_access.properties["enable-flatpak-portal"] = false
LUA
    echo 'bluez_monitor.enabled = false' \
        >"$XDG_CONFIG_HOME/wireplumber/bluetooth.lua.d/51-headless.lua"
}

has_default_metadata() { pw-metadata 0 | grep -q default; }
has_device() { pw-link -i | grep -q "^$1:playback_FR"; }
is_default() { pw-metadata 0 default.audio.sink | grep -q "\"$1\""; }
is_playing() { "$cli" list | grep -qE "^ +$1 +yes "; }
has_said() { grep -q -- "$1" "$session/mixer.log"; }

make_device() {
    pw-cli create-node adapter "{ factory.name=support.null-audio-sink node.name=$1
        node.description=\"$2\" media.class=Audio/Sink audio.rate=48000 audio.position=\"FL,FR\"
        priority.session=1000 priority.driver=1000 monitor.channel-volumes=true
        object.linger=true }" >/dev/null
    until_so "the device $1 is there" has_device "$1"
}

make_default() {
    pw-metadata 0 default.configured.audio.sink "{\"name\":\"$1\"}" Spa:String:JSON >/dev/null
    until_so "$1 is the default" is_default "$1"
}

start_server() {
    start pipewire pipewire
    until_so "the audio server answers" pw-cli info 0
    start wireplumber wireplumber
    until_so "the session manager is ready" has_default_metadata
    start pipewire-pulse pipewire-pulse
    until_so "the Pulse bridge answers" pactl info
    make_device speakers "Demo Speakers"
    make_device headphones "Demo Headphones"
    pw-metadata -n settings 0 clock.force-quantum 1024 >/dev/null
}

has_begun() { [[ -s $results/$1.wav ]]; }

record() {
    rm -f "$results/$1.wav"
    start "$1-recording" pw-record --target "$1" \
        --properties '{ stream.capture.sink=true node.dont-reconnect=true }' \
        --rate 48000 --channels 2 --format f32 "$results/$1.wav"
    until_so "the recording of $1 has begun" has_begun "$1"
}

node_id() {
    pw-cli ls Node | awk -v name="\"$1\"" '/^\tid / { id = $2 + 0 }
        $1 == "node.name" && $3 == name { print id; exit }'
}
is_there() { [[ -n $(node_id "$1") ]]; }

# send STREAM DEVICE: as a user's choice, which stays when the default changes.
send() {
    until_so "$1 is there" is_there "$1"
    pw-metadata "$(node_id "$1")" target.object "$2" Spa:String >/dev/null
}

# The mixer takes its commands from a pipe, which file 3 holds open.
start_mixer() {
    mkfifo "$session/commands"
    setpriv --pdeathsig TERM "$cli" mix <"$session/commands" >"$session/mixer.log" 2>&1 &
    mixer=$!
    started+=("$mixer")
    exec 3>"$session/commands"
}

say() { echo "$*" >&3; }

# tap DEVICE PID: a tap begins on the default device, so that is made the chosen one first.
tap() {
    make_default "$1"
    say "tap $2"
    say "route $2 $1"
    until_so "the tap on $1 holds" has_said "^pid=$2 .*device=\"$1\""
}

echo "Making the music ..."
"$sounds" "$results" $((before + tapped + after + 20))

echo "Starting a private audio server with two devices ..."
use_private_session
start_server
record speakers
record headphones
start music pw-play --properties '{ node.name=demo-music }' "$results/music.wav"
music=${started[-1]}
start speech paplay --device=headphones --property=node.name=demo-speech "$results/speech.wav"
speech=${started[-1]}
send demo-music speakers
send demo-speech headphones
until_so "the first player plays" is_playing "$music"
until_so "the second player plays" is_playing "$speech"
"$cli" list

echo
echo "Playing untapped for $before s, tapped for $tapped s, untapped for $after s ..."
sleep "$before"
music_ride=(0:1 2:1 3.5:0.2 5.5:0.2 7:1 8:1 9:2 12:2)
speech_ride=(0:1 1:1 1:0.5 4:0.5 5:0 7:0 8:1.5 12:1.5)
rm -rf -- "$results/recordings"
start_mixer
taps_begin=$EPOCHREALTIME
tap headphones "$speech"
tap speakers "$music"
say "folder \"$results/recordings\""
say "limiter $music on"
say "mode both"
say "record $music start"
say "mode processed"
say "format m4a"
say "record $speech start"
until_so "the recordings have begun" has_said "^pid=$speech .*recording="
rides_begin=$EPOCHREALTIME
python3 "$scripts/demo/hand.py" "$music=${music_ride[*]}" "$speech=${speech_ride[*]}" >&3
say quit
finish "$mixer"
exec 3>&-
sleep "$after"

cp "$session/mixer.log" "$results/"
clean_up
# The Python that Debian's numpy belongs to.
/usr/bin/python3 -B "$scripts/demo/report.py" "$results" \
    "$(awk "BEGIN { print $rides_begin - $taps_begin }")" \
    "speakers=music=${music_ride[*]}" "headphones=speech=${speech_ride[*]}"
