# cmake -DINPUT=<file> -DOUTPUT=<source> -DNAME=<symbol> -P EmbedFile.cmake
# Writes a source that defines the bytes of a file as `extern const unsigned char NAME[]` in namespace tavo.
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x..,)(0x..,)?(0x..,)?(0x..,)?(0x..,)?(0x..,)?(0x..,)?(0x..,)?)" "    \\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT} "namespace tavo {\n\nextern const unsigned char ${NAME}[];\n\nconst unsigned char ${NAME}[] = {\n${bytes}};\n\n} // namespace tavo\n")
