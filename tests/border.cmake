# The component sees its own folder and links nothing: with the include path of its target an
# include of the markup library or of the platform must not compile, and one of its own must.
if(NOT "${LIBRARIES}" STREQUAL "")
  message(FATAL_ERROR "The component links ${LIBRARIES}")
endif()

list(TRANSFORM INCLUDES PREPEND -I)
function(compiles header result)
  file(WRITE ${SCRATCH}/border.cpp "#include \"${header}\"\n")
  execute_process(COMMAND ${COMPILER} -std=c++20 ${INCLUDES} -fsyntax-only ${SCRATCH}/border.cpp
                  RESULT_VARIABLE status ERROR_QUIET)
  set(${result} ${status} PARENT_SCOPE)
endfunction()

compiles(util/Object.h own)
if(NOT own EQUAL 0)
  message(FATAL_ERROR "The component's own header does not compile")
endif()
foreach(header ravikit/xml/Tree.h platform/files/TextCodec.h)
  compiles(${header} foreign)
  if(foreign EQUAL 0)
    message(FATAL_ERROR "The component can include ${header}")
  endif()
endforeach()
