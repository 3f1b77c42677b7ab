# Converts a guide to a bash program that runs the "sh" blocks one after the other in one shell. Each
# line of a "text" block has to occur in the output of the block before it. A text block that begins
# with a prompt is not compared.

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
