# awk -v output=FILE -f extractSnippets.awk HEADER_OR_DOCUMENT...
# Makes a source of all code in the comments of headers and in Markdown documents, so that the compiler checks it. Code is
#
#   in a header      what stands four blanks further in than a comment (///), after an empty line of it
#   in a document    what stands between ```cpp and ```
#
# Code with a line that is a single brace, "{", behind another is definitions and stays as it is; other code becomes the body of
# a function. Includes go to the front. What code takes for given, givens.h declares. Fails if the header of an exported class
# does not show how the class, or an object of its name, is used.

FNR == 1 {
    finish_snippet()
    is_header = FILENAME ~ /\.h$/
    is_foreign = 0
    after_empty_line = 0
}

is_header && match($0, /^class [A-Z_]+_EXPORT [A-Za-z0-9_]+/) {
    name = substr($0, RSTART, RLENGTH)
    sub(/.* /, "", name)
    header_of[name] = FILENAME
}

is_header {
    if ($0 !~ /^ *\/\/\//) {
        finish_snippet()
        after_empty_line = 0
        next
    }
    text = $0
    sub(/^ *\/\/\/ ?/, "", text)
    if (text ~ /^@code\{|^@verbatim/)
        is_foreign = 1
    else if (text ~ /^@endcode|^@endverbatim/)
        is_foreign = 0
    else if (!is_foreign && text ~ /^    / && (after_empty_line || snippet_line))
        add_line(substr(text, 5))
    else if (snippet_line && text == "")
        add_line("")
    else
        finish_snippet()
    after_empty_line = text == ""
    next
}

/^```cpp$/ { is_code = 1; next }
/^```/ { is_code = 0; finish_snippet(); next }
is_code { add_line($0) }

END {
    finish_snippet()
    for (name in header_of)
        if (!index(" " tolower(words_of[header_of[name]]) " ", " " tolower(name) " ")) {
            print header_of[name] ": no code shows how " name " is used" > "/dev/stderr"
            is_incomplete = 1
        }
    if (is_incomplete)
        exit 1
    print includes snippets > output
}

function add_line(line) {
    if (!snippet_line)
        begin_snippet()
    if (line ~ /^#include/) {
        includes = includes line "\n"
        line = ""
    }
    if (line == "{" && has_code)
        is_definitions = 1
    if (line != "")
        has_code = 1
    snippet = snippet line "\n"
}

function begin_snippet() {
    snippet_line = FNR
    snippet_file = FILENAME
    snippet = ""
    has_code = 0
    is_definitions = 0
    if (is_header && !(FILENAME in is_included))
        includes = includes "#include \"" FILENAME "\"\n"
    is_included[FILENAME] = 1
}

function finish_snippet(    words, code) {
    if (!snippet_line)
        return
    words = snippet
    gsub(/[^A-Za-z0-9_]+/, " ", words)
    words_of[snippet_file] = words_of[snippet_file] " " words
    code = "#line " snippet_line " \"" snippet_file "\"\n" snippet
    if (!is_definitions)
        code = "void snippet" ++num_snippets "()\n{\n" code "}\n"
    if (snippet_file ~ /\.h$/ && code !~ /\nint main\(/) # a program's main function is global
        code = "namespace " namespace_of(snippet_file) " {\nusing namespace tavo;\n" code "}\n"
    snippets = snippets code
    snippet_line = 0
}

function namespace_of(file) {
    gsub(/[^A-Za-z0-9]/, "_", file)
    return file
}
