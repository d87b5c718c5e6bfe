file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,))"
                     "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT} "#pragma once\n\ninline constexpr char ${NAME}[] = {\n${bytes}0x00};\n")
