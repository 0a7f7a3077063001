# How every target of the project is compiled, and the few functions that declare them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
endif()

add_library(quenlio_options INTERFACE)
target_include_directories(quenlio_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(
  quenlio_options
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Werror
            -Wshadow
            -Wconversion
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wold-style-cast
            -Wcast-qual
            -Wimplicit-fallthrough
            -Wnull-dereference
            -Wsuggest-override)
if(QUENLIO_SANITIZE)
  # The sanitizers' instrumentation makes the compiler see null paths that are none. The check of virtual tables opens
  # pipes to learn what memory may be read, and cries wolf in the tests that use up all descriptors.
  target_compile_options(quenlio_options INTERFACE -fsanitize=${QUENLIO_SANITIZE} -fno-omit-frame-pointer
                                                   -fno-sanitize-recover=all -fno-sanitize=vptr
                                                   -Wno-null-dereference)
  target_link_options(quenlio_options INTERFACE -fsanitize=${QUENLIO_SANITIZE})
endif()

# quenlio_library(NAME FOLDER LINKS...): every .cpp directly in FOLDER as one static library.
function(quenlio_library name folder)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.cpp")
  file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.h")
  if(sources)
    add_library(${name} STATIC ${sources} ${headers})
    target_link_libraries(${name} PUBLIC quenlio_options ${ARGN})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE quenlio_options ${ARGN})
  endif()
endfunction()
