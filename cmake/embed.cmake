# embed_text(FILE HEADER NAME) makes build/embedded/HEADER, which holds the bytes of FILE as
# `inline constexpr char NAME[]` behind a `#pragma once`. FILE is ASCII.
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
