string(REPLACE "," ";" files "${FILES}")
set(paths "")
set(cases "")
foreach(file ${files})
  file(READ ${ROOT}/${file} text)
  # The compiler bounds a literal's length, so a file is written as many literals in a row, each of whole lines (a cut in
  # the middle of a line could be one in the middle of a letter).
  string(LENGTH "${text}" length)
  set(literal "")
  set(position 0)
  while(position LESS length)
    string(SUBSTRING "${text}" ${position} 8000 piece)
    string(FIND "${piece}" "\n" size REVERSE)
    if(size EQUAL -1)
      string(LENGTH "${piece}" size)
    else()
      math(EXPR size "${size} + 1")
    endif()
    string(SUBSTRING "${piece}" 0 ${size} piece)
    string(APPEND literal "\n      R\"LT~(${piece})LT~\"")
    math(EXPR position "${position} + ${size}")
  endwhile()
  if(literal STREQUAL "")
    set(literal "\"\"")
  endif()
  string(APPEND paths "    \"${file}\",\n")
  string(APPEND cases "  if (path == \"${file}\") return ${literal};\n")
endforeach()
file(WRITE ${OUT}/${TARGET}.h
"#pragma once\n#include <span>\n#include <string_view>\nnamespace ${NAMESPACE} {\n"
"/// The text of an embedded file, by its path; throws std::out_of_range for a path that there isn't.\n"
"std::string_view embeddedText(std::string_view path);\n"
"/// The paths of all embedded files in alphabetical order.\n"
"std::span<const std::string_view> embeddedPaths();\n}\n")
file(WRITE ${OUT}/${TARGET}.cpp
"#include \"${TARGET}.h\"\n#include <stdexcept>\n#include <string>\nnamespace ${NAMESPACE} {\n"
"namespace { constexpr std::string_view kPaths[] = {\n${paths}    \"\"}; }\n"
"std::string_view embeddedText(std::string_view path) {\n${cases}"
"  throw std::out_of_range(\"no embedded file \" + std::string(path));\n}\n"
"std::span<const std::string_view> embeddedPaths() { return std::span(kPaths).first(std::size(kPaths) - 1); }\n}\n")
