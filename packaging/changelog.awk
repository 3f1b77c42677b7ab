# Converts CHANGELOG.md to Debian's changelog. Its sections are "## Unreleased" or
# "## VERSION - YYYY-MM-DD", and the newest one must be the project's version. Needs -v version=,
# maintainer= and now= (the date of unreleased changes, in seconds), LC_ALL=C and TZ=UTC.

function fail(text) {
    print "CHANGELOG.md:" NR ": " text > "/dev/stderr"
    failed = 1
    exit 1
}

# Prints the text in lines of at most 79 characters, the first line after the prefix.
function wrapped(text, prefix, indent,    words, count, line, i) {
    count = split(text, words, " ")
    line = prefix words[1]
    for (i = 2; i <= count; i++) {
        if (length(line " " words[i]) > 79) {
            print line
            line = indent words[i]
        } else {
            line = line " " words[i]
        }
    }
    print line
}

function endItem() {
    if (item != "") {
        wrapped(item, "  * ", "    ")
    }
    item = ""
}

function endSection() {
    endItem()
    if (date != "") {
        print "\n -- " maintainer "  " date "\n"
    }
}

function beginSection(name, seconds) {
    endSection()
    if (name in seen) {
        fail("there are two sections of version " name "; raise project(VERSION)")
    }
    seen[name] = 1
    headed = 0
    date = strftime("%a, %d %b %Y %H:%M:%S +0000", seconds)
    print "corvane (" name ") unstable; urgency=medium\n"
}

/^## Unreleased$/ { beginSection(version, now); next }
/^## [0-9.]+ - [0-9]+-[0-9]+-[0-9]+$/ {
    if (date == "" && $2 != version) {
        fail("the newest section is " $2 ", but project(VERSION) is " version)
    }
    day = $4
    gsub("-", " ", day)
    beginSection($2, mktime(day " 12 00 00"))
    next
}
/^## / { fail("a section must be \"## Unreleased\" or \"## VERSION - YYYY-MM-DD\"") }
/^### / {
    endItem()
    print (headed ? "\n" : "") "  [ " substr($0, 5) " ]"
    headed = 1
    next
}
/^- / { endItem(); item = substr($0, 3); next }
item != "" && /^ / { item = item " " $0 }

END {
    if (!failed) {
        endSection()
    }
}
