# Turns the texts of all languages into one source for the message compiler; the first file is the reference
# that every other must match number by number.
#
#   awk -f make_messages.awk texts/en.txt texts/es.txt ... >messages.mc
#
# A line is a comment (#), "language ID NAME" once per file, or "NUMBER TEXT", where \n stands for a line break.
# The message table has escapes of its own: %n is a line break, a per cent sign is doubled, and %0 keeps a line
# break from being added at the end.

function fail(what) {
    printf "%s:%d: %s\n", FILENAME, FNR, what > "/dev/stderr"
    failed = 1
    exit 1
}

FNR == 1 {
    sub(/^\357\273\277/, "")
    files++
    file_name[files] = FILENAME
}
{ sub(/\r$/, "") }
/^[ \t]*(#|$)/ { next }
/^language 0x[0-9A-F][0-9A-F][0-9A-F][0-9A-F] [A-Za-z]+$/ {
    if (files in name) fail("the language is named twice")
    id[files] = $2
    name[files] = $3
    next
}
/^0x[0-9A-F]+ +[^ ]/ {
    if (!(files in name)) fail("the language must be named first")
    number = $1
    if (length(number) != 7) fail("a number has five digits")
    if ((files, number) in text) fail(number " stands twice")
    if (files == 1) numbers[++count] = number
    else if (!((1, number) in text)) fail(number " is not a number of " file_name[1])
    line = $0
    sub(/^0x[0-9A-F]+ +/, "", line)
    if (line ~ /(\\n|[ \t])$/) fail(number " ends in a blank or a line break")
    gsub(/%/, "%%", line)
    gsub(/\\n/, "%n", line)
    text[files, number] = line
    next
}
{ fail("neither a comment, nor \"language ID NAME\", nor \"NUMBER TEXT\"") }

END {
    if (failed) exit 1
    for (f = 2; f <= files; f++)
        for (i = 1; i <= count; i++)
            if (!((f, numbers[i]) in text)) {
                printf "%s: %s is missing\n", file_name[f], numbers[i] > "/dev/stderr"
                exit 1
            }

    for (f = 1; f <= files; f++) printf "LanguageNames=(%s=%s:messages_%s)\n", name[f], id[f], name[f]
    print "FacilityNames=(Title=0x0 Texts=0x4)"
    print "SeverityNames=(Success=0x0)"
    for (i = 1; i <= count; i++) {
        # 0xFCCCC: facility, then code.
        facility = substr(numbers[i], 3, 1)
        if (facility != "0" && facility != "4") {
            printf "%s: facility %s is not declared\n", numbers[i], facility > "/dev/stderr"
            exit 1
        }
        printf "\nMessageId=0x%s\nSeverity=Success\nFacility=%s\n", substr(numbers[i], 4),
               facility == "0" ? "Title" : "Texts"
        for (f = 1; f <= files; f++) printf "Language=%s\n%s%%0\n.\n", name[f], text[f, numbers[i]]
    }
}
