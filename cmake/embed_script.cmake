# Writes OUTPUT, a header that holds the bytes of INPUT, or those of each of the files NAMES (with
# commas between them) in FOLDER.
function(read_bytes file result)
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(REPEAT "0x..," 16 line)
  string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
  set(${result} "${bytes}" PARENT_SCOPE)
endfunction()

if(NOT DEFINED FOLDER)
  read_bytes(${INPUT} bytes)
  file(WRITE ${OUTPUT} "#pragma once\n\ninline constexpr char ${NAME}[] = {\n${bytes}0x00};\n")
  return()
endif()

set(arrays "")
set(entries "")
string(REPLACE "," ";" files "${NAMES}")
foreach(file IN LISTS files)
  read_bytes(${FOLDER}/${file} bytes)
  string(MAKE_C_IDENTIFIER "${NAME}_${file}" array)
  string(APPEND arrays "inline constexpr std::uint8_t ${array}[] = {\n${bytes}};\n")
  string(APPEND entries "    {u\"${file}\", ${array}},\n")
endforeach()
file(WRITE ${OUTPUT} "#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

${arrays}
inline constexpr std::pair<std::u16string_view, std::span<const std::uint8_t>> ${NAME}[] = {
${entries}};
")
