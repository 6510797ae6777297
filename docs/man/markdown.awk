# Makes a manual page's source (scdoc) of a document like docs/board-directory.md, so that both say the same. Knows what
# the documents use: headings, paragraphs, lists, tables, code blocks, `code`, **emphasis** and [links](target).
# Set: page, such as vxboard-directory(5); summary, for the line under NAME; also, for SEE ALSO.

# Text without formatting, then with it. Formatting may go on in the next line; scdoc has bold for all of it.
function plain(text) {
    gsub(/\\/, "&&", text)
    gsub(/[*_~<>#|[\]]/, "\\\\&", text)
    return text
}
function formatted(text, result, link) {
    while (match(text, /\[[^]]*\]\([^)]*\)/)) {
        link = substr(text, RSTART + 1, RLENGTH - 2)
        sub(/\].*/, "", link)
        text = substr(text, 1, RSTART - 1) link substr(text, RSTART + RLENGTH)
    }
    while (in_code ? match(text, /`/) : match(text, /`|\*\*/)) {
        result = result plain(substr(text, 1, RSTART - 1))
        if (RLENGTH == 2) {
            strong = !strong
        } else {
            in_code = !in_code
        }
        if (RLENGTH == 2 || !strong) {
            result = result "*"
        }
        text = substr(text, RSTART + RLENGTH)
    }
    return result plain(text)
}

# A table of two columns makes a list of terms, one of more a table, where the column that tells most takes the room.
function put_row(cells, count, i) {
    if (count == 2) {
        print "\n" formatted(cells[1]) "\n\t" formatted(cells[2])
        return
    }
    for (i = 1; i <= count; i++) {
        print (i > 1 ? ":" : "|") (rows > 1 ? " " : cells[i] ~ /^(what|meaning)$/ ? "<" : "[") " " formatted(cells[i])
    }
}

BEGIN { print page "\n\n# NAME\n\n" summary }
/^```/ { code_block = !code_block; print (code_block ? "\n```" : "```\n"); next }
code_block { gsub(/\\/, "&&"); print; next }
/^\|[-| ]*$/ { next }
/^\|/ {
    gsub(/\\\|/, "\001")
    count = split(substr($0, 2, length($0) - 2), cells, /\|/)
    for (i = 1; i <= count; i++) {
        gsub(/\001/, "|", cells[i])
        gsub(/^ +| +$/, "", cells[i])
    }
    if (++rows == 1) {
        print ""
    }
    if (rows > 1 || count > 2) {
        put_row(cells, count)
    }
    next
}
rows { rows = 0; print "" }
/^# / { print "\n# DESCRIPTION\n"; next }
/^##/ { print "\n# " toupper(plain(substr($0, 4))) "\n"; next }
{ print formatted($0) }
END { print "\n# SEE ALSO\n\n" also }
