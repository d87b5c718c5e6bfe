# The program in the README is the program that is built.
file(READ ${SOURCE}/README.md readme)
file(READ ${SOURCE}/examples/host/host.cpp program)
string(FIND "${readme}" "```cpp\n${program}```" found)
if(found EQUAL -1)
  message(FATAL_ERROR "README.md does not show examples/host/host.cpp as it is")
endif()
