# Read by the other scripts: one line a step, its output in a log, the log's name where it fails.
# shellcheck shell=sh

umask 022
project=$(cd "$(dirname "$0")/.." && pwd)
logs=$project/build/logs
mkdir -p "$logs"

die() {
    echo "$(basename "$0"): $1" >&2
    exit 1
}

# step NAME COMMAND...: runs the command with its output in build/logs/NAME.log (blanks become "-").
step() {
    step_name=$1
    shift
    step_log=$logs/$(echo "$step_name" | tr ' /' '--').log
    printf '%s ... ' "$step_name"
    step_start=$(date +%s)
    if "$@" > "$step_log" 2>&1 < /dev/null; then
        echo "done ($(($(date +%s) - step_start)) s)"
    else
        echo "FAILED"
        tail -n 40 "$step_log" >&2
        die "'$step_name' failed; all of its output is in $step_log"
    fi
}
