# Prints each include of a room that none of the includer's targets links, directly or through others; fails on any.
# First input: "TARGET FOLDER LINKED...", as cmake/orv_arrows.cmake writes it. Second: FILE:#include "room/header.h".

# A file's room is the nearest folder above it that makes a target, else the topmost (res/ makes none).
function room(path) {
    while (sub(/\/[^\/]*$/, "", path) && !(path in targets_of)) {
    }
    return path
}

# Libraries may link each other in a circle, hence the depth.
function reaches(target, wanted, depth, count, i, names) {
    if (folder[target] == wanted) {
        return 1
    }
    count = depth < 10 ? split(linked[target], names, " ") : 0
    for (i = 1; i <= count; i++) {
        if (reaches(names[i], wanted, depth + 1)) {
            return 1
        }
    }
    return 0
}

function allowed(from, to, count, i, names) {
    # Numbers of resources are everybody's; tests share helpers by naming the file among their sources.
    if (from == to || to == "res" || (from ~ /^(tests|bench)\// && to ~ /^tests\//)) {
        return 1
    }
    count = split(targets_of[from], names, " ")
    for (i = 1; i <= count; i++) {
        if (reaches(names[i], to, 0)) {
            return 1
        }
    }
    return 0
}

FNR == NR {
    folder[$1] = $2
    targets_of[$2] = targets_of[$2] " " $1
    for (i = 3; i <= NF; i++) {
        linked[$1] = linked[$1] " " $i
    }
    next
}
{
    split($0, parts, /:#include "|"/)
    from = room(parts[1])
    to = room(parts[2])
    if (!((from, to) in known)) {
        known[from, to] = allowed(from, to)
    }
    if (!known[from, to]) {
        print parts[1] " includes " parts[2] ", but " from " does not link " to
        wrong = 1
    }
    looked_at++
}
END { exit wrong || !looked_at }
