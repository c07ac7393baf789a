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

user=65534 # nobody: whose rights the tests have when root starts them
as_user="setpriv --reuid=$user --regid=$user --clear-groups"

# readable_or_copied SCRIPT ARGUMENT...: returns where an ordinary user can read the tree, or where root does not run
# this. In a tree below a folder that only root may enter (a home, a private temporary folder) it runs that script of a
# copy of the tree instead, and ends as that ended. Only the logs come back.
readable_or_copied() {
    if [ "$(id -u)" -ne 0 ] || $as_user test -r "$project/CMakeLists.txt"; then
        return
    fi
    copy=$(mktemp -d /var/tmp/panelkit.XXXXXX)
    trap 'rm -rf "$copy"' EXIT
    echo "an ordinary user cannot read $project: building a copy of it in $copy, of which only the logs are kept"
    (cd "$project" && tar --exclude=./build -cf - .) | tar -xf - -C "$copy"
    chmod 755 "$copy"
    [ ! -e "$copy/.git" ] || chmod 700 "$copy/.git" # no ordinary user's business
    find "$copy" -path "$copy/.git" -prune -o ! -type l -exec chmod a+rX {} +
    {
        copied_script=$1
        copied_result=0
        shift
        "$copy/scripts/$copied_script" "$@" 2>&1 || copied_result=$?
        echo "$copied_result" > "$copy/result"
    } | sed -u "s|$copy|$project|g"
    cp -r "$copy/build/logs/." "$logs/"
    exit "$(cat "$copy/result")"
}
