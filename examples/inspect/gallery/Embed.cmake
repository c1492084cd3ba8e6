# Makes a C++ source of the files of the page: cmake -D FOLDER=<this folder> -D OUTPUT=<file> "-DSCRIPTS=<name>;..." -P
# As numbers, because some compilers take no long texts.
function(add_file_text variable)
  set(bytes "")
  foreach(name IN LISTS ARGN)
    file(READ ${FOLDER}/${name} hexadecimal HEX)
    string(APPEND bytes ${hexadecimal})
  endforeach()
  string(REGEX REPLACE "(................................................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(CONCAT text "constexpr unsigned char ${variable}Bytes[] = {\n${bytes}};\n"
    "const std::string_view ${variable}(reinterpret_cast<const char*>(${variable}Bytes), sizeof(${variable}Bytes));\n")
  set(source "${source}${text}" PARENT_SCOPE)
endfunction()

set(source "#include \"GalleryFiles.h\"\n\nnamespace Inspect::GalleryFiles\n{\n")
add_file_text(Page page.html)
add_file_text(Style style.css)
add_file_text(Script ${SCRIPTS})
string(APPEND source "}\n")
file(WRITE ${OUTPUT} "${source}")
