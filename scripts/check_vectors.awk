# Judges the loops over pixels in a disassembly of the plug-in. scripts/check_vectors.sh has the rule and runs this.
# From the environment: PROCESSOR, ALLOWED, EXCEPTIONS.

BEGIN {
    isArm = ENVIRON["PROCESSOR"] == "aarch64"
    lines = split(ENVIRON["EXCEPTIONS"], line, "\n")
    for (i = 1; i <= lines; ++i) {
        if (split(line[i], word, " ") == 3) exceptions[word[2], word[1]] = word[3]
    }
}

# What an instruction works on: "vector", a whole one; "move", the same without arithmetic; "less", a number, a lane or a
# narrower vector; "", nothing that counts: control, prefetches, masks of lanes, constants.
function Kind(operation, operands) { return isArm ? KindArm(operation, operands) : KindX86(operation, operands) }
function KindX86(operation, operands) {
    if (operation ~ /^(j|k|nop|ret|(cmp|test)[bwlq]?$|push|pop$|leave|xchg|prefetch|endbr|cs$|data16|vzero)/) return ""
    if (operands !~ /%[xyz]mm/) return "less"
    if (operation ~ /^v?(pinsr|pextr|extract|mov[dq]$|movs[sd]$|mov[hl]p|u?comis)/) return "less"
    if (operation ~ /^v?(add|sub|mul|div|max|min|sqrt|rcp|round|fn?m|cvt).*(s[sd]|si|s[sd]2.*|si2s[dl]+)$/) return "less"
    if (operation ~ /^v?(mov|p?broadcast|insert)/) return operands ~ whole ? "move" : ""
    return operands ~ whole ? "vector" : "less"
}
function KindArm(operation, operands) {
    if (operation ~ /^(b|b[.].*|cbn?z|tbn?z|nop|ret|cmp|prfm|adrp|movi|mvni)$/) return ""
    if (operation ~ /^(ldu?r|stu?r|ldp|stp|ld1|st1)$/) {
        if (operands ~ "^(q|[{]" whole "[}])") return "move"
        return operands ~ /^d/ ? "" : "less"
    }
    if (operation ~ /^(mov|dup)$/ && operands ~ "^" whole) return "move"
    if (operation ~ /^(mov|dup|ins|umov|smov)$/) return "less"
    return operands ~ whole ? "vector" : "less"
}

# ombrix::v3::RowRun<Overlay, NoMix, true>::Lines<false>: the level named once, no arguments, no clones.
function Short(name,    level) {
    sub(/\(.*/, "", name)
    sub(/^void /, "", name)
    if (!match(name, /^ombrix::[a-z0-9_]+::/)) return name
    level = substr(name, 1, RLENGTH)
    gsub(level, "", name)
    return level name
}

function Complain(message) {
    if (!said[message]++) print message
}

# Whether instruction `i` jumps back, to where a loop begins.
function EndsLoop(i) { return target[i] in place && place[target[i]] <= i }

function HasPrefetch(first, last,    i) {
    for (i = first; i <= last; ++i) if (isPrefetch[i]) return 1
    return 0
}

# Judges the loops that ask for pixels ahead, and each loop in them by itself: a short one over lanes would not show.
function FinishFunction(    i, j, loops, first, last) {
    loops = 0
    for (i = 1; i <= count; ++i) {
        if (i in callee && callee[i] !~ /^mem(cpy|set|move)@plt$|::WholeGreys[(]/) Complain(own " calls " callee[i])
        if (EndsLoop(i) && HasPrefetch(place[target[i]], i)) {
            first[++loops] = place[target[i]]
            last[loops] = i
        }
    }
    if (loops) hasLoop[own] = 1
    for (i = 1; i <= count; ++i) {
        for (j = 1; j <= loops && EndsLoop(i); ++j) {
            if (first[j] <= place[target[i]] && i <= last[j]) Judge(place[target[i]], i)
        }
    }
}

function Judge(first, last,    i, number) {
    number["vector"] = number["move"] = number["less"] = 0
    for (i = first; i <= last; ++i) ++number[kind[i]]
    if (number["less"] <= exception) return
    if (number["less"] <= ENVIRON["ALLOWED"] + number["vector"] / 4 && number["vector"] + number["move"] > 0) return
    Complain("a loop of " own " has " number["vector"] " instructions on whole vectors and " number["less"] " on less")
}

/^[0-9a-f]+ <.*>:$/ {
    if (isOverPixels) FinishFunction()
    name = $0
    sub(/^[^<]*</, "", name)
    sub(/>:$/, "", name)
    own = Short(name)
    isOverPixels = own ~ /::RowRun<.*>::(Triple)?Lines<(true|false)>$/
    if (isOverPixels) {
        expected[own] = 1
        split(own, part, "::|<|,")  # ombrix, the level, RowRun, the formula
        exception = exceptions[part[2], part[4]] + 0
        whole = isArm ? "v[0-9]+[.](16b|8h|4s|2d)" : part[2] ~ /^v4/ ? "%zmm" : part[2] == "v3" ? "%ymm" : "%xmm"
    }
    if (own ~ /::RunRow<.*>$/) {  # each has two loops: with and without streaming
        sub("RunRow", "RowRun", own)
        expected[own "::Lines<false>"] = expected[own "::Lines<true>"] = 1
    }
    count = 0
    split("", place); split("", kind); split("", isPrefetch); split("", target); split("", callee)
    next
}

isOverPixels && /^ *[0-9a-f]+:\t/ {
    address = $1
    sub(/:$/, "", address)
    operation = $2
    operands = substr($0, index($0, ":\t") + 2 + length(operation))
    gsub(/^[ \t]+|[ \t]*(# |\/\/).*/, "", operands)
    place[address] = ++count
    kind[count] = Kind(operation, operands)
    isPrefetch[count] = operation ~ /^pr(efetch|fm)/
    if (operation !~ /^(j|b$|b[.]|cbn?z|tbn?z|call|blr?$)/) next
    to = operands
    sub(/^[^<]*</, "", to)
    sub(/([+]0x[0-9a-f]+)?>$/, "", to)
    if (operation !~ /^(call|bl)/ && to == name) {
        sub(/ <.*/, "", operands)
        sub(/.*[, \t]/, "", operands)
        target[count] = operands
    } else if (operation !~ /^j/ || to != operands) {  # but for jumps by a table
        callee[count] = to
    }
}

END {
    if (isOverPixels) FinishFunction()
    for (own in expected) {
        if (!(own in hasLoop)) Complain("no loop over pixels is found in " own)
        ++loops
    }
    if (!loops) Complain("no loops over pixels are found")
    for (message in said) exit 1
}
