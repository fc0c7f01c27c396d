# Text files become string constants of a library, so that the component needs no file at run time.
#
#   ledgertree_embed_text(<target> NAMESPACE <cpp namespace> FILES <globs below the calling folder>)
#
# generates "<target>.h" with one function: std::string_view embeddedText(std::string_view path), where path is the
# file's path below the calling folder, and std::span<const std::string_view> embeddedPaths() in alphabetical order.
set(LEDGERTREE_EMBED_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/embed_text_script.cmake)
function(ledgertree_embed_text target)
  cmake_parse_arguments(EMBED "" "NAMESPACE" "FILES" ${ARGN})
  file(GLOB files CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${EMBED_FILES})
  set(out ${CMAKE_CURRENT_BINARY_DIR}/${target})
  set(inputs "")
  foreach(file ${files})
    list(APPEND inputs ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  string(REPLACE ";" "," file_list "${files}")
  add_custom_command(
    OUTPUT ${out}/${target}.cpp ${out}/${target}.h
    COMMAND ${CMAKE_COMMAND} -DTARGET=${target} -DNAMESPACE=${EMBED_NAMESPACE} -DROOT=${CMAKE_CURRENT_SOURCE_DIR}
            -DFILES=${file_list} -DOUT=${out} -P ${LEDGERTREE_EMBED_SCRIPT}
    DEPENDS ${inputs} ${LEDGERTREE_EMBED_SCRIPT}
    VERBATIM)
  add_library(${target} STATIC ${out}/${target}.cpp ${out}/${target}.h)
  target_include_directories(${target} PUBLIC ${out})
endfunction()
