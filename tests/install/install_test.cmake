# Installs the package into a folder that it wasn't configured for, compiles its headers alone, and builds and runs the
# hosts of examples/ on it.
#   cmake -DBUILD=<build tree> -DSOURCE=<project> -DSCRATCH=<folder> -DCXX=<compiler> -DGENERATOR=Ninja
#         -P install_test.cmake
cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nended with ${result}\n${output}")
  endif()
endfunction()

string(RANDOM LENGTH 12 own)  # two runs at once don't disturb one another
set(SCRATCH ${SCRATCH}/${own})
set(ENV{DESTDIR} ${SCRATCH}/stage)
run(${CMAKE_COMMAND} --install ${BUILD} --prefix /elsewhere)
unset(ENV{DESTDIR})
set(package ${SCRATCH}/package)
file(RENAME ${SCRATCH}/stage/elsewhere ${package})

# No file knows where it was built, nor where it was to be installed.
foreach(place ${BUILD} ${SOURCE} /elsewhere)
  execute_process(COMMAND grep -rlF --binary-files=text ${place} ${package} OUTPUT_VARIABLE files)
  if(files)
    message(FATAL_ERROR "${place} stands in\n${files}")
  endif()
endforeach()

file(GLOB headers RELATIVE ${package}/include ${package}/include/ledgertree/*.h)
list(LENGTH headers count)
if(count EQUAL 0)
  message(FATAL_ERROR "no headers")
endif()
set(strict -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I${package}/include)
foreach(header ${headers})
  file(WRITE ${SCRATCH}/alone.cpp "#include <${header}>\n")
  run(${CXX} -std=c++17 ${strict} ${SCRATCH}/alone.cpp)
endforeach()
file(WRITE ${SCRATCH}/alone.c "#include <ledgertree/component.h>\n")
run(${CXX} -x c -std=c99 ${strict} ${SCRATCH}/alone.c)

set(host ${SCRATCH}/host)
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${SOURCE}/examples/embedding -B ${host} -DCMAKE_PREFIX_PATH=${package} -DCMAKE_CXX_COMPILER=${CXX})
run(${CMAKE_COMMAND} --build ${host})
set(ENV{QT_QPA_PLATFORM} offscreen)
run(${host}/ledger-office --chart ${SCRATCH}/office.db --picture ${SCRATCH}/office.png)
run(${host}/ledger-office --chart ${SCRATCH}/office.db --account 25 --picture ${SCRATCH}/account.png)
# By pkg-config, wherever the package is now; what it prints is what the host was told.
file(GLOB_RECURSE pkgconfig ${package}/ledgertree.pc)
get_filename_component(pkgconfig ${pkgconfig} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pkgconfig})
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${SOURCE}/examples/events -B ${host}/events -DCMAKE_CXX_COMPILER=${CXX})
run(${CMAKE_COMMAND} --build ${host}/events)
execute_process(COMMAND ${host}/events/ledger-events ${SCRATCH}/office.db 25 OUTPUT_VARIABLE diary)
if(NOT diary MATCHES "shown 25\n$")
  message(FATAL_ERROR "the example of events printed\n${diary}")
endif()
# The demo host that came with the package finds its library and its plug-ins where they are now.
run(${package}/bin/ledgertree-demo --chart "${SCRATCH}/an \"office\".db" --pictures ${SCRATCH})
foreach(picture office account view)
  file(SIZE ${SCRATCH}/${picture}.png size)
  if(size LESS 10000)
    message(FATAL_ERROR "${picture}.png has ${size} bytes: nothing can be on it")
  endif()
endforeach()
file(REMOVE_RECURSE ${SCRATCH})
