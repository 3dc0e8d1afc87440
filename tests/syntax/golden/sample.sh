#!/usr/bin/env bash
# Backs folders up, with what makes shell hard to colour: don't stop at 'quotes' or "these".
set -euo pipefail
shopt -s nullglob extglob

readonly PROGRAM=${0##*/}
declare -A sizes=([home]=0 [etc]=0)
declare -i count=0x10 total=$((2#1010 + 8#17 + 1))
target=${BACKUP_TARGET:-"$HOME/backups"}
colours=('#ff8800' "#00ff88" \#plain)
anchor=https://example.org/page#section # a comment behind an anchor
export LC_ALL=C

usage() {
    cat <<EOF
usage: $PROGRAM [-n] [-k NUMBER] FOLDER...
EOF
}

# A function in the other way of writing.
function log::message {
    local level="$1"; shift
    printf '%(%F %T)T [%s] %s\n' -1 "$level" "$*" >&2
}

die() { log::message error "$@"; exit 1; }

has_command ()
{
    command -v -- "$1" >/dev/null 2>&1
}

cleanup() (
    trap - EXIT INT TERM
    [[ -n "${work:-}" && -d $work ]] && rm -rf -- "$work"
)

size_of() {
    local folder=$1
    du -sk -- "$folder" | awk '{ print $1 }'
}

parse_options() {
    keep=7 dry_run=false
    while getopts ':hnk:' option; do
        case $option in
        h) usage; exit 0 ;;
        n) dry_run=true ;;
        k)
            keep=$OPTARG
            [[ $keep =~ ^[0-9]+$ ]] || die "not a number: '$keep'"
            ;;
        :) die "-$OPTARG wants a value" ;;
        \? | *) usage >&2; exit 2 ;;
        esac
    done
    shift $((OPTIND - 1))
    folders=("$@")
    (( ${#folders[@]} > 0 )) || { usage >&2; exit 2; }
}

archive() {
    local folder=$1 name stamp
    name=${folder%/} name=${name//\//_} name=${name#_}
    stamp=$(date +%Y%m%dT%H%M%S)
    if "$dry_run"; then
        echo "would write $target/$name-$stamp.tar.zst # nothing is written"
        return
    elif ! has_command zstd; then
        die 'zstd isn'\''t installed'
    fi
    tar --create --directory="${folder%/*}" "${folder##*/}" |
        zstd --quiet -T0 -o "$target/$name-$stamp.tar.zst"
    sizes[$name]=$(size_of "$folder")
    (( ++count, total += sizes[$name] ))
}

prune() {
    local -a old
    mapfile -t old < <(ls -1t "$target"/*.tar.zst | tail -n +"$((keep + 1))")
    for file in "${old[@]}"; do
        rm -f -- "$file" && log::message info "removed ${file#"$target"/}"
    done
}

main() {
    parse_options "$@"
    work=$(mktemp -d "${TMPDIR:-/tmp}/$PROGRAM.XXXXXX")
    trap cleanup EXIT
    trap 'exit 130' INT TERM
    mkdir -p "$target"
    for folder in "${folders[@]}"; do
        [ -d "$folder" ] || { log::message warning "no folder: $folder"; continue; }
        archive "$folder" || break
    done
    until prune; do sleep 1; done
    sed -n -e 's/#.*$//' -e "/^$PROGRAM/p" <<<"$PROGRAM#x" >/dev/null
    echo $'done:\t'"$count of $# archives, $total KiB, status $?, process $$" `date`
    select answer in yes no; do
        [[ $answer == @(yes|no) ]] && break
    done </dev/null || true
}

main "$@"
