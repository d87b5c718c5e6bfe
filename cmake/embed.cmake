# embed_text(FILE HEADER NAME) makes build/embedded/HEADER, which holds the bytes of FILE as
# `inline constexpr char NAME[]` after a `#pragma once`. FILE is ASCII.
add_custom_target(embedded_texts)

function(embed_text file header name)
  set(output ${CMAKE_BINARY_DIR}/embedded/${header})
  add_custom_command(
    OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${file} -DOUTPUT=${output} -DNAME=${name}
            -P ${CMAKE_SOURCE_DIR}/cmake/embed_script.cmake
    DEPENDS ${file} ${CMAKE_SOURCE_DIR}/cmake/embed_script.cmake
    COMMENT "Embedding ${file}"
    VERBATIM)
  add_custom_target(embedded_${name} DEPENDS ${output})
  add_dependencies(embedded_texts embedded_${name})
endfunction()

# embed_folder(FOLDER OUTPUT NAME) makes the header OUTPUT, which holds the files of FOLDER as
# `inline constexpr std::pair<std::u16string_view, std::span<const std::uint8_t>> NAME[]`: each
# file's name and its bytes. The names are ASCII.
function(embed_folder folder output name)
  file(GLOB names CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*)
  list(TRANSFORM names PREPEND ${folder}/ OUTPUT_VARIABLE files)
  # The names are part of the command, so that a file that goes brings about a new header too.
  string(REPLACE ";" "," names "${names}")
  add_custom_command(
    OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DFOLDER=${folder} -DNAMES=${names} -DOUTPUT=${output} -DNAME=${name}
            -P ${CMAKE_SOURCE_DIR}/cmake/embed_script.cmake
    DEPENDS ${files} ${CMAKE_SOURCE_DIR}/cmake/embed_script.cmake
    COMMENT "Embedding ${folder}"
    VERBATIM)
  add_custom_target(embedded_${name} DEPENDS ${output})
  add_dependencies(embedded_texts embedded_${name})
endfunction()
