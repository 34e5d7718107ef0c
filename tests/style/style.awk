# Prints what is not in the project's one form; fails on any.
#   TEST(Subject, condition_outcome): the subject like a class, the rest in lower case
#   a program of tests is called something_tests
#   a class that must not be copied derives from noncopyable; a move says as much by itself

function wrong(what) {
    print FILENAME ":" FNR ": " what
    failed = 1
}

# com_object and class_object stand at the bottom of objects whose interfaces come first.
FNR == 1 { may_delete = FILENAME ~ /\/(noncopyable|com_object|class_object|gtest-port)\.h$/ }

/^TEST(_F|_P)?\([^)]*$/ { declaration = $0; next }
declaration != "" { $0 = declaration $0; declaration = "" }
/^TEST(_F|_P)?\(/ && !/^TEST(_F|_P)?\([A-Z][A-Za-z0-9]*, *(DISABLED_)?[a-z0-9_]+\)/ { wrong("test name: " $0) }

/^ *orv_test_program\($/ { program = 1; next }
program { if ($1 !~ /_tests$/) wrong("program of tests: " $1); program = 0 }
/^ *orv_test_program\(./ && !/^ *orv_test_program\([a-z0-9_]+_tests/ { wrong("program of tests: " $0) }

/operator=\(const .*\) = delete/ && !may_delete { wrong("derive from noncopyable: " $0) }

END { exit failed }
