# Makes a bash program of a guide: runs its "sh" blocks one after the other in one shell,
# and expects each line of a "text" block in what the block before it wrote. A text block
# that begins with a prompt is only shown.

/^```sh$/ { kind = "sh"; print "begin " NR; next }
/^```text$/ { kind = "text"; shown = 0; first = 1; next }
/^```$/ {
    if (kind == "sh") {
        print "end"
    }
    kind = ""
    next
}
/^```/ { kind = "other"; next }
kind == "sh"
kind == "text" {
    if (first && /^(\$|#|\()/) {
        shown = 1
    }
    first = 0
    if (!shown) {
        gsub(/'/, "'\\''")
        print "expect '" $0 "'"
    }
}
