# The README shows an example word for word.
#
#   cmake -DREADME=README.md -DEXAMPLE=example.cpp -P readme_shows.cmake
cmake_minimum_required(VERSION 3.25)
file(READ ${README} readme)
file(READ ${EXAMPLE} example)
string(FIND "${readme}" "```cpp\n${example}```" place)
if(place EQUAL -1)
  message(FATAL_ERROR "${README} does not show ${EXAMPLE} as it is")
endif()
