# Writes the front end as one C++ source: cmake -DFOLDER=... -DOUT=... -P EmbedFront.cmake
foreach(name IN ITEMS page.html page.css)
  file(READ ${FOLDER}/${name} text)
  set(text_${name} "${text}")
endforeach()
set(script "\"use strict\";\n(() => {\n")
foreach(name IN ITEMS data.js table.js pictures.js detail.js compare.js main.js)
  file(READ ${FOLDER}/${name} text)
  string(APPEND script "${text}\n")
endforeach()
string(APPEND script "})();")
# A literal of one piece may be no longer than 65536 characters by the standard.
function(literal out text)
  string(LENGTH "${text}" length)
  set(pieces "")
  set(start 0)
  while(start LESS length)
    string(SUBSTRING "${text}" ${start} 8000 piece)
    string(APPEND pieces "R\"kelvar_page(${piece})kelvar_page\"\n")
    math(EXPR start "${start} + 8000")
  endwhile()
  set(${out} "${pieces}" PARENT_SCOPE)
endfunction()
literal(page "${text_page.html}")
literal(style "${text_page.css}")
literal(code "${script}")
file(WRITE ${OUT} "// Made from page/front. Do not edit.
#include \"Front.h\"
namespace kelvar_page {
const std::string_view kFrontPage = ${page};
const std::string_view kFrontStyle = ${style};
const std::string_view kFrontScript = ${code};
}
")
